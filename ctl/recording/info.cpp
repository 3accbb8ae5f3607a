// recording info: what a recording is of, and how it ends.
#include "ctl/json_writer.h"
#include "ctl/recording/call_times.h"
#include "ctl/recording/recording_commands.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/time_text.h"

namespace zelt::ctl {
namespace {

struct Summary {
    std::string program, objectName, objectType, settings;
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
        const TimedCall* const call = times.Take(*record);
        if (call && (call->status & 0x80000000u)) ++summary.failures;
        if (summary.isClosed) break;
    }
    summary.duration = times.Now();
    return summary;
}

void WriteJson(const Summary& summary, Output& out)
{
    JsonWriter json(out);
    json.BeginObject().Member("object", summary.objectName).Member("type", summary.objectType);
    json.Member("program", summary.program).Member("width", summary.width);
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
        WriteJson(summary, streams.data);
    } else {
        WriteText(summary, streams.data);
    }
    return file.ReportEnd(summary.isClosed, streams.messages);
}

}  // namespace zelt::ctl
