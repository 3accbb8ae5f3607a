// The installed components, each with the editions of ZELT that can host it. Only the edition of the same width can host an
// in-process component. Both may host a component that runs as a separate program, or exists in both widths.
#pragma once

#include <vector>

#include "packages/package_kinds.h"
#include "system/component_scan.h"
#include "system/edition.h"

namespace zelt::ctl {

struct HostedComponent {
    ComponentInfo info;                 // its obstacle is empty if there is a host
    std::vector<const Edition*> hosts;  // the 32-bit edition first
};

// One list for each kind of package, in the order of PackageKindRows. Throws InputError when the registry cannot be searched.
std::vector<std::vector<HostedComponent>> FindHostedPackages(const std::vector<const Edition*>& editions);

std::vector<HostedComponent> FindHostedUnits(const std::vector<const Edition*>& editions);

}  // namespace zelt::ctl
