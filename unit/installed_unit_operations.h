// The unit operations of this computer, which PRAVIK can wrap.
#pragma once

#include <vector>

#include "system/component_scan.h"

namespace zelt {

struct InstalledUnits {
    std::vector<ComponentInfo> found;
    Outcome outcome;  // of the search
};

// All but the program's own. Searched for when first asked for, once a process.
const InstalledUnits& InstalledUnitOperations();

}  // namespace zelt
