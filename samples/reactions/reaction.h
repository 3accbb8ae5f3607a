// Chemical reactions: stoichiometry and the laws of their rates and equilibria, with the source of every number in
// reaction.cpp. Constant data and pure functions; nobody owns a Reaction, and nothing here depends on COM. SI units on
// a mole basis; temperatures in K.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "samples/thermo/compound.h"

namespace zelt::sample {

struct ReactionCompound {
    const wchar_t* id;
    const wchar_t* casNumber;
    double coefficient;  // negative for a compound that is consumed
    double charge;       // in elementary charges
    double order = 0;    // of the rate in this compound
};

// The measure of concentration in a rate law or an equilibrium constant.
enum class ConcentrationBasis { kMolarity, kPartialPressure, kMolality };

// Rate of the base reactant's consumption, mol/(m3 s): factor * exp(-activationTemperature / T) * product of
// concentration^order, with concentrations in mol/m3 or partial pressures in Pa.
struct RateLaw {
    double factor;
    double activationTemperature;  // K, the energy of activation over the gas constant
};

// ln K = a + b/T + c ln T + d T + e T2, for activities that are partial pressures over `standardPressure` (gases) or
// molalities over 1 mol/kg.
struct EquilibriumLaw {
    double coefficients[5];
    double standardPressure;  // Pa; 0 for molalities
};

struct Reaction {
    const wchar_t* id;
    const wchar_t* phase;
    const wchar_t* baseReactant;
    ConcentrationBasis basis;
    bool kinetic;
    RateLaw rate;                // of a kinetic reaction
    EquilibriumLaw equilibrium;  // of any other
    std::vector<ReactionCompound> compounds;

    // Net moles produced per mole of reaction.
    double MoleChange() const;
};

struct ReactionPackageDefinition {
    const wchar_t* name;
    const wchar_t* description;
    bool electrolytes;
    std::vector<Reaction> reactions;
};

// The packages that the sample offers.
std::span<const ReactionPackageDefinition> AllReactionPackages();
// Compared without regard to case; null if there is none.
const ReactionPackageDefinition* FindReactionPackage(std::wstring_view name);

// The rate constant, in the unit that follows from the orders.
WithSlope RateConstant(const RateLaw& law, double temperature);
// Natural logarithm of the equilibrium constant for the law's activities.
WithSlope LogEquilibriumConstant(std::span<const double> coefficients, double temperature);
// J/mol, by van 't Hoff's equation.
double EnthalpyOfReaction(std::span<const double> coefficients, double temperature);

}  // namespace zelt::sample
