// Counts the remote calls, in both directions, that a simulator's work with a package in another process takes. The work starts
// with making the package and ends with releasing it. In between, the package flashes a material and calculates its properties at
// several temperatures.
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
