// Vapour-liquid equilibrium of the ideal solution. Everything here is a pure function. Temperatures in K, pressures in
// Pa, enthalpies in J/mol, entropies in J/(mol K), vapour fractions in mol/mol; a feed is one non-negative mole fraction
// for each compound; their sum need not be 1. All except RachfordRice throw OutOfRange outside the model's range and
// NoSolution when there is no solution.
#pragma once

#include <span>
#include <vector>

#include "samples/thermo/ideal_solution.h"

namespace zelt::sample {

// Which phases may form.
struct AllowedPhases {
    bool vapour = true;
    bool liquid = true;
};

struct FlashResult {
    double temperature;
    double pressure;
    double vapourFraction;       // 0 or 1 when there is one phase
    std::vector<double> liquid;  // composition; for an absent phase, that of the first drop or bubble to appear
    std::vector<double> vapour;
};

// The vapour fraction b that solves sum z (K - 1) / (1 + b (K - 1)) = 0; 0 for a feed at or below its bubble point, 1 for
// one at or above its dew point. K-values must be positive.
double RachfordRice(std::span<const double> feed, std::span<const double> kValues);

double BubblePressure(const IdealSolution& solution, double temperature, std::span<const double> feed);
double DewPressure(const IdealSolution& solution, double temperature, std::span<const double> feed);
double BubbleTemperature(const IdealSolution& solution, double pressure, std::span<const double> feed);
double DewTemperature(const IdealSolution& solution, double pressure, std::span<const double> feed);

FlashResult FlashTP(const IdealSolution& solution, double temperature, double pressure, std::span<const double> feed,
                    AllowedPhases allowed = {});
// The vapour fraction ranges from 0 (bubble point) to 1 (dew point).
FlashResult FlashPVF(const IdealSolution& solution, double pressure, double vapourFraction,
                     std::span<const double> feed);
FlashResult FlashTVF(const IdealSolution& solution, double temperature, double vapourFraction,
                     std::span<const double> feed);
FlashResult FlashPH(const IdealSolution& solution, double pressure, double enthalpy, std::span<const double> feed,
                    AllowedPhases allowed = {});
FlashResult FlashPS(const IdealSolution& solution, double pressure, double entropy, std::span<const double> feed,
                    AllowedPhases allowed = {});

// The pairs of quantities that can specify a flash, in the order in which Solve takes their values: T is temperature, P
// pressure, VF vapour fraction, H enthalpy, S entropy. At a given vapour fraction, Solve ignores `allowed`.
enum class FlashKind { kTP, kPVF, kTVF, kPH, kPS };
FlashResult Solve(const IdealSolution& solution, FlashKind kind, double first, double second,
                  std::span<const double> feed, AllowedPhases allowed = {});

}  // namespace zelt::sample
