// Shows one call in its place, as a tree of text: the names of the calls around it, its arguments and messages, and the calls
// inside it. The calls inside it are shown completely, or only with names, warnings and errors. Does not write the call's
// result.
#pragma once

#include <vector>

#include "ctl/log/call_results.h"
#include "ctl/log/tree_text.h"

namespace zelt::ctl {

class CallInPlace final : public LogSink {
public:
    // `calls` are the opening lines of the call and of those around it, the outermost first.
    CallInPlace(const std::vector<int>& calls, bool nested, TreeText& tree) : calls(calls), nested(nested), tree(tree)
    {}

    void Begin(const LogEvent& event) override;
    void End(EventKind kind, int depth) override;
    void LeftOpen(int line) override { isUnfinished |= line == calls.back(); }
    bool WantsArguments() const override { return inside == 1 || (inside > 1 && nested); }

    bool IsUnfinished() const { return isUnfinished; }
    const CallResult& Result() const { return result; }
    int Depth() const { return static_cast<int>(calls.size()) - 1; }

private:
    const std::vector<int>& calls;
    const bool nested;
    TreeText& tree;
    std::size_t around = 0;  // how many of `calls` have begun
    int inside = 0;          // how many calls are open: the wanted one and those inside it
    bool isDone = false, isUnfinished = false;
    CallResult result;
};

}  // namespace zelt::ctl
