#include "ctl/exports/width_choice.h"

namespace zelt::ctl {

std::vector<const Edition*> EditionsFor(const Arguments& arguments)
{
    const auto word = arguments.Value(kWidthOption.name);
    if (word && *word != "32" && *word != "64") throw UsageError("--width is 32 or 64, not \"" + *word + '"');
    std::vector<const Edition*> editions;
    for (const Edition& edition : Editions()) {
        if (CanRun(edition) && (!word || *word == std::to_string(edition.width))) editions.push_back(&edition);
    }
    if (editions.empty()) throw Refusal("this Windows runs 32-bit programs only");
    return editions;
}

std::string WidthText(const Edition& edition) { return std::to_string(edition.width) + "-bit"; }

}  // namespace zelt::ctl
