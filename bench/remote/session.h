// What a simulator's work with a package of another process costs in remote calls, in both directions. The work runs from
// making to releasing the package: it sets, flashes and calculates a material at several temperatures.
#pragma once

#include <cape-open.h>

namespace zelt::bench {

struct RemoteCalls {
    long out = 0;  // to the package, including the system's own
    long in = 0;   // from the package to the material
};

// Throws std::runtime_error when the package refuses something.
RemoteCalls CountSession(ICapeThermoPropertyPackageManager& manager, const wchar_t* name);

}  // namespace zelt::bench
