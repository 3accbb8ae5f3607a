#include "samples/thermo/ideal_solution.h"

#include <cmath>
#include <utility>

namespace zelt::sample {
namespace {

void CheckState(double temperature, double pressure)
{
    CheckTemperature(temperature);
    CheckPressure(pressure);
}

CompoundProperties Zeros(std::size_t count)
{
    return {std::vector<double>(count), std::vector<double>(count), std::vector<double>(count),
            std::vector<double>(count * count)};
}

// The exponential of each value, and its derivatives by the chain rule.
CompoundProperties Exponential(CompoundProperties logarithm)
{
    const std::size_t count = logarithm.value.size();
    for (std::size_t i = 0; i < count; ++i) {
        const double value = std::exp(logarithm.value[i]);
        logarithm.value[i] = value;
        logarithm.dT[i] *= value;
        logarithm.dP[i] *= value;
        for (std::size_t j = 0; j < count; ++j) logarithm.dn[i * count + j] *= value;
    }
    return logarithm;
}

}  // namespace

CompoundProperties IdealSolution::KValues(double temperature, double pressure) const
{
    // The vapour's fugacity coefficients are 1, so the liquid's are the K-values.
    return FugacityCoefficient(Phase::kLiquid, temperature, pressure);
}

Property IdealSolution::Enthalpy(Phase phase, double temperature, double pressure,
                                 std::span<const double> fractions) const
{
    CheckState(temperature, pressure);
    Property sum{};
    for (std::size_t i = 0; i < Count(); ++i) {
        // An absent compound adds nothing, and may be above its critical temperature.
        if (fractions[i] == 0) continue;
        WithSlope enthalpy{IdealGasEnthalpy(At(i), temperature), IdealGasHeatCapacity(At(i), temperature)};
        if (phase == Phase::kLiquid) {
            const WithSlope heat = HeatOfVaporisation(At(i), temperature);
            enthalpy.value -= heat.value;
            enthalpy.dT -= heat.dT;
        }
        sum.value += fractions[i] * enthalpy.value;
        sum.dT += fractions[i] * enthalpy.dT;
    }
    return sum;
}

Property IdealSolution::Entropy(Phase phase, double temperature, double pressure,
                                std::span<const double> fractions) const
{
    CheckState(temperature, pressure);
    const double logReference = std::log(kReferencePressure);
    Property sum{};
    double amount = 0;
    for (std::size_t i = 0; i < Count(); ++i) {
        if (fractions[i] == 0) continue;
        double value = IdealGasEntropy(At(i), temperature);
        double dT = IdealGasHeatCapacity(At(i), temperature) / temperature;
        if (phase == Phase::kVapour) {
            value -= kGasConstant * (std::log(pressure) - logReference);
        } else {
            const WithSlope saturation = LogVapourPressure(At(i), temperature);
            const WithSlope heat = HeatOfVaporisation(At(i), temperature);
            value -= kGasConstant * (saturation.value - logReference) + heat.value / temperature;
            dT -= kGasConstant * saturation.dT + heat.dT / temperature - heat.value / (temperature * temperature);
        }
        // The entropy of mixing.
        value -= kGasConstant * std::log(fractions[i]);
        sum.value += fractions[i] * value;
        sum.dT += fractions[i] * dT;
        amount += fractions[i];
    }
    if (phase == Phase::kVapour) sum.dP = -amount * kGasConstant / pressure;
    return sum;
}

Property IdealSolution::Volume(Phase phase, double temperature, double pressure,
                               std::span<const double> fractions) const
{
    CheckState(temperature, pressure);
    if (phase == Phase::kVapour) {
        const double volume = kGasConstant * temperature / pressure;
        return {volume, kGasConstant / pressure, -volume / pressure};
    }
    Property sum{};
    for (std::size_t i = 0; i < Count(); ++i) {
        if (fractions[i] == 0) continue;
        const WithSlope volume = LiquidVolume(At(i), temperature);
        sum.value += fractions[i] * volume.value;
        sum.dT += fractions[i] * volume.dT;
    }
    return sum;
}

Property IdealSolution::Density(Phase phase, double temperature, double pressure,
                                std::span<const double> fractions) const
{
    const Property volume = Volume(phase, temperature, pressure, fractions);
    const double density = 1 / volume.value;
    return {density, -volume.dT * density * density, -volume.dP * density * density};
}

CompoundProperties IdealSolution::LogFugacityCoefficient(Phase phase, double temperature, double pressure) const
{
    CheckState(temperature, pressure);
    CompoundProperties result = Zeros(Count());
    if (phase == Phase::kVapour) return result;
    for (std::size_t i = 0; i < Count(); ++i) {
        const WithSlope saturation = LogVapourPressure(At(i), temperature);
        result.value[i] = saturation.value - std::log(pressure);
        result.dT[i] = saturation.dT;
        result.dP[i] = -1 / pressure;
    }
    return result;
}

CompoundProperties IdealSolution::FugacityCoefficient(Phase phase, double temperature, double pressure) const
{
    return Exponential(LogFugacityCoefficient(phase, temperature, pressure));
}

CompoundProperties IdealSolution::Fugacity(Phase phase, double temperature, double pressure,
                                           std::span<const double> fractions) const
{
    CompoundProperties result = FugacityCoefficient(phase, temperature, pressure);
    for (std::size_t i = 0; i < Count(); ++i) {
        const double coefficient = result.value[i];
        result.value[i] = fractions[i] * coefficient * pressure;
        result.dT[i] *= fractions[i] * pressure;
        result.dP[i] = fractions[i] * (coefficient + result.dP[i] * pressure);
        // The fraction of i is its amount over the total: its derivative with respect to amount j is (i == j) - x_i at
        // 1 mol.
        for (std::size_t j = 0; j < Count(); ++j) {
            result.dn[i * Count() + j] = ((i == j ? 1.0 : 0.0) - fractions[i]) * coefficient * pressure;
        }
    }
    return result;
}

double IdealSolution::MolecularWeight(std::span<const double> fractions) const
{
    double sum = 0;
    for (std::size_t i = 0; i < Count(); ++i) sum += fractions[i] * At(i).molecularWeight;
    return sum;
}

}  // namespace zelt::sample
