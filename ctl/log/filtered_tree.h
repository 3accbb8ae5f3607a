// The calls that pass a filter, as a tree of text with their arguments and messages. What is outside of calls is shown only
// without a filter.
#pragma once

#include <vector>

#include "ctl/log/call_filter.h"
#include "ctl/log/tree_text.h"

namespace zelt::ctl {

class FilteredTree final : public LogSink {
public:
    // `results`, unless null, tells for each call, in the order of the file, whether its result is wanted.
    FilteredTree(CallFilter& filter, const std::vector<bool>* results, TreeText& tree)
        : filter(filter), results(results), tree(tree)
    {}

    // Leaves out the system's queries and counts them.
    void HideQueries() { hidesQueries = true; }
    // Shows the calls inside of a call that passes the filter, too.
    void ShowNested() { showsNested = true; }

    // Whether a call has passed the filter.
    bool AnyCall() const { return anyCall; }
    // How many of the system's queries would have been shown.
    long long Hidden() const { return hidden; }

    void Begin(const LogEvent& event) override
    {
        if (event.kind == EventKind::Call) {
            const bool passes = filter.Matches(event) && (!results || (*results)[calls]);
            anyCall |= passes;
            open.push_back(passes || (showsNested && !open.empty() && open.back()));
            ++calls;
        }
        if (!Shown()) return;
        if (hidesQueries && KindOfMessage(event) == MessageKind::Query) {
            hidden += !tree.IsSilent();
        } else {
            tree.Begin(event);
        }
    }
    void End(EventKind kind, int depth) override
    {
        if (Shown()) tree.End(kind, depth);
        if (kind == EventKind::Call) open.pop_back();
    }
    bool WantsArguments() const override { return Shown() && tree.WantsArguments(); }

private:
    bool Shown() const { return open.empty() ? !filter.Any() && !results : open.back(); }

    CallFilter& filter;
    const std::vector<bool>* const results;
    TreeText& tree;
    bool hidesQueries = false, showsNested = false;
    bool anyCall = false;
    std::vector<bool> open;
    std::size_t calls = 0;
    long long hidden = 0;
};

}  // namespace zelt::ctl
