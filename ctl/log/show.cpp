// log show: shows the log, the calls that pass a filter, or one call with what is around it and inside it, as a tree of text. A
// filter by result needs to read the log twice, because a call's result follows everything that happened during the call; the
// first reading keeps one bit per call.
#include <cmath>
#include <limits>
#include <vector>

#include "ctl/log/call_at_line.h"
#include "ctl/log/call_in_place.h"
#include "ctl/log/filtered_tree.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_paths.h"

namespace zelt::ctl {
namespace {

enum class Wanted { All, Fine, Failed, Violated, Warned };

Wanted WantedResult(const Arguments& arguments)
{
    const auto text = arguments.Value("--result");
    if (!text) return Wanted::All;
    if (*text == "ok") return Wanted::Fine;
    if (*text == "failed") return Wanted::Failed;
    if (*text == "violation") return Wanted::Violated;
    if (*text == "warning") return Wanted::Warned;
    throw UsageError("--result is ok, failed, violation or warning");
}

bool Matches(const CallResult& result, Wanted wanted)
{
    switch (wanted) {
        case Wanted::Fine: return !result.failed;
        case Wanted::Failed: return result.failed;
        case Wanted::Violated: return result.violated;
        case Wanted::Warned: return result.warned;
        case Wanted::All: break;
    }
    return true;
}

// Which calls, in the order in which they begin, have the wanted result.
class ResultCollector final : public LogSink {
public:
    explicit ResultCollector(Wanted wanted) : wanted(wanted) {}

    void Begin(const LogEvent& event) override
    {
        if (event.kind == EventKind::Call) {
            open.push_back({matches.size(), {}});
            matches.push_back(false);
        } else if (!open.empty()) {
            open.back().result.Take(KindOfMessage(event));
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind != EventKind::Call) return;
        matches[open.back().number] = Matches(open.back().result, wanted);
        open.pop_back();
    }
    bool WantsArguments() const override { return false; }

    std::vector<bool> matches;

private:
    struct OpenCall {
        std::size_t number;
        CallResult result;
    };
    const Wanted wanted;
    std::vector<OpenCall> open;
};

// The line that --at names.
std::optional<int> WantedLine(const Arguments& arguments)
{
    const auto number = arguments.Number("--at");
    if (!number) return {};
    if (*number < 1 || *number > std::numeric_limits<int>::max() || *number != std::floor(*number)) {
        throw UsageError("--at wants the number of a line");
    }
    if (LogPaths(arguments).size() > 1) throw UsageError("--at is for one log");
    for (const char* other : {"--object", "--interface", "--method", "--direction", "--result"}) {
        if (arguments.Has(other)) throw UsageError(std::string("--at and ") + other + " do not go together");
    }
    return static_cast<int>(*number);
}

// Shows the message in a line outside of calls.
class LineShower final : public LogSink {
public:
    LineShower(int line, TreeText& tree) : line(line), tree(tree) {}
    void Begin(const LogEvent& event) override
    {
        if (event.line == line) tree.Begin(event);
    }
    bool WantsArguments() const override { return false; }

private:
    const int line;
    TreeText& tree;
};

const char* TextOf(const CallResult& result, bool unfinished)
{
    if (unfinished) return "result: none; the log is cut off during this call";
    if (result.failed) return "result: failed";
    return result.violated ? "result: ok, with a violation" : "result: ok";
}

int ShowCall(const Arguments& arguments, int line, const std::string& path, Streams& streams)
{
    const RereadableLog log(path);
    CallAtLine place(line);
    Output ignored;  // the second reading reports a damaged log
    static_cast<void>(log.Read(place, ignored));
    if (place.LastLine() < line) {
        throw Refusal(NameOfLog(path) + ": the log has no line " + std::to_string(line) + "; its last is " +
                      std::to_string(place.LastLine()));
    }
    TreeText tree(streams.data);
    if (place.Calls().empty()) {
        LineShower shower(line, tree);
        return CodeOf(log.Read(shower, streams.messages), kFine);
    }
    CallInPlace call(place.Calls(), arguments.Has("--nested"), tree);
    const bool complete = log.Read(call, streams.messages);
    tree.Line(call.Depth(), TextOf(call.Result(), call.IsUnfinished()));
    return CodeOf(complete, kFine);
}

}  // namespace

int ShowLog(const Arguments& arguments, const std::string& path, Streams& streams)
{
    if (const auto line = WantedLine(arguments)) return ShowCall(arguments, *line, path, streams);
    CallFilter filter(arguments);
    const Wanted wanted = WantedResult(arguments);
    TreeText tree(streams.data, arguments.Has("--calls"));
    const auto read = [&](ResultCollector* collector, auto&& readLog) {
        FilteredTree shower(filter, collector ? &collector->matches : nullptr, tree);
        if (arguments.Has("--nested")) shower.ShowNested();
        const bool complete = readLog(shower, streams.messages);
        tree.Finish();
        if (collector ? !shower.AnyCall() : filter.Any() && !shower.AnyCall()) {
            streams.messages << NameOfLog(path) << ": no call passes the filter\n";
        }
        return CodeOf(complete, kFine);
    };
    if (wanted == Wanted::All) {
        return read(nullptr, [&](LogSink& sink, Output& messages) { return ReadEvents(path, sink, messages); });
    }
    const RereadableLog log(path);
    ResultCollector collector(wanted);
    Output ignored;  // the second reading reports a damaged log
    static_cast<void>(log.Read(collector, ignored));
    return read(&collector, [&](LogSink& sink, Output& messages) { return log.Read(sink, messages); });
}

}  // namespace zelt::ctl
