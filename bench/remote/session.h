// Counts the remote calls, in both directions, of a simulator's work with a package in another process: the simulator makes the
// package, lets it flash a material and calculate properties at several temperatures, and releases it.
#pragma once

#include <cape-open.h>

namespace zelt::bench {

struct RemoteCalls {
    long out = 0;  // to the package, including calls that the system itself makes
    long in = 0;   // from the package to the material
};

// Throws std::runtime_error when a call fails.
RemoteCalls CountSession(ICapeThermoPropertyPackageManager& manager, const wchar_t* name);

}  // namespace zelt::bench
