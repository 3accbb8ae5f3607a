// A simulator's work with a package of another process, from its making to its release: a material is set, flashed and
// calculated at several temperatures. What it costs in remote calls, in both directions.
#pragma once

#include <cape-open.h>

namespace zelt::bench {

struct RemoteCalls {
    long out = 0;  // to the package, the system's own among them
    long in = 0;   // from the package to the material
};

// Throws std::runtime_error when the package refuses something.
RemoteCalls CountSession(ICapeThermoPropertyPackageManager& manager, const wchar_t* name);

}  // namespace zelt::bench
