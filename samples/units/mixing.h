// The arithmetic of joining streams, as a pure function without COM. SI units on a mole basis.
#pragma once

#include <span>
#include <vector>

namespace zelt::sample {

struct StreamState {
    double flow;                    // mol/s, not negative
    double temperature;             // K
    double pressure;                // Pa
    double enthalpy;                // J/mol
    std::vector<double> fractions;  // mol/mol, all streams in the same order of compounds
};

struct Mixture {
    double flow;          // mol/s
    double pressure;      // Pa, the lowest of the streams that flow: without a pump, nothing flows to a higher pressure
    double enthalpyFlow;  // W
    std::vector<double> fractions;
};

// Throws OutOfRange for a flow that is negative or not finite, NoSolution when there is no stream or nothing flows.
// A stream without flow does not affect the pressure.
Mixture Mix(std::span<const StreamState> streams);

}  // namespace zelt::sample
