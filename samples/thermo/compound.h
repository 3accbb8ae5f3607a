// Pure compounds: their constants and temperature functions, with the source of every number in compound.cpp. The table
// is constant data; nobody owns a Compound. Units are SI on a mole basis unless a comment gives another.
#pragma once

#include <span>
#include <string_view>

namespace zelt::sample {

inline constexpr double kGasConstant = 8.31446261815324;  // J/(mol K), exact in the SI of 2019
inline constexpr double kReferenceTemperature = 298.15;   // K, where the ideal gas has zero enthalpy
inline constexpr double kReferencePressure = 101325.0;    // Pa, where its entropy at that temperature is zero
inline constexpr double kLowestTemperature = 200.0;       // K, the lower end of the model's range
inline constexpr double kHighestTemperature = 1000.0;     // K, the upper end: heat capacities are fitted up to here

// A value with its derivative with respect to temperature.
struct WithSlope {
    double value;
    double dT;
};

struct Compound {
    const wchar_t* id;       // the name that callers use
    const wchar_t* formula;  // Hill order
    const wchar_t* iupacName;
    const wchar_t* casNumber;
    const wchar_t* smiles;
    double molecularWeight;      // g/mol
    double criticalTemperature;  // K
    double criticalPressure;     // Pa
    double criticalVolume;       // m3/mol
    double acentricFactor;       // -
    double normalBoilingPoint;   // K
    double antoine[3];           // ln(p/kPa) = A - B / (t/C + C)
    double heatCapacity[5];      // cp/R = a0 + a1 T + a2 T2 + a3 T3 + a4 T4
    double liquidDensity[4];     // mol/m3 = c1 / c2^(1 + (1 - T/c3)^c4)
    double vaporisation[5];      // J/mol = c1 (1 - Tr)^(c2 + c3 Tr + c4 Tr2), Tr = T / c5
};

// Every compound that the sample knows.
std::span<const Compound> AllCompounds();

// The compound with this id, compared without regard to case; null if there is none.
const Compound* FindCompound(std::wstring_view id);

// The natural logarithm of the vapour pressure in Pa. Extrapolates Antoine's equation outside its fitted range.
WithSlope LogVapourPressure(const Compound& compound, double temperature);
double VapourPressure(const Compound& compound, double temperature);  // Pa

// The temperature at which the vapour pressure is `pressure` (Pa). Throws OutOfRange when Antoine's equation has none, and
// for a pressure that is not positive and finite.
double SaturationTemperature(const Compound& compound, double pressure);

// Ideal gas: heat capacity, enthalpy and entropy relative to the gas at the reference temperature and pressure.
double IdealGasHeatCapacity(const Compound& compound, double temperature);  // J/(mol K)
double IdealGasEnthalpy(const Compound& compound, double temperature);      // J/mol
double IdealGasEntropy(const Compound& compound, double temperature);       // J/(mol K), at kReferencePressure

// Saturated liquid: molar volume in m3/mol, and heat of vaporisation in J/mol. Both throw OutOfRange at and above the
// critical temperature in their equations, where there is no liquid.
WithSlope LiquidVolume(const Compound& compound, double temperature);
WithSlope HeatOfVaporisation(const Compound& compound, double temperature);

// Throws OutOfRange unless the temperature is in the model's range.
void CheckTemperature(double temperature);
// Throws OutOfRange unless the pressure is positive and finite.
void CheckPressure(double pressure);

}  // namespace zelt::sample
