#include "ctl/database/conversation_tables.h"

#include <charconv>

#include "ctl/database/schema.h"
#include "recording/text_form.h"

namespace zelt::ctl {
namespace {

constexpr std::size_t kMostLeftOpen = 1000;

const char* Begun(Database& database)
{
    database.Execute(kBeginTables);
    return "INSERT INTO source VALUES (?, ?)";
}

// The number that the text consists of, which may be infinite; nothing for any other text.
std::optional<double> RealOf(std::string_view text)
{
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return {};
    return number;
}

// Readers of a database expect UTF-8; some texts in a recording are in the code page of the computer that made it. A text that
// is not valid UTF-8 keeps only its ASCII characters.
std::string Readable(std::string_view text)
{
    std::string readable(text);
    if (recording::Utf16(text)) return readable;
    for (char& c : readable) {
        if (static_cast<unsigned char>(c) >= 0x80) c = '?';
    }
    return readable;
}

const char* KindOfMessageName(EventKind kind)
{
    return kind == EventKind::Error ? "error" : kind == EventKind::Warning ? "warning" : "info";
}

const char* MeaningName(MessageKind kind)
{
    switch (kind) {
        case MessageKind::Query: return "query";
        case MessageKind::Warning: return "warning";
        case MessageKind::Violation: return "violation";
        case MessageKind::Failure: return "failure";
        default: return "info";
    }
}

const char* ResultName(const CallResult& result)
{
    if (result.failed) return "failed";
    if (result.violated) return "violation";
    return result.warned ? "warning" : "ok";
}

}  // namespace

ConversationTables::ConversationTables(Database& database)
    : database(database),
      source(database, Begun(database)),
      call(database, "INSERT INTO calls VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      argument(database, "INSERT INTO arguments VALUES (?, ?, ?, ?, ?, ?)"),
      value(database, "INSERT INTO argument_values VALUES (?, ?, ?, ?)"),
      message(database, "INSERT INTO messages VALUES (?, ?, ?, ?, ?, ?)")
{}

void ConversationTables::Describe(std::string_view name, std::string_view text)
{
    source.Text(name).Text(Readable(text)).Insert();
}

void ConversationTables::SetStart(std::uint64_t start)
{
    if (!open.empty()) open.back().start = start;
}

void ConversationTables::SetTiming(const CallTiming& timing)
{
    if (open.empty()) return;
    OpenCall& ended = open.back();
    ended.start = timing.start;
    ended.duration = timing.duration;
    ended.inside = timing.inside;
    ended.result.failed |= timing.hasFailed;
}

void ConversationTables::Finish()
{
    for (; !open.empty(); open.pop_back()) Insert(open.back(), open.size() - 1, "open");
    for (const int line : leftOpen) {
        database.Execute(("UPDATE calls SET result = 'open' WHERE line = " + std::to_string(line)).c_str());
    }
    database.Execute(kEndTables);
}

void ConversationTables::LeftOpen(int line)
{
    // A log cannot reach the limit: the reader lets elements nest only 255 deep.
    if (leftOpen.size() < kMostLeftOpen) leftOpen.push_back(line);
}

void ConversationTables::Begin(const LogEvent& event)
{
    switch (event.kind) {
        case EventKind::Call: BeginCall(event); break;
        case EventKind::Argument: BeginArgument(event); break;
        case EventKind::Value:
        case EventKind::Other: AddValue(event.text); break;
        default:
            if (!IsBound(event)) AddMessage(event);
    }
}

void ConversationTables::BeginCall(const LogEvent& event)
{
    OpenCall& begun = open.emplace_back();
    begun.id = ++calls;
    begun.line = event.line;
    begun.isInward = event.inward;
    begun.interfaceName = Readable(event.Interface());
    begun.method = Readable(event.Method());
    begun.object = Readable(event.text);
}

void ConversationTables::BeginArgument(const LogEvent& event)
{
    if (open.empty()) return;
    isInArgument = true;
    argument.Integer(++arguments).Integer(open.back().id).IntegerOrNull(event.line, event.line > 0);
    argument.Text(Readable(event.name)).Text(event.inward ? "in" : "out").Text(Readable(event.text)).Insert();
    place = 0;
}

void ConversationTables::AddValue(std::string_view text)
{
    if (!isInArgument) return;
    const auto number = RealOf(text);
    value.Integer(arguments).Integer(++place).Text(Readable(Unquoted(text)));
    (number ? value.Real(*number) : value.Null()).Insert();
}

void ConversationTables::AddMessage(const LogEvent& event)
{
    const MessageKind kind = KindOfMessage(event);
    const std::string text = Readable(event.text);
    message.Integer(++messages).IntegerOrNull(open.empty() ? 0 : open.back().id, !open.empty());
    message.IntegerOrNull(event.line, event.line > 0)
        .Text(KindOfMessageName(event.kind))
        .Text(MeaningName(kind))
        .Text(text)
        .Insert();
    if (open.empty()) return;
    open.back().result.Take(kind);
    if (kind == MessageKind::Failure) open.back().failure = text;
}

void ConversationTables::End(EventKind kind, int)
{
    if (kind == EventKind::Argument) isInArgument = false;
    if (kind != EventKind::Call || open.empty()) return;
    Insert(open.back(), open.size() - 1, ResultName(open.back().result));
    open.pop_back();
}

void ConversationTables::Insert(const OpenCall& ended, std::size_t depth, const char* result)
{
    const auto time = [this](const std::optional<std::uint64_t>& nanoseconds) {
        call.IntegerOrNull(static_cast<std::int64_t>(nanoseconds.value_or(0)), nanoseconds.has_value());
    };
    call.Integer(ended.id).IntegerOrNull(depth > 0 ? open[depth - 1].id : 0, depth > 0);
    call.Integer(static_cast<std::int64_t>(depth)).IntegerOrNull(ended.line, ended.line > 0);
    call.Text(ended.isInward ? "in" : "out").Text(ended.interfaceName).Text(ended.method).Text(ended.object);
    call.Text(result).TextOrNull(ended.failure);
    time(ended.start);
    time(ended.duration);
    time(ended.inside);
    call.Insert();
}

}  // namespace zelt::ctl
