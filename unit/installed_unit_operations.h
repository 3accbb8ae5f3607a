// The unit operations that are installed on this computer.
#pragma once

#include <vector>

#include "system/component_scan.h"

namespace zelt {

struct InstalledUnits {
    std::vector<ComponentInfo> found;
    Outcome outcome;                               // of the search
    std::vector<ComponentInfo> ofOtherWidth = {};  // registered for the other width only, and not usable here
};

// All except the program's own. Searched for once per process, on the first request.
const InstalledUnits& InstalledUnitOperations();

}  // namespace zelt
