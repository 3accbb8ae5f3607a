// Which installed component a word of the command line means.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "system/component_scan.h"
#include "system/edition.h"
#include "packages/exported_package.h"

namespace zelt::ctl {

// Whether the word is the component's class identifier, its ProgID, or its name with or without the description, ignoring case.
bool Means(const std::wstring& word, const ComponentInfo& component);

struct ChosenComponent {
    PackageKind kind;
    ComponentInfo component;
    const Edition* host;
};

// The one component that `word` means, and the one of `editions` that can host it. If `manager` is true, the component must be
// a manager; otherwise it must not be one. `type` is "PP 1.1", "PP 1.0" or "RP 1.0", with or without the blank, or nothing for
// any type. Throws UsageError for another type, and Refusal unless exactly one component and one edition fit.
ChosenComponent ChooseComponent(const std::string& word, bool manager, const std::optional<std::string>& type,
                                const std::vector<const Edition*>& editions);

}  // namespace zelt::ctl
