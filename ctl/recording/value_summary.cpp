#include "ctl/recording/value_summary.h"

#include "recording/comparison.h"

namespace zelt::ctl {

void AppendSummary(std::string& text, const recording::ArgumentRecord& argument)
{
    if (!text.empty()) text += ", ";
    text.append(argument.name).append("=");
    if (argument.shown.empty()) {
        text += recording::Summary(argument.value);
    } else {
        text += argument.shown;
    }
}

}  // namespace zelt::ctl
