#include "ctl/log/log_events.h"

#include "ctl/log/log_file.h"

namespace zelt::ctl {
namespace {

EventKind KindOf(const LogItem& item)
{
    if (!item.known) return EventKind::Other;
    switch (item.image) {
        case LogImage::InwardCall:
        case LogImage::OutwardCall: return EventKind::Call;
        case LogImage::InArgument:
        case LogImage::OutArgument: return EventKind::Argument;
        case LogImage::Info: return EventKind::Info;
        case LogImage::Warning: return EventKind::Warning;
        case LogImage::Error: return EventKind::Error;
        case LogImage::Value: break;
    }
    return EventKind::Value;
}

class EventSink final : public LogSink {
public:
    EventSink(LogHandler& handler, const std::string& name) : handler(handler), name(name) {}

    void Item(const LogItem& item) override
    {
        const EventKind kind = KindOf(item);
        // A root of another kind comes as the first item.
        if (!any && kind == EventKind::Other) throw InputError(name + ": this is no log of ZELT");
        any = true;
        const auto depth = static_cast<std::size_t>(item.depth);
        if (kinds.size() <= depth) kinds.resize(depth + 1);
        kinds[depth] = kind;
        LogEvent event = {kind, false, item.hasChildren, item.depth, item.line, {}, item.label};
        if (kind == EventKind::Call || kind == EventKind::Argument) {
            event.inward = item.image == LogImage::InwardCall || item.image == LogImage::InArgument;
            event.name = NameOf(item);
            event.text = ObjectOrTypeOf(item);
        }
        handler.Begin(event);
    }
    void ItemEnd(int depth) override { handler.End(kinds[static_cast<std::size_t>(depth)], depth); }
    void LeftOpen(int line) override { handler.LeftOpen(line); }
    void ParseError(int line) override
    {
        if (firstError == 0) firstError = line;
        handler.ParseError(line);
    }
    bool Continue() override { return true; }
    bool WantsLines() const override { return true; }

    bool Any() const { return any; }
    int FirstError() const { return firstError; }

private:
    LogHandler& handler;
    const std::string& name;
    std::vector<EventKind> kinds;
    bool any = false;
    int firstError = 0;
};

}  // namespace

std::string_view LogEvent::Interface() const
{
    const std::size_t colons = name.rfind("::");
    return colons == std::string_view::npos ? std::string_view() : name.substr(0, colons);
}

std::string_view LogEvent::Method() const
{
    const std::size_t colons = name.rfind("::");
    return colons == std::string_view::npos ? name : name.substr(colons + 2);
}

bool ReadEvents(LogInput& input, const std::string& name, LogHandler& handler, Output& messages)
{
    static const bool prepared = (PrepareLogReader(), true);
    static_cast<void>(prepared);
    EventSink sink(handler, name);
    switch (ReadLog(input, sink)) {
        case LogReadResult::Complete: return true;
        case LogReadResult::NotReadable: throw InputError(name + ": the log reader could not be made");
        default: break;
    }
    if (!sink.Any()) throw InputError(name + ": this is no log of ZELT, or nothing is in it");
    messages << name << ": line " << sink.FirstError()
             << ": the log is cut off or damaged here; only what stands before is used\n";
    return false;
}

bool ReadEvents(const std::string& path, LogHandler& handler, Output& messages)
{
    LogFile file(path);
    return ReadEvents(file, path, handler, messages);
}

}  // namespace zelt::ctl
