#include "ctl/log/log_events.h"

#include "ctl/log/log_file_input.h"

namespace zelt::ctl {
namespace {

// Rejects a file that is no log of ZELT, and remembers where a log is damaged.
class LogCheck final : public LogSink {
public:
    LogCheck(LogSink& sink, const std::string& name) : sink(sink), name(name) {}

    void Begin(const LogEvent& event) override
    {
        // A root of another kind arrives as the first event.
        if (!any && event.kind == EventKind::Other) throw InputError(name + ": this is no log of ZELT");
        any = true;
        sink.Begin(event);
    }
    void End(EventKind kind, int depth) override { sink.End(kind, depth); }
    void LeftOpen(int line) override { sink.LeftOpen(line); }
    void ParseError(int line) override
    {
        if (firstError == 0) firstError = line;
        sink.ParseError(line);
    }
    bool WantsLines() const override { return true; }
    bool WantsArguments() const override { return sink.WantsArguments(); }

    bool Any() const { return any; }
    int FirstError() const { return firstError; }

private:
    LogSink& sink;
    const std::string& name;
    bool any = false;
    int firstError = 0;
};

}  // namespace

bool ReadEvents(LogInput& input, const std::string& name, LogSink& sink, Output& messages)
{
    static const bool prepared = (PrepareLogReader(), true);
    static_cast<void>(prepared);
    LogCheck check(sink, name);
    switch (ReadLog(input, check)) {
        case LogReadResult::Complete: return true;
        case LogReadResult::NotReadable: throw InputError(name + ": the log reader could not be made");
        default: break;
    }
    if (!check.Any()) throw InputError(name + ": this is no log of ZELT, or nothing is in it");
    messages << name << ": line " << check.FirstError()
             << ": the log is cut off or damaged here, so this answer may be incomplete\n";
    return false;
}

bool ReadEvents(const std::string& path, LogSink& sink, Output& messages)
{
    LogFileInput file(path);
    return ReadEvents(file, path, sink, messages);
}

}  // namespace zelt::ctl
