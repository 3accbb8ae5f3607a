// The properties of one phase and of two phases by their standard names, with the derivatives that a suffix requests
// (".Dtemperature", ".Dpressure", ".Dmoles"). The calculations are pure functions.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "samples/thermo/ideal_solution.h"

namespace zelt::sample {

enum class Derivative { kNone, kTemperature, kPressure, kMoles };

// Everything that a phase property may depend on.
struct PhaseInput {
    const IdealSolution& solution;
    Phase phase;
    double temperature;
    double pressure;
    std::span<const double> fractions;
};

struct SinglePhaseProperty {
    const wchar_t* name;
    const wchar_t* basis;  // of the values: "mole", or empty for a property without a basis
    bool moles;            // the derivative with respect to amounts is offered
    // One value for a mixture property; one for each compound otherwise. The derivative with respect to amounts begins
    // with all derivatives of compound 0's value, in the order of the amounts; those of compound 1's value follow.
    std::vector<double> (*calculate)(const PhaseInput& input, Derivative derivative);
};

struct PropertyRequest {
    const SinglePhaseProperty* property;
    Derivative derivative;
};

// The names that the list methods return: each property without a suffix, and with every suffix that it offers.
std::vector<std::wstring> SinglePhasePropertyNames();

// Whether the name, including its suffix, is offered; and the lookup, which throws CapeFailure if it is not.
bool IsSinglePhaseProperty(std::wstring_view name);
PropertyRequest FindSinglePhaseProperty(std::wstring_view name);

// "kvalue" and "logKvalue", with the same suffixes except ".Dmoles".
std::vector<std::wstring> TwoPhasePropertyNames();
bool IsTwoPhaseProperty(std::wstring_view name);
// K-values of the first phase over the second, or what the name asks for instead (logarithms, derivatives), one for each
// compound. Throws CapeFailure for a name that is not offered.
std::vector<double> CalculateTwoPhaseProperty(std::wstring_view name, const IdealSolution& solution, double temperature,
                                              double pressure, bool vapourFirst);

}  // namespace zelt::sample
