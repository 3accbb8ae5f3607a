#include "shell/log_viewer/label_search.h"

#include "system/narrow.h"
#include "shell/log_viewer/label_matcher.h"
#include "shell/log_viewer/label_pattern.h"
#include "shell/log_viewer/long_task.h"

namespace zelt {

ItemIndex FindLabel(const LogModel& model, ItemIndex start, const TreeSearch& search, LongTask& task)
{
    const LabelPattern pattern(Narrow(search.text, CP_UTF8), search.ignoreCase);
    LabelMatcher matches(
        model, [&](std::string_view label) { return search.wholeItem ? pattern.Is(label) : pattern.IsIn(label); });
    ItemIndex item = start;
    do {
        item = search.forward ? model.Next(item) : model.Previous(item);
        if (matches(item)) return item;
    } while (item != start && task.Continue());
    return kNoItem;
}

}  // namespace zelt
