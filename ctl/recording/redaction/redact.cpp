// recording redact: copies the recording, with names and values replaced as log redact replaces them. Two readers go through
// the recording side by side, because one has to read ahead (balanced_values.h).
#include <algorithm>
#include <iterator>

#include "ctl/log/call_results.h"
#include "ctl/log/redaction/message_redaction.h"
#include "ctl/log/redaction/standard_name.h"
#include "ctl/recording/recorded_message.h"
#include "ctl/recording/recording_commands.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/recording_output.h"
#include "ctl/recording/redaction/value_redaction.h"
#include "recording/record_copy.h"

namespace zelt::ctl {
namespace {

using namespace recording;

// Keeps track of what the values mean.
class MeaningSink final : public LogSink {
public:
    void Begin(const LogEvent& event) override { meanings.Begin(event); }
    void End(EventKind kind, int) override
    {
        if (kind == EventKind::Call) meanings.EndCall();
    }
    ArgumentMeanings meanings;
};

// Whether this is the identifier of an interface of the standard or of the system, which says nothing about a component. Most
// of the standard's have the form 678Cxxxx-xxxx-11D2-A67D-00105A42887F, and many of the system's differ only in their first
// four bytes. The few that look different are replaced like a component's own.
bool IsOfTheStandard(std::string_view id)
{
    constexpr std::string_view kBegin("\x8C\x67", 2), kEnd("\xD2\x11\xA6\x7D\x00\x10\x5A\x42\x88\x7F", 10);
    constexpr std::string_view kSystem("\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46", 12);
    return id.size() == 16 && ((id.substr(2, 2) == kBegin && id.substr(6) == kEnd) || id.substr(4) == kSystem);
}

class RecordingRedactor {
public:
    RecordingRedactor(const std::string& path, std::uint32_t width, bool keepsErrors, RecordWriter& writer)
        : keepsErrors(keepsErrors),
          balanced(path, aliases),
          values(aliases, balanced, width, keepsErrors),
          copier(writer)
    {}

    void Take(const Record& record)
    {
        texts.clear();
        if (const auto* argument = std::get_if<ArgumentRecord>(&record)) {
            TakeArgument(*argument);
        } else {
            events.Take(record, sink);
            copier.Take(std::visit([&](const auto& one) { return Record(Redacted(one)); }, record));
        }
    }

private:
    // What an argument means depends on the arguments before it and on their values.
    void TakeArgument(const ArgumentRecord& argument)
    {
        const std::string type = TypeText(argument);
        sink.meanings.Begin({EventKind::Argument, !argument.isOut, true, 0, 0, argument.name, type});
        ArgumentRecord redacted = values.Redact(argument, sink.meanings, texts);
        ForEachScalar(argument.value, [&](const Scalar& scalar) {
            const std::string text = ScalarText(argument, scalar);
            sink.meanings.Begin({EventKind::Value, false, false, 0, 0, {}, text});
        });
        copier.Take(Record(std::move(redacted)));
    }

    std::string_view Kept(std::string text) { return texts.emplace_back(std::move(text)); }
    std::string_view Alias(std::string_view text) { return text.empty() ? text : Kept(aliases.Text(text)); }

    // Keeps only the on/off settings. The value of any other setting is a class, which would name a component.
    std::string_view Switches(std::string_view settings)
    {
        std::string switches;
        while (!settings.empty()) {
            const std::string_view setting = settings.substr(0, settings.find(' '));
            settings.remove_prefix(std::min(setting.size() + 1, settings.size()));
            if (!setting.ends_with("=0") && !setting.ends_with("=1")) continue;
            switches.append(switches.empty() ? "" : " ").append(setting);
        }
        return Kept(std::move(switches));
    }
    HeaderRecord Redacted(HeaderRecord header)
    {
        header.objectName = Kept(aliases.Name(header.objectName));
        header.startText = Alias(header.startText);
        header.started = 0;
        header.locale = header.thread = 0;
        header.settings = Switches(header.settings);
        return header;
    }
    ComponentRecord Redacted(ComponentRecord component)
    {
        component.classId = Kept(aliases.Bytes(component.classId));
        component.name = Alias(component.name);
        component.exportedName = Kept(aliases.Name(component.exportedName));
        component.library = Alias(component.library);
        component.libraryVersion = Alias(component.libraryVersion);
        component.libraryHash = Kept(aliases.Bytes(component.libraryHash));
        component.pointer = values.Address(component.pointer);
        return component;
    }
    ObjectRecord Redacted(ObjectRecord object)
    {
        return {values.Address(object.pointer), values.Address(object.proxy)};
    }
    QueryRecord Redacted(QueryRecord query)
    {
        if (!IsOfTheStandard(query.interfaceId)) query.interfaceId = Kept(aliases.Bytes(query.interfaceId));
        return query;
    }
    CallRecord Redacted(CallRecord call)
    {
        if (!IsStandardName(call.member)) call.member = Alias(call.member);
        call.object = Kept(aliases.Name(call.object));
        return call;
    }
    SentenceRecord Redacted(const SentenceRecord& sentence)
    {
        const RecordedMessage message = MessageOf(sentence);
        const auto row = std::find_if(std::begin(kSentences), std::end(kSentences),
                                      [&](const SentenceRow& one) { return one.text == sentence.pattern; });
        SentenceRecord redacted;
        // A sentence that this program does not know.
        if (row == std::end(kSentences)) {
            redacted.pattern = Alias(message.text);
            return redacted;
        }
        redacted.pattern = sentence.pattern;
        redacted.holes = sentence.holes;
        if (keepsErrors && (SaysMore(message.Event()) || row->meaning == Meaning::Failure)) return redacted;
        const bool mayBeName = MayHaveNames(*row, message.text);
        sentences::Walk(
            row->text, [](std::string_view) {},
            [&](char kind, std::size_t number) {
                if (number >= redacted.holes.size()) return;
                redacted.holes[number] = Kept(RedactHole(kind, mayBeName, redacted.holes[number], aliases));
            });
        return redacted;
    }
    ResultRecord Redacted(const ResultRecord& result)
    {
        ResultRecord redacted;
        redacted.status = result.status;
        redacted.duration = result.duration;
        redacted.inside = result.inside;
        redacted.isExplained = result.isExplained;
        redacted.name = result.name;
        redacted.description = keepsErrors ? result.description : Kept(aliases.Name(result.description));
        if (result.detail) redacted.detail = Redacted(*result.detail);
        return redacted;
    }
    static EndRecord Redacted(EndRecord end) { return end; }
    static ArgumentRecord Redacted(const ArgumentRecord&) { return {}; }

    const LogAliases aliases;
    const bool keepsErrors;
    BalancedValues balanced;
    ValueRedaction values;
    RecordCopier copier;
    RecordedEvents events;
    MeaningSink sink;
    std::deque<std::string> texts;  // of the latest record
};

}  // namespace

int RedactRecording(const Arguments& arguments, Streams& streams)
{
    const std::string& path = arguments.Operand(0);
    const std::uint32_t width = RecordingFile(path).ReadHeader().width;
    RecordingFile file(path);
    RecordingOutput output(arguments);
    RecordingRedactor redactor(path, width, arguments.Has("--keep-errors"), output.Records());
    bool isClosed = false;
    while (const Record* record = isClosed ? nullptr : file.Records().Next()) {
        isClosed = std::holds_alternative<EndRecord>(*record);
        redactor.Take(*record);
        output.Records().Flush();
    }
    output.Keep();
    return file.ReportEnd(isClosed, streams.messages);
}

}  // namespace zelt::ctl
