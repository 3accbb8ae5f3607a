// log show: the log, or the calls that pass a filter, as a tree of text. A filter by result needs to read the log twice, because
// a call's result follows everything that happened during the call; the first reading keeps one bit per call.
#include <vector>

#include "ctl/log/filtered_tree.h"
#include "ctl/log/log_commands.h"

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

// Which calls, in the order of their beginnings, have the wanted result.
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

}  // namespace

int ShowLog(const Arguments& arguments, Streams& streams)
{
    const CallFilter filter(arguments);
    const Wanted wanted = WantedResult(arguments);
    TreeText tree(streams.data, arguments.Has("--calls"));
    const std::string& path = arguments.Operand(0);
    ResultCollector collector(wanted);
    if (wanted != Wanted::All) {
        Output ignored;
        static_cast<void>(ReadEvents(path, collector, ignored));  // the second reading reports it
    }
    FilteredTree shower(filter, wanted == Wanted::All ? nullptr : &collector.matches, tree);
    const bool complete = ReadEvents(path, shower, streams.messages);
    tree.Finish();
    return CodeOf(complete, kFine);
}

}  // namespace zelt::ctl
