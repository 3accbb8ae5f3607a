#include "shell/log_viewer/label_search.h"

#include <string>

#include "core/narrow.h"
#include "shell/log_viewer/label_matcher.h"
#include "shell/log_viewer/long_task.h"

namespace zelt {

ItemIndex FindLabel(const LogModel& model, ItemIndex start, const TreeSearch& search, LongTask& task)
{
    std::string wanted = Narrow(search.text, CP_UTF8);
    if (search.ignoreCase) MakeLower(wanted);
    std::string lowered;
    LabelMatcher matches(model, [&](std::string_view label) {
        if (search.ignoreCase) {
            lowered = label;
            MakeLower(lowered);
            label = lowered;
        }
        return search.wholeItem ? label == wanted : label.find(wanted) != std::string_view::npos;
    });
    ItemIndex item = start;
    do {
        item = search.forward ? model.Next(item) : model.Previous(item);
        if (matches(item)) return item;
    } while (item != start && task.Continue());
    return kNoItem;
}

}  // namespace zelt
