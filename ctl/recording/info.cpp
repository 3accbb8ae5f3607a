// recording info: which component was recorded, how many calls there are, and whether the recording is complete.
#include "ctl/json_writer.h"
#include "ctl/recording/call_times.h"
#include "ctl/recording/recording_commands.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/time_text.h"

namespace zelt::ctl {
namespace {

std::string Hexadecimal(std::string_view bytes)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

// "{01234567-...}", from the 16 bytes of an identifier in memory; empty for another number of bytes.
std::string IdentifierText(std::string_view bytes)
{
    if (bytes.size() != 16) return {};
    // The first three parts are numbers, the least significant byte first.
    std::string ordered;
    for (const int place : {3, 2, 1, 0, 5, 4, 7, 6}) ordered += bytes[static_cast<std::size_t>(place)];
    ordered += bytes.substr(8);
    std::string text = Hexadecimal(ordered);
    for (char& letter : text) {
        if (letter >= 'a') letter = static_cast<char>(letter - 'a' + 'A');
    }
    for (const std::size_t place : {20, 16, 12, 8}) text.insert(place, 1, '-');
    return '{' + text + '}';
}

struct Summary {
    std::string program, objectName, objectType, settings;
    std::string classId, package, library, libraryVersion, libraryHash;
    long long width = 0, calls = 0, failures = 0, arguments = 0;
    std::uint64_t started = 0, duration = 0;
    bool isClosed = false;
};

Summary Summarize(RecordingFile& file)
{
    Summary summary;
    const recording::HeaderRecord& header = file.ReadHeader();
    summary.program = header.program;
    summary.objectName = header.objectName;
    summary.objectType = header.objectType;
    summary.settings = header.settings;
    summary.width = header.width;
    summary.started = header.started;
    CallTimes times(false);
    while (const recording::Record* record = file.Records().Next()) {
        summary.calls += std::holds_alternative<recording::CallRecord>(*record);
        summary.arguments += std::holds_alternative<recording::ArgumentRecord>(*record);
        summary.isClosed = std::holds_alternative<recording::EndRecord>(*record);
        if (const auto* component = std::get_if<recording::ComponentRecord>(record)) {
            summary.classId = IdentifierText(component->classId);
            summary.package = component->name;
            summary.library = component->library;
            summary.libraryVersion = component->libraryVersion;
            summary.libraryHash = Hexadecimal(component->libraryHash);
        }
        const TimedCall* const call = times.Take(*record);
        if (call && (call->status & 0x80000000u)) ++summary.failures;
        if (summary.isClosed) break;
    }
    summary.duration = times.Now();
    return summary;
}

void WriteInfoAsJson(const Summary& summary, Output& out)
{
    JsonWriter json(out);
    json.BeginObject().Member("object", summary.objectName).Member("type", summary.objectType);
    json.Member("program", summary.program).Member("width", summary.width);
    json.Member("class", summary.classId).Member("package", summary.package).Member("library", summary.library);
    json.Member("libraryVersion", summary.libraryVersion).Member("librarySha256", summary.libraryHash);
    json.Member("settings", summary.settings);
    json.Member("started", DateText(summary.started));
    json.Member("nanoseconds", static_cast<long long>(summary.duration));
    json.Member("calls", summary.calls).Member("failures", summary.failures).Member("arguments", summary.arguments);
    json.Key("complete").Bool(summary.isClosed).EndObject();
    out << '\n';
}

void WriteText(const Summary& summary, Output& out)
{
    out << "object     " << summary.objectName << '\n';
    out << "type       " << summary.objectType << '\n';
    out << "made by    " << summary.program << ", " << summary.width << " bit\n";
    if (!summary.classId.empty()) {
        out << "component  " << summary.classId;
        if (!summary.package.empty()) out << ", package \"" << summary.package << '"';
        out << '\n';
    }
    if (!summary.library.empty()) out << "library    " << summary.library << ", " << summary.libraryVersion << '\n';
    out << "started    " << DateText(summary.started) << '\n';
    out << "duration   " << TimeText(summary.duration) << '\n';
    out << "calls      " << summary.calls << ", of which " << summary.failures << " failed\n";
    out << "arguments  " << summary.arguments << '\n';
    out << "complete   " << (summary.isClosed ? "yes" : "no") << '\n';
}

}  // namespace

int DescribeRecording(const Arguments& arguments, Streams& streams)
{
    RecordingFile file(arguments.Operand(0));
    const Summary summary = Summarize(file);
    if (arguments.Has("--json")) {
        WriteInfoAsJson(summary, streams.data);
    } else {
        WriteText(summary, streams.data);
    }
    return file.ReportEnd(summary.isClosed, streams.messages);
}

}  // namespace zelt::ctl
