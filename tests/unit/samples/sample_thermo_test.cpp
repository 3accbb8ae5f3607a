#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "samples/thermo/compound.h"
#include "samples/thermo/errors.h"
#include "samples/thermo/flash.h"
#include "samples/thermo/ideal_solution.h"

namespace {

using namespace zelt::sample;

IdealSolution Mixture(std::initializer_list<const wchar_t*> ids)
{
    std::vector<const Compound*> compounds;
    for (const wchar_t* id : ids) compounds.push_back(FindCompound(id));
    return IdealSolution(compounds);
}

const IdealSolution kAromatics = Mixture({L"Benzene", L"Toluene", L"o-Xylene"});
const std::vector<double> kFeed{0.5, 0.3, 0.2};

// Published values for each compound; the model's own tables use none of them.
struct Published {
    const wchar_t* id;
    double boilingPointCelsius;  // Smith, Van Ness and Abbott, Table B.2, to 0.1
    double heatOfVaporisation;   // kJ/mol at the boiling point, same table
    double heatCapacity;         // J/(mol K), ideal gas at 298.15 K, Poling, Prausnitz and O'Connell, Appendix A
    double densityAt25C;         // kg/m3, CRC Handbook, to 0.5
};
constexpr Published kPublished[] = {
    {L"Benzene", 80.0, 30.72, 82.43, 873.6},    {L"Toluene", 110.6, 33.18, 103.75, 862.2},
    {L"o-Xylene", 144.4, 36.24, 132.31, 875.5}, {L"Methanol", 64.7, 35.21, 44.06, 786.6},
    {L"Ethanol", 78.2, 38.56, 65.21, 785.2},    {L"Water", 100.0, 40.66, 33.58, 997.0},
};

TEST(SampleCompound, AgreesWithPublishedValues)
{
    ASSERT_EQ(std::size(kPublished), AllCompounds().size());
    for (const Published& published : kPublished) {
        SCOPED_TRACE(testing::Message() << published.id);
        const Compound* compound = FindCompound(published.id);
        ASSERT_NE(nullptr, compound);
        const double boiling = published.boilingPointCelsius + 273.15;
        EXPECT_NEAR(101325, VapourPressure(*compound, boiling), 101325 * 0.006);
        EXPECT_NEAR(boiling, SaturationTemperature(*compound, 101325), 0.15);
        EXPECT_NEAR(compound->normalBoilingPoint, boiling, 0.1);
        EXPECT_NEAR(published.heatOfVaporisation * 1000, HeatOfVaporisation(*compound, boiling).value,
                    published.heatOfVaporisation * 1000 * 0.02);
        EXPECT_NEAR(published.heatCapacity, IdealGasHeatCapacity(*compound, 298.15), published.heatCapacity * 0.01);
        EXPECT_NEAR(published.densityAt25C, compound->molecularWeight / 1000 / LiquidVolume(*compound, 298.15).value,
                    published.densityAt25C * 0.005);
    }
}

TEST(SampleCompound, EvaluatesAntoinesEquation)
{
    // Benzene at 90 degrees: 13.7819 - 2726.81 / (90 + 217.572) = 13.7819 - 8.865599 = 4.916301; exp = 136.497 kPa.
    EXPECT_NEAR(136497, VapourPressure(*FindCompound(L"Benzene"), 363.15), 5);
    // Toluene at 90 degrees: 13.9320 - 3056.96 / (90 + 217.625) = 13.9320 - 9.937294 = 3.994706; exp = 54.310 kPa.
    EXPECT_NEAR(54310, VapourPressure(*FindCompound(L"Toluene"), 363.15), 5);
}

TEST(SampleCompound, IsFoundWithoutRegardToCase)
{
    EXPECT_EQ(FindCompound(L"Benzene"), FindCompound(L"bENZENE"));
    EXPECT_EQ(nullptr, FindCompound(L"Benzen"));
    EXPECT_EQ(nullptr, FindCompound(L""));
}

TEST(SampleCompound, HasDerivativesThatFollowTheValues)
{
    constexpr double kStep = 1e-3;
    for (const Compound& compound : AllCompounds()) {
        SCOPED_TRACE(testing::Message() << compound.id);
        for (const double t : {280.0, 350.0, 450.0}) {
            const auto slope = [&](auto&& f) {
                return (f(compound, t + kStep) - f(compound, t - kStep)) / (2 * kStep);
            };
            const auto expectNear = [](double expected, double actual) {
                EXPECT_NEAR(expected, actual, 1e-5 * std::fabs(expected));
            };
            expectNear(slope([](const Compound& c, double x) { return LogVapourPressure(c, x).value; }),
                       LogVapourPressure(compound, t).dT);
            expectNear(slope([](const Compound& c, double x) { return HeatOfVaporisation(c, x).value; }),
                       HeatOfVaporisation(compound, t).dT);
            expectNear(slope([](const Compound& c, double x) { return LiquidVolume(c, x).value; }),
                       LiquidVolume(compound, t).dT);
            expectNear(slope(IdealGasEnthalpy), IdealGasHeatCapacity(compound, t));
            expectNear(slope(IdealGasEntropy) * t, IdealGasHeatCapacity(compound, t));
        }
        EXPECT_EQ(0, IdealGasEnthalpy(compound, 298.15));
        EXPECT_EQ(0, IdealGasEntropy(compound, 298.15));
    }
}

TEST(SampleCompound, HasNoLiquidAboveTheCriticalTemperature)
{
    const Compound& benzene = *FindCompound(L"Benzene");
    EXPECT_THROW(LiquidVolume(benzene, 562.05), OutOfRange);
    EXPECT_THROW(HeatOfVaporisation(benzene, 600), OutOfRange);
    EXPECT_NO_THROW(LiquidVolume(benzene, 562.0));
}

TEST(SampleRachfordRice, SolvesCasesDoneByHand)
{
    // z = 1/2, 1/2 and K = 2, 1/2: 0.5 / (1 + b) = 0.25 / (1 - 0.5 b) gives 0.5 - 0.25 b = 0.25 + 0.25 b, b = 1/2.
    EXPECT_NEAR(0.5, RachfordRice(std::vector{0.5, 0.5}, std::vector{2.0, 0.5}), 1e-15);
    // z = 0.4, 0.6 and K = 3, 0.5: 0.8 / (1 + 2 b) = 0.3 / (1 - 0.5 b) gives 0.8 - 0.4 b = 0.3 + 0.6 b, b = 1/2.
    EXPECT_NEAR(0.5, RachfordRice(std::vector{0.4, 0.6}, std::vector{3.0, 0.5}), 1e-15);
    // Acetone, acetonitrile and nitromethane at 80 degrees and 110 kPa with vapour pressures of 195.75, 97.84 and
    // 50.32 kPa, a worked example of Smith, Van Ness and Abbott (Raoult's law). The book finds 0.7364 mol of vapour and
    // y = 0.5087, 0.3389, 0.1524; the last digit of its amount comes from K-values rounded to four digits.
    const std::vector<double> feed{0.45, 0.35, 0.20}, k{195.75 / 110, 97.84 / 110, 50.32 / 110};
    const double vapour = RachfordRice(feed, k);
    EXPECT_NEAR(0.7364, vapour, 2e-4);
    const double published[] = {0.5087, 0.3389, 0.1524};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(published[i], feed[i] * k[i] / (1 + vapour * (k[i] - 1)), 5e-5);
    }
}

TEST(SampleRachfordRice, StopsAtThePhaseBoundaries)
{
    // Sum z K = 0.95 < 1: below the bubble point.
    EXPECT_EQ(0, RachfordRice(std::vector{0.5, 0.5}, std::vector{1.2, 0.7}));
    // Sum z / K = 0.5 / 1.5 + 0.5 / 0.9 = 0.889 < 1: above the dew point.
    EXPECT_EQ(1, RachfordRice(std::vector{0.5, 0.5}, std::vector{1.5, 0.9}));
    EXPECT_EQ(1, RachfordRice(std::vector{1.0}, std::vector{1.5}));
    EXPECT_EQ(0, RachfordRice(std::vector{1.0}, std::vector{0.5}));
    // Very different K-values and a feed of which hardly anything evaporates: sum z K = 1.1, the fraction is about
    // 1e-9.
    const double fraction = RachfordRice(std::vector{1e-8, 1 - 1e-8}, std::vector{1.1e8 + 1, 1e-6});
    EXPECT_GT(fraction, 0);
    EXPECT_LT(fraction, 0.1);
}

TEST(SampleFlash, FindsBubbleAndDewPressuresDoneByHand)
{
    const IdealSolution mixture = Mixture({L"Benzene", L"Toluene"});
    // At 90 degrees, with the vapour pressures above: (136497 + 54310) / 2 = 95403 Pa, and
    // 2 / (1 / 136497 + 1 / 54310) = 77703 Pa.
    EXPECT_NEAR(95403, BubblePressure(mixture, 363.15, std::vector{0.5, 0.5}), 5);
    EXPECT_NEAR(77703, DewPressure(mixture, 363.15, std::vector{0.5, 0.5}), 5);
    // Each pressure gives the temperature again.
    EXPECT_NEAR(
        363.15,
        BubbleTemperature(mixture, BubblePressure(mixture, 363.15, std::vector{0.5, 0.5}), std::vector{0.5, 0.5}),
        1e-10);
    EXPECT_NEAR(363.15,
                DewTemperature(mixture, DewPressure(mixture, 363.15, std::vector{0.5, 0.5}), std::vector{0.5, 0.5}),
                1e-10);
}

TEST(SampleFlash, SplitsBenzeneAndTolueneAsByHand)
{
    // At 90 degrees and 85 kPa, K = 136497 / 85000 = 1.60585 and 54310 / 85000 = 0.63894. The lever rule for two compounds:
    // x = (1 - K2) / (K1 - K2) = 0.36106 / 0.96691 = 0.37342, y = K1 x = 0.59965,
    // vapour = (0.5 - x) / (y - x) = 0.12658 / 0.22623 = 0.55952.
    const FlashResult result = FlashTP(Mixture({L"Benzene", L"Toluene"}), 363.15, 85000, std::vector{0.5, 0.5});
    EXPECT_NEAR(0.37342, result.liquid[0], 2e-5);
    EXPECT_NEAR(0.59965, result.vapour[0], 2e-5);
    EXPECT_NEAR(0.5595, result.vapourFraction, 1e-4);
}

// Flashes of all types, given numbers of the same state, find this state, with balanced phases in equilibrium.
TEST(SampleFlash, IsConsistentWhateverIsGiven)
{
    const FlashResult state = FlashTP(kAromatics, 380, 120000, kFeed);
    ASSERT_GT(state.vapourFraction, 0.1);
    ASSERT_LT(state.vapourFraction, 0.9);
    const auto mean = [&](auto member) {
        const double vapour = (kAromatics.*member)(Phase::kVapour, 380, 120000, state.vapour).value;
        const double liquid = (kAromatics.*member)(Phase::kLiquid, 380, 120000, state.liquid).value;
        return state.vapourFraction * vapour + (1 - state.vapourFraction) * liquid;
    };
    const FlashResult results[] = {
        state,
        FlashPVF(kAromatics, 120000, state.vapourFraction, kFeed),
        FlashTVF(kAromatics, 380, state.vapourFraction, kFeed),
        FlashPH(kAromatics, 120000, mean(&IdealSolution::Enthalpy), kFeed),
        FlashPS(kAromatics, 120000, mean(&IdealSolution::Entropy), kFeed),
        FlashTP(kAromatics, 380, 120000, std::vector{5.0, 3.0, 2.0}),  // the flash normalises the feed
    };
    for (const FlashResult& result : results) {
        EXPECT_NEAR(380, result.temperature, 1e-8);
        EXPECT_NEAR(120000, result.pressure, 1e-4);
        EXPECT_NEAR(state.vapourFraction, result.vapourFraction, 1e-9);
        EXPECT_NEAR(1, std::accumulate(result.vapour.begin(), result.vapour.end(), 0.0), 1e-14);
        EXPECT_NEAR(1, std::accumulate(result.liquid.begin(), result.liquid.end(), 0.0), 1e-14);
        const auto vapour = kAromatics.Fugacity(Phase::kVapour, result.temperature, result.pressure, result.vapour);
        const auto liquid = kAromatics.Fugacity(Phase::kLiquid, result.temperature, result.pressure, result.liquid);
        for (std::size_t i = 0; i < 3; ++i) {
            const double balance =
                result.vapourFraction * result.vapour[i] + (1 - result.vapourFraction) * result.liquid[i];
            EXPECT_NEAR(kFeed[i], balance, 1e-12);
            EXPECT_NEAR(vapour.value[i], liquid.value[i], 1e-8 * vapour.value[i]);
        }
    }
}

TEST(SampleFlash, GivesOnePhaseOutsideTheEnvelope)
{
    EXPECT_EQ(0, FlashTP(kAromatics, 300, 101325, kFeed).vapourFraction);
    EXPECT_EQ(1, FlashTP(kAromatics, 450, 101325, kFeed).vapourFraction);
    EXPECT_EQ(kFeed, FlashTP(kAromatics, 450, 101325, kFeed).vapour);
    // Only one phase is allowed where two would form.
    EXPECT_EQ(1, FlashTP(kAromatics, 380, 120000, kFeed, {true, false}).vapourFraction);
    EXPECT_EQ(0, FlashTP(kAromatics, 380, 120000, kFeed, {false, true}).vapourFraction);
    // The enthalpies of a cold liquid and a hot vapour give their temperatures again.
    for (const double t : {290.0, 500.0}) {
        const Phase phase = t < 350 ? Phase::kLiquid : Phase::kVapour;
        const double enthalpy = kAromatics.Enthalpy(phase, t, 101325, kFeed).value;
        EXPECT_NEAR(t, FlashPH(kAromatics, 101325, enthalpy, kFeed).temperature, 1e-9);
    }
}

TEST(SampleFlash, BoilsASingleCompoundAtOneTemperature)
{
    const IdealSolution water = Mixture({L"Water"});
    const std::vector<double> feed{1.0};
    const double boiling = SaturationTemperature(*FindCompound(L"Water"), 101325);
    EXPECT_EQ(boiling, BubbleTemperature(water, 101325, feed));
    EXPECT_EQ(boiling, DewTemperature(water, 101325, feed));
    const double liquid = water.Enthalpy(Phase::kLiquid, boiling, 101325, feed).value;
    const double vapour = water.Enthalpy(Phase::kVapour, boiling, 101325, feed).value;
    const FlashResult quarter = FlashPH(water, 101325, liquid + 0.25 * (vapour - liquid), feed);
    EXPECT_NEAR(boiling, quarter.temperature, 1e-9);
    EXPECT_NEAR(0.25, quarter.vapourFraction, 1e-12);
    // An absent compound changes nothing.
    const IdealSolution mixture = Mixture({L"Ethanol", L"Water"});
    EXPECT_EQ(boiling, BubbleTemperature(mixture, 101325, std::vector{0.0, 1.0}));
}

TEST(SampleFlash, RefusesWhatItCannotCalculate)
{
    const double nan = std::nan("");
    EXPECT_THROW(FlashTP(kAromatics, 199, 101325, kFeed), OutOfRange);
    EXPECT_THROW(FlashTP(kAromatics, nan, 101325, kFeed), OutOfRange);
    EXPECT_THROW(FlashTP(kAromatics, 380, 0, kFeed), OutOfRange);
    EXPECT_THROW(FlashTP(kAromatics, 380, -1, kFeed), OutOfRange);
    EXPECT_THROW(FlashTP(kAromatics, 380, 101325, std::vector{0.5, -0.1, 0.6}), OutOfRange);
    EXPECT_THROW(FlashTP(kAromatics, 380, 101325, std::vector{nan, 0.5, 0.5}), OutOfRange);
    EXPECT_THROW(FlashTP(kAromatics, 380, 101325, std::vector{0.0, 0.0, 0.0}), NoSolution);
    EXPECT_THROW(FlashTP(kAromatics, 380, 101325, std::vector{0.5, 0.5}), NoSolution);
    EXPECT_THROW(FlashPVF(kAromatics, 101325, 1.1, kFeed), OutOfRange);
    EXPECT_THROW(FlashPH(kAromatics, 101325, 1e9, kFeed), NoSolution);
    EXPECT_THROW(FlashPH(kAromatics, 101325, -1e9, kFeed), NoSolution);
    EXPECT_THROW(BubbleTemperature(kAromatics, 1e9, kFeed), OutOfRange);
}

TEST(SampleIdealSolution, HasDerivativesThatFollowTheValues)
{
    using Member = Property (IdealSolution::*)(Phase, double, double, std::span<const double>) const;
    constexpr Member kMembers[] = {&IdealSolution::Enthalpy, &IdealSolution::Entropy, &IdealSolution::Volume,
                                   &IdealSolution::Density};
    constexpr double t = 360, p = 150000, dt = 1e-3, dp = 1;
    for (const Phase phase : {Phase::kVapour, Phase::kLiquid}) {
        for (const Member member : kMembers) {
            const auto value = [&](double temperature, double pressure) {
                return (kAromatics.*member)(phase, temperature, pressure, kFeed).value;
            };
            const Property property = (kAromatics.*member)(phase, t, p, kFeed);
            const double byT = (value(t + dt, p) - value(t - dt, p)) / (2 * dt);
            const double byP = (value(t, p + dp) - value(t, p - dp)) / (2 * dp);
            EXPECT_NEAR(byT, property.dT, 1e-6 * std::fabs(byT));
            EXPECT_NEAR(byP, property.dP, 1e-6 * std::fabs(byP) + 1e-15);
        }
        const auto at = [&](double temperature, double pressure) {
            return kAromatics.LogFugacityCoefficient(phase, temperature, pressure).value;
        };
        const CompoundProperties logPhi = kAromatics.LogFugacityCoefficient(phase, t, p);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR((at(t + dt, p)[i] - at(t - dt, p)[i]) / (2 * dt), logPhi.dT[i], 1e-8);
            EXPECT_NEAR((at(t, p + dp)[i] - at(t, p - dp)[i]) / (2 * dp), logPhi.dP[i], 1e-11);
        }
    }
}

// The feed has 1 mol: a change d of amount j makes fraction j (n_j + d) / (1 + d), and every other fraction n_i / (1 + d).
TEST(SampleIdealSolution, HasFugacityDerivativesInAmounts)
{
    constexpr double t = 360, p = 150000, step = 1e-6;
    const CompoundProperties exact = kAromatics.Fugacity(Phase::kLiquid, t, p, kFeed);
    for (std::size_t j = 0; j < 3; ++j) {
        const auto shifted = [&](double change) {
            std::vector<double> amounts = kFeed;
            amounts[j] += change;
            for (double& amount : amounts) amount /= 1 + change;
            return kAromatics.Fugacity(Phase::kLiquid, t, p, amounts).value;
        };
        double gibbsDuhem = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const double slope = (shifted(step)[i] - shifted(-step)[i]) / (2 * step);
            EXPECT_NEAR(slope, exact.dn[i * 3 + j], 1e-3);
            gibbsDuhem += kFeed[i] * exact.dn[i * 3 + j] / exact.value[i];
        }
        // Sum over i of x_i d ln f_i / d n_j is zero at constant temperature and pressure.
        EXPECT_NEAR(0, gibbsDuhem, 1e-15);
    }
}

TEST(SampleIdealSolution, HasEqualGibbsEnergiesAtSaturation)
{
    for (const Compound& compound : AllCompounds()) {
        const IdealSolution pure({&compound});
        const std::vector<double> one{1.0};
        for (const double t : {300.0, 360.0, 420.0}) {
            const double p = VapourPressure(compound, t);
            const auto gibbs = [&](Phase phase) {
                return pure.Enthalpy(phase, t, p, one).value - t * pure.Entropy(phase, t, p, one).value;
            };
            EXPECT_NEAR(gibbs(Phase::kVapour), gibbs(Phase::kLiquid), 1e-8);
        }
    }
}

TEST(SampleIdealSolution, IgnoresAbsentCompoundsBeyondTheirCriticalTemperature)
{
    // At 600 K, benzene and toluene have no liquid, but o-xylene has.
    const std::vector<double> xylene{0.0, 0.0, 1.0};
    EXPECT_NO_THROW(kAromatics.Enthalpy(Phase::kLiquid, 600, 1e6, xylene));
    EXPECT_NO_THROW(kAromatics.Entropy(Phase::kLiquid, 600, 1e6, xylene));
    EXPECT_NO_THROW(kAromatics.Volume(Phase::kLiquid, 600, 1e6, xylene));
    EXPECT_THROW(kAromatics.Enthalpy(Phase::kLiquid, 600, 1e6, kFeed), OutOfRange);
}

}  // namespace
