// The installed components, each with those of the given editions of ZELT that can host it: at most one for an in-process
// component of one width; both are possible for a component that runs as a separate program, or exists in both widths.
#pragma once

#include <vector>

#include "packages/package_kinds.h"
#include "system/component_scan.h"
#include "system/edition.h"

namespace zelt::ctl {

struct HostedComponent {
    ComponentInfo info;                 // with an obstacle only when there is no host
    std::vector<const Edition*> hosts;  // the 32-bit edition first
};

// For each kind of package, in the order of PackageKindRows. Throws InputError when the registry cannot be searched.
std::vector<std::vector<HostedComponent>> FindHostedPackages(const std::vector<const Edition*>& editions);

std::vector<HostedComponent> FindHostedUnits(const std::vector<const Edition*>& editions);

}  // namespace zelt::ctl
