// The model: an ideal gas above an ideal solution (Raoult's law), for a list of compounds in a given order. Borrows the
// compounds; keeps no state between calls. Every function of temperature and pressure throws OutOfRange for a
// temperature outside the model's range or a pressure that is not positive and finite. For the liquid, Enthalpy, Entropy,
// Volume and Density also throw OutOfRange at and above the critical temperature of any compound present. Compositions are
// mole fractions, one for each compound; they are not normalised.
//
// The enthalpy of the liquid is that of the gas minus the published heat of vaporisation. The liquid's entropy is such that
// both phases of a compound have the same Gibbs energy at its vapour pressure, which makes equilibrium consistent with
// the entropies. The liquid's enthalpy, entropy, volume and fugacities do not depend on pressure.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "samples/thermo/compound.h"

namespace zelt::sample {

enum class Phase { kVapour, kLiquid };

// A mixture property with its derivatives at constant composition.
struct Property {
    double value;
    double dT;  // per K, at constant pressure
    double dP;  // per Pa, at constant temperature
};

// A property of each compound in the mixture, n values. `dn` is the derivative of value i with respect to the amount of
// compound j at constant temperature and pressure and a total amount of 1 mol, at [i * n + j].
struct CompoundProperties {
    std::vector<double> value;
    std::vector<double> dT;
    std::vector<double> dP;
    std::vector<double> dn;
};

class IdealSolution {
public:
    explicit IdealSolution(std::vector<const Compound*> compounds) : compounds(std::move(compounds)) {}

    std::size_t Count() const { return compounds.size(); }
    const Compound& At(std::size_t index) const { return *compounds[index]; }

    // Vapour over liquid fraction at equilibrium, n values: the vapour pressure over the pressure.
    CompoundProperties KValues(double temperature, double pressure) const;

    Property Enthalpy(Phase phase, double temperature, double pressure, std::span<const double> fractions) const;
    Property Entropy(Phase phase, double temperature, double pressure, std::span<const double> fractions) const;
    Property Volume(Phase phase, double temperature, double pressure, std::span<const double> fractions) const;
    Property Density(Phase phase, double temperature, double pressure, std::span<const double> fractions) const;

    // Independent of composition in this model.
    CompoundProperties LogFugacityCoefficient(Phase phase, double temperature, double pressure) const;
    CompoundProperties FugacityCoefficient(Phase phase, double temperature, double pressure) const;
    // In Pa.
    CompoundProperties Fugacity(Phase phase, double temperature, double pressure,
                                std::span<const double> fractions) const;

    // Mean molecular weight, g/mol.
    double MolecularWeight(std::span<const double> fractions) const;

private:
    std::vector<const Compound*> compounds;
};

}  // namespace zelt::sample
