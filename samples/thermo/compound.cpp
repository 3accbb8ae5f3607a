#include "samples/thermo/compound.h"

#include <cmath>
#include <cwctype>
#include <limits>

#include "samples/thermo/errors.h"

namespace zelt::sample {
namespace {

// Where the numbers come from:
//   molecular weight, critical constants, acentric factor, normal boiling point
//       J. M. Smith, H. C. Van Ness, M. M. Abbott, Introduction to Chemical Engineering Thermodynamics, 7th ed.,
//       Table B.1 (characteristic properties of pure species)
//   Antoine's equation
//       the same, Table B.2; fitted for benzene 6 to 104, toluene 13 to 136, o-xylene 40 to 172, methanol -11 to 83,
//       ethanol 3 to 96, water 0 to 200 degrees Celsius
//   ideal gas heat capacity
//       B. E. Poling, J. M. Prausnitz, J. P. O'Connell, The Properties of Gases and Liquids, 5th ed., Appendix A,
//       Section C; 50 to 1000 K
//   liquid density
//       Perry's Chemical Engineers' Handbook, 8th ed., densities of liquids (DIPPR equation 105); water from the
//       7th ed., fitted from 273 to 333 K
//   heat of vaporisation
//       Perry's Chemical Engineers' Handbook, 8th ed., Table 2-150 (DIPPR equation 106)
// Registry numbers, formulas, names and SMILES are common knowledge.
// clang-format off
constexpr Compound kCompounds[] = {
    {L"Benzene", L"C6H6", L"benzene", L"71-43-2", L"c1ccccc1",
     78.114, 562.2, 48.98e5, 259e-6, 0.210, 353.2,
     {13.7819, 2726.81, 217.572},
     {3.551, -6.184e-3, 14.365e-5, -19.807e-8, 8.234e-11},
     {1025.9, 0.26666, 562.05, 0.28394},
     {45346, 0.39053, 0, 0, 562.05}},
    {L"Toluene", L"C7H8", L"methylbenzene", L"108-88-3", L"Cc1ccccc1",
     92.141, 591.8, 41.06e5, 316e-6, 0.262, 383.8,
     {13.9320, 3056.96, 217.625},
     {3.866, 3.558e-3, 13.356e-5, -18.659e-8, 7.690e-11},
     {879.2, 0.27136, 591.75, 0.29241},
     {49507, 0.37742, 0, 0, 591.75}},
    {L"o-Xylene", L"C8H10", L"1,2-dimethylbenzene", L"95-47-6", L"Cc1ccccc1C",
     106.167, 630.3, 37.34e5, 369e-6, 0.310, 417.6,
     {14.0415, 3358.79, 212.041},
     {3.289, 34.144e-3, 4.989e-5, -8.335e-8, 3.338e-11},
     {699.62, 0.26143, 630.3, 0.27365},
     {55395, 0.37788, 0, 0, 630.3}},
    {L"Methanol", L"CH4O", L"methanol", L"67-56-1", L"CO",
     32.042, 512.6, 80.97e5, 118e-6, 0.564, 337.9,
     {16.5785, 3638.27, 239.500},
     {4.714, -6.986e-3, 4.211e-5, -4.443e-8, 1.535e-11},
     {2326.7, 0.27073, 512.5, 0.24713},
     {50451, 0.33594, 0, 0, 512.5}},
    {L"Ethanol", L"C2H6O", L"ethanol", L"64-17-5", L"CCO",
     46.069, 513.9, 61.48e5, 167e-6, 0.645, 351.4,
     {16.8958, 3795.17, 230.918},
     {4.396, 0.628e-3, 5.546e-5, -7.024e-8, 2.685e-11},
     {1628.8, 0.27469, 514.0, 0.23178},
     {55789, 0.31245, 0, 0, 514.0}},
    {L"Water", L"H2O", L"oxidane", L"7732-18-5", L"O",
     18.015, 647.1, 220.55e5, 55.9e-6, 0.345, 373.2,
     {16.3872, 3885.70, 230.170},
     {4.395, -4.186e-3, 1.405e-5, -1.564e-8, 0.632e-11},
     {5459, 0.30542, 647.13, 0.081},
     {52053, 0.3199, -0.212, 0.25795, 647.096}},
};
// clang-format on

constexpr double kCelsius = 273.15;
constexpr double kLog1000 = 6.907755278982137;  // Antoine's equation gives kPa

bool SameText(std::wstring_view a, std::wstring_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::towlower(a[i]) != std::towlower(b[i])) return false;
    }
    return true;
}

}  // namespace

std::span<const Compound> AllCompounds() { return kCompounds; }

const Compound* FindCompound(std::wstring_view id)
{
    for (const Compound& compound : kCompounds) {
        if (SameText(compound.id, id)) return &compound;
    }
    return nullptr;
}

WithSlope LogVapourPressure(const Compound& compound, double temperature)
{
    const auto [a, b, c] = compound.antoine;
    const double denominator = temperature - kCelsius + c;
    return {a - b / denominator + kLog1000, b / (denominator * denominator)};
}

double VapourPressure(const Compound& compound, double temperature)
{
    return std::exp(LogVapourPressure(compound, temperature).value);
}

double SaturationTemperature(const Compound& compound, double pressure)
{
    CheckPressure(pressure);
    const auto [a, b, c] = compound.antoine;
    const double distance = a + kLog1000 - std::log(pressure);
    // The vapour pressure tends to exp(A) kPa as the temperature grows without limit.
    if (distance <= 0) throw OutOfRange("pressure", pressure, 0, std::exp(a + kLog1000));
    return b / distance - c + kCelsius;
}

double IdealGasHeatCapacity(const Compound& compound, double t)
{
    const auto& a = compound.heatCapacity;
    return kGasConstant * (a[0] + t * (a[1] + t * (a[2] + t * (a[3] + t * a[4]))));
}

double IdealGasEnthalpy(const Compound& compound, double temperature)
{
    const auto& a = compound.heatCapacity;
    const auto integral = [&a](double t) {
        return t * (a[0] + t * (a[1] / 2 + t * (a[2] / 3 + t * (a[3] / 4 + t * a[4] / 5))));
    };
    return kGasConstant * (integral(temperature) - integral(kReferenceTemperature));
}

double IdealGasEntropy(const Compound& compound, double temperature)
{
    const auto& a = compound.heatCapacity;
    const auto integral = [&a](double t) {
        return a[0] * std::log(t) + t * (a[1] + t * (a[2] / 2 + t * (a[3] / 3 + t * a[4] / 4)));
    };
    return kGasConstant * (integral(temperature) - integral(kReferenceTemperature));
}

WithSlope LiquidVolume(const Compound& compound, double temperature)
{
    const auto [c1, c2, c3, c4] = compound.liquidDensity;
    if (!(temperature < c3)) throw OutOfRange("temperature", temperature, kLowestTemperature, c3);
    const double distance = 1 - temperature / c3;
    const double power = std::pow(distance, c4);
    const double volume = std::pow(c2, 1 + power) / c1;
    const double powerSlope = -c4 * power / (distance * c3);
    return {volume, volume * std::log(c2) * powerSlope};
}

WithSlope HeatOfVaporisation(const Compound& compound, double temperature)
{
    const auto [c1, c2, c3, c4, critical] = compound.vaporisation;
    if (!(temperature < critical)) throw OutOfRange("temperature", temperature, kLowestTemperature, critical);
    const double reduced = temperature / critical;
    const double distance = 1 - reduced;
    const double exponent = c2 + reduced * (c3 + reduced * c4);
    const double heat = c1 * std::pow(distance, exponent);
    const double exponentSlope = c3 + 2 * c4 * reduced;
    return {heat, heat * (exponentSlope * std::log(distance) - exponent / distance) / critical};
}

void CheckTemperature(double temperature)
{
    if (!(temperature >= kLowestTemperature && temperature <= kHighestTemperature)) {
        throw OutOfRange("temperature", temperature, kLowestTemperature, kHighestTemperature);
    }
}

void CheckPressure(double pressure)
{
    constexpr double highest = std::numeric_limits<double>::max();
    if (!(pressure > 0 && pressure <= highest)) throw OutOfRange("pressure", pressure, 0, highest);
}

}  // namespace zelt::sample
