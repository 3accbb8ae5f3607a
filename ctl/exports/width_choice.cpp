#include "ctl/exports/width_choice.h"

#include "ctl/exports/manager_host.h"
#include "registration/registration_check.h"

namespace zelt::ctl {

namespace {

// This program's own edition always counts as installed, even when nothing but the program was copied.
bool IsInstalled(const Edition& edition)
{
    return edition.width == kThisEdition.width ||
           (CanRun(edition) &&
            (HasTool(edition) || IsRegistered(edition, Scope::Machine) || IsRegistered(edition, Scope::User)));
}

}  // namespace

std::vector<const Edition*> EditionsFor(const Arguments& arguments)
{
    const auto word = arguments.Value(kWidthOption.name);
    if (word && *word != "32" && *word != "64") throw UsageError("--width is 32 or 64, not \"" + *word + '"');
    std::vector<const Edition*> editions;
    for (const Edition& edition : Editions()) {
        if (word ? *word == std::to_string(edition.width) && CanRun(edition) : IsInstalled(edition)) {
            editions.push_back(&edition);
        }
    }
    if (editions.empty()) throw Refusal("this Windows runs 32-bit programs only");
    return editions;
}

std::string WidthText(const Edition& edition) { return std::to_string(edition.width) + "-bit"; }

}  // namespace zelt::ctl
