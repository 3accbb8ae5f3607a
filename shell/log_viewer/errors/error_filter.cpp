#include "shell/log_viewer/errors/error_filter.h"

#include <algorithm>

#include "shell/log_viewer/label_pattern.h"

namespace zelt {

void ErrorFilter::Choose(const std::string& text, LongTask& task)
{
    active = !text.empty();
    chosen.clear();
    if (!active) return;
    const LabelPattern pattern(text, true);
    // Successive errors are usually inside the same call.
    ItemIndex call = kNoItem;
    bool isInCall = false;
    for (std::size_t number = 0; number < model.ErrorCount() && task.Continue(); ++number) {
        const ItemIndex error = model.Error(number);
        if (const ItemIndex around = model.CallAround(error); around != call) {
            call = around;
            const CallLabel label = call == kNoItem ? CallLabel() : SplitCallLabel(model.Label(call));
            isInCall = pattern.IsIn(label.name) || pattern.IsIn(label.object);
        }
        if (isInCall || pattern.IsIn(model.Label(error))) chosen.push_back(number);
    }
}

std::size_t ErrorFilter::FirstAfter(ItemIndex item) const
{
    const std::size_t number = model.FirstErrorAfter(item);
    if (!active) return number;
    return static_cast<std::size_t>(std::lower_bound(chosen.begin(), chosen.end(), number) - chosen.begin());
}

}  // namespace zelt
