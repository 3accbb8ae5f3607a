#include "shell/log_viewer/label_search.h"

#include <algorithm>
#include <functional>

#include "system/narrow.h"
#include "shell/log_viewer/fragment_search.h"
#include "shell/log_viewer/label_matcher.h"
#include "shell/log_viewer/label_pattern.h"
#include "shell/log_viewer/long_task.h"

namespace zelt {
namespace {

class Finder {
public:
    Finder(const PagedLog& model, const TreeSearch& search, LongTask& task)
        : Finder(model, Narrow(search.text, CP_UTF8), search, task)
    {}

    // The first match among the items from `first` up to `end`; in a backward search, the last one.
    ItemIndex Find(ItemIndex first, ItemIndex end)
    {
        while (first < end && task.ContinueNow()) {
            const PagedLog::Stretch stretch = model.StretchOf(forward ? first : end - 1);
            const ItemIndex from = std::max(first, stretch.first), to = std::min(end, stretch.end);
            const ItemIndex found = FindInStretch(stretch, from, to);
            if (found != kNoItem) return found;
            (forward ? first : end) = forward ? to : from;
        }
        return kNoItem;
    }

private:
    Finder(const PagedLog& model, const std::string& text, const TreeSearch& search, LongTask& task)
        : model(model),
          task(task),
          forward(search.forward),
          wholeItem(search.wholeItem),
          pattern(text, search.ignoreCase),
          fragment(text, search.ignoreCase),
          matchesInRest(model.Rest(), [this](std::string_view label) { return Matches(label); })
    {}

    bool Matches(std::string_view label) const { return wholeItem ? pattern.Is(label) : pattern.IsIn(label); }

    ItemIndex FindInStretch(const PagedLog::Stretch& stretch, ItemIndex first, ItemIndex end)
    {
        if (!stretch.page) {
            return FindIf(first, end, [this](ItemIndex item) { return matchesInRest(model.InRest(item)); });
        }
        if (!fragment.MayBeIn(model.BytesOf(*stretch.page))) return kNoItem;
        return FindIf(first, end, [this](ItemIndex item) { return Matches(model.Label(item)); });
    }

    template <class Match>
    ItemIndex FindIf(ItemIndex first, ItemIndex end, Match match)
    {
        while (first < end && task.Continue()) {
            const ItemIndex item = forward ? first++ : --end;
            if (match(item) && !model.IsRemoved(item)) return item;
        }
        return kNoItem;
    }

    const PagedLog& model;
    LongTask& task;
    const bool forward, wholeItem;
    const LabelPattern pattern;
    const FragmentSearch fragment;
    LabelMatcher<std::function<bool(std::string_view)>> matchesInRest;
};

}  // namespace

ItemIndex FindLabel(const PagedLog& model, ItemIndex start, const TreeSearch& search, LongTask& task)
{
    Finder finder(model, search, task);
    const ItemIndex split = search.forward ? start + 1 : start;
    const ItemIndex before[] = {0, split}, after[] = {split, model.Size()};
    const auto& [first, end] = search.forward ? after : before;
    const ItemIndex found = finder.Find(first, end);
    if (found != kNoItem || task.Cancelled()) return found;
    const auto& [firstThen, endThen] = search.forward ? before : after;
    return finder.Find(firstThen, endThen);
}

}  // namespace zelt
