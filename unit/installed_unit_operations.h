// The unit operations on this computer, which PRAVIK can wrap.
#pragma once

#include <vector>

#include "system/component_scan.h"

namespace zelt {

struct InstalledUnits {
    std::vector<ComponentInfo> found;
    Outcome outcome;                               // of the search
    std::vector<ComponentInfo> ofOtherWidth = {};  // those that this process cannot use
};

// All except the program's own. Searched for once per process, on the first request.
const InstalledUnits& InstalledUnitOperations();

}  // namespace zelt
