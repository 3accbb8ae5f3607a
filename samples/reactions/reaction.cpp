#include "samples/reactions/reaction.h"

#include <cmath>
#include <cwctype>

namespace zelt::sample {
namespace {

constexpr double kLog10 = 2.302585092994046;
constexpr double kAtmosphere = 101325;  // Pa
constexpr double kBar = 1e5;            // Pa

// Converts a law published as log10 K = a + b/T + c log10 T + d T + e T2.
constexpr EquilibriumLaw Decadic(double a, double b, double c, double d, double e, double standardPressure)
{
    return {{a * kLog10, b * kLog10, c, d * kLog10, e * kLog10}, standardPressure};
}

// A law for a constant enthalpy of reaction (J/mol) and a Gibbs energy of reaction (J/mol) at 298.15 K and 1 bar.
constexpr EquilibriumLaw VanTHoff(double enthalpy, double gibbsEnergy)
{
    return {{(enthalpy - gibbsEnergy) / (kGasConstant * 298.15), -enthalpy / kGasConstant, 0, 0, 0}, kBar};
}

// Where the numbers come from:
//   WaterGasShift
//       J. M. Moe, Design of water-gas shift reactors, Chemical Engineering Progress 58 (1962) 33:
//       K = exp(4577.8 / T - 4.33)
//   AmmoniaSynthesis
//       L. J. Gillespie, J. A. Beattie, Physical Review 36 (1930) 743: log10 K = -2.691122 log10 T - 5.519265e-5 T
//       + 1.848863e-7 T2 + 2001.6 / T + 2.6899, in 1/atm, for half a mole of nitrogen
//   TolueneHydrodealkylation
//       the rate law for the thermal reaction in W. L. Luyben, B. D. Tyreus, M. L. Luyben, Plantwide Process Control,
//       McGraw-Hill 1998, chapter on the HDA process: 3.6858e6 exp(-25616 / T) pT pH^0.5 in lb-mol/(min ft3), psia, K
//   PentoxideDecomposition
//       P. Atkins, J. de Paula, Physical Chemistry, data section, Arrhenius parameters: 4.94e13 1/s, 103.4 kJ/mol
//   TetroxideDissociation
//       D. D. Wagman et al., The NBS tables of chemical thermodynamic properties, J. Phys. Chem. Ref. Data 11 (1982)
//       Suppl. 2: enthalpies of formation 33.18 (NO2) and 9.16 kJ/mol (N2O4), Gibbs energies 51.31 and 97.89 kJ/mol
//   WaterIonisation
//       H. S. Harned, B. B. Owen, The Physical Chemistry of Electrolytic Solutions, 3rd ed., Reinhold 1958:
//       log10 K = 6.0875 - 4470.99 / T - 0.01706 T
//   CarbonicAcid
//       H. S. Harned, R. Davis, J. Am. Chem. Soc. 65 (1943) 2030: log10 K = 14.8435 - 3404.71 / T - 0.032786 T
//   Bicarbonate
//       H. S. Harned, S. R. Scholes, J. Am. Chem. Soc. 63 (1941) 1706: log10 K = 6.4980 - 2902.39 / T - 0.02379 T
// Stoichiometry and registry numbers are common knowledge.

// The factor for hydrodealkylation in mol/(m3 s Pa^1.5).
const double kHydrodealkylation =
    3.6858e6 * 453.59237 / (60 * 0.028316846592 * 6894.757293168 * std::sqrt(6894.757293168));

constexpr auto kVapour = L"Vapor";
constexpr auto kLiquid = L"Liquid";

const ReactionPackageDefinition kPackages[] = {
    {L"Hydrogen",
     L"Reactions that make or use hydrogen",
     false,
     {
         {L"WaterGasShift",
          kVapour,
          L"Carbon monoxide",
          ConcentrationBasis::kPartialPressure,
          false,
          {},
          {{-4.33, 4577.8, 0, 0, 0}, kAtmosphere},
          {{L"Carbon monoxide", L"630-08-0", -1, 0},
           {L"Water", L"7732-18-5", -1, 0},
           {L"Carbon dioxide", L"124-38-9", 1, 0},
           {L"Hydrogen", L"1333-74-0", 1, 0}}},
         {L"AmmoniaSynthesis",
          kVapour,
          L"Nitrogen",
          ConcentrationBasis::kPartialPressure,
          false,
          {},
          Decadic(2.6899, 2001.6, -2.691122, -5.519265e-5, 1.848863e-7, kAtmosphere),
          {{L"Nitrogen", L"7727-37-9", -0.5, 0},
           {L"Hydrogen", L"1333-74-0", -1.5, 0},
           {L"Ammonia", L"7664-41-7", 1, 0}}},
         {L"TolueneHydrodealkylation",
          kVapour,
          L"Toluene",
          ConcentrationBasis::kPartialPressure,
          true,
          {kHydrodealkylation, 25616},
          {},
          {{L"Toluene", L"108-88-3", -1, 0, 1},
           {L"Hydrogen", L"1333-74-0", -1, 0, 0.5},
           {L"Benzene", L"71-43-2", 1, 0},
           {L"Methane", L"74-82-8", 1, 0}}},
     }},
    {L"Nitrogen oxides",
     L"Decomposition of two oxides of nitrogen",
     false,
     {
         {L"PentoxideDecomposition",
          kVapour,
          L"Dinitrogen pentoxide",
          ConcentrationBasis::kMolarity,
          true,
          {4.94e13, 103400 / kGasConstant},
          {},
          {{L"Dinitrogen pentoxide", L"10102-03-1", -1, 0, 1},
           {L"Nitrogen dioxide", L"10102-44-0", 2, 0},
           {L"Oxygen", L"7782-44-7", 0.5, 0}}},
         {L"TetroxideDissociation",
          kVapour,
          L"Dinitrogen tetroxide",
          ConcentrationBasis::kPartialPressure,
          false,
          {},
          VanTHoff(2 * 33180 - 9160, 2 * 51310 - 97890),
          {{L"Dinitrogen tetroxide", L"10544-72-6", -1, 0}, {L"Nitrogen dioxide", L"10102-44-0", 2, 0}}},
     }},
    {L"Carbonate",
     L"Ionic equilibria of carbon dioxide in water",
     true,
     {
         {L"WaterIonisation",
          kLiquid,
          L"Water",
          ConcentrationBasis::kMolality,
          false,
          {},
          Decadic(6.0875, -4470.99, 0, -0.01706, 0, 0),
          {{L"Water", L"7732-18-5", -1, 0},
           {L"Hydrogen ion", L"12408-02-5", 1, 1},
           {L"Hydroxide ion", L"14280-30-9", 1, -1}}},
         {L"CarbonicAcid",
          kLiquid,
          L"Carbon dioxide",
          ConcentrationBasis::kMolality,
          false,
          {},
          Decadic(14.8435, -3404.71, 0, -0.032786, 0, 0),
          {{L"Carbon dioxide", L"124-38-9", -1, 0},
           {L"Water", L"7732-18-5", -1, 0},
           {L"Hydrogen ion", L"12408-02-5", 1, 1},
           {L"Bicarbonate ion", L"71-52-3", 1, -1}}},
         {L"Bicarbonate",
          kLiquid,
          L"Bicarbonate ion",
          ConcentrationBasis::kMolality,
          false,
          {},
          Decadic(6.4980, -2902.39, 0, -0.02379, 0, 0),
          {{L"Bicarbonate ion", L"71-52-3", -1, -1},
           {L"Hydrogen ion", L"12408-02-5", 1, 1},
           {L"Carbonate ion", L"3812-32-6", 1, -2}}},
     }},
};

bool SameText(std::wstring_view a, std::wstring_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::towlower(a[i]) != std::towlower(b[i])) return false;
    }
    return true;
}

}  // namespace

double Reaction::MoleChange() const
{
    double change = 0;
    for (const ReactionCompound& compound : compounds) change += compound.coefficient;
    return change;
}

std::span<const ReactionPackageDefinition> AllReactionPackages() { return kPackages; }

const ReactionPackageDefinition* FindReactionPackage(std::wstring_view name)
{
    for (const ReactionPackageDefinition& definition : kPackages) {
        if (SameText(definition.name, name)) return &definition;
    }
    return nullptr;
}

WithSlope RateConstant(const RateLaw& law, double t)
{
    const double value = law.factor * std::exp(-law.activationTemperature / t);
    return {value, value * law.activationTemperature / (t * t)};
}

WithSlope LogEquilibriumConstant(std::span<const double> a, double t)
{
    return {a[0] + a[1] / t + a[2] * std::log(t) + t * (a[3] + t * a[4]),
            -a[1] / (t * t) + a[2] / t + a[3] + 2 * a[4] * t};
}

double EnthalpyOfReaction(std::span<const double> coefficients, double temperature)
{
    return kGasConstant * temperature * temperature * LogEquilibriumConstant(coefficients, temperature).dT;
}

}  // namespace zelt::sample
