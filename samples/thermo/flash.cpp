#include "samples/thermo/flash.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "samples/thermo/errors.h"
#include "samples/thermo/root.h"

namespace zelt::sample {
namespace {

std::vector<double> Normalised(const IdealSolution& solution, std::span<const double> feed)
{
    if (feed.size() != solution.Count()) throw NoSolution("The feed does not have one fraction for each compound");
    double sum = 0;
    for (const double fraction : feed) {
        if (!(fraction >= 0) || !std::isfinite(fraction)) throw OutOfRange("fraction", fraction, 0, 1);
        sum += fraction;
    }
    if (!(sum > 0)) throw NoSolution("The feed is empty");
    std::vector<double> normalised(feed.begin(), feed.end());
    for (double& fraction : normalised) fraction /= sum;
    return normalised;
}

double Balance(std::span<const double> feed, std::span<const double> k, double vapourFraction)
{
    double sum = 0;
    for (std::size_t i = 0; i < feed.size(); ++i) sum += feed[i] * (k[i] - 1) / (1 + vapourFraction * (k[i] - 1));
    return sum;
}

FlashResult Split(const IdealSolution& solution, double temperature, double pressure, double vapourFraction,
                  const std::vector<double>& feed)
{
    const std::vector<double> k = solution.KValues(temperature, pressure).value;
    FlashResult result{temperature, pressure, vapourFraction, feed, feed};
    for (std::size_t i = 0; i < feed.size(); ++i) {
        const double liquid = feed[i] / (1 + vapourFraction * (k[i] - 1));
        result.liquid[i] = liquid;
        result.vapour[i] = k[i] * liquid;
    }
    // When both phases are in equilibrium, both sums are 1 except for rounding. Away from the phase boundary, the
    // fractions of the absent phase add up to something else and are normalised here.
    for (std::vector<double>* phase : {&result.liquid, &result.vapour}) {
        const double sum = std::accumulate(phase->begin(), phase->end(), 0.0);
        for (double& fraction : *phase) fraction /= sum;
    }
    if (vapourFraction == 0) result.liquid = feed;
    if (vapourFraction == 1) result.vapour = feed;
    return result;
}

struct Bracket {
    double lower;
    double upper;
};

// The boiling points of the lightest and heaviest compound present: every equilibrium at this pressure is between them.
Bracket BoilingRange(const IdealSolution& solution, double pressure, std::span<const double> feed)
{
    Bracket range{kHighestTemperature, 0};
    for (std::size_t i = 0; i < feed.size(); ++i) {
        if (feed[i] == 0) continue;
        const double boiling = SaturationTemperature(solution.At(i), pressure);
        range.lower = std::min(range.lower, boiling);
        range.upper = std::max(range.upper, boiling);
    }
    CheckTemperature(range.lower);
    CheckTemperature(range.upper);
    return range;
}

// The zero of the rising function `f` in the range. If f has the same sign at both ends, the result is the end where f
// is closer to zero: the range of a single compound has width zero, and in a narrow range rounding can hide the change of sign.
template <class Function>
double RootInRange(const Bracket& range, Function&& f, const char* what)
{
    if (f(range.lower) >= 0) return range.lower;
    if (f(range.upper) <= 0) return range.upper;
    return FindRoot(f, range.lower, range.upper, what);
}

using MixtureProperty = Property (IdealSolution::*)(Phase, double, double, std::span<const double>) const;

double Mean(const IdealSolution& solution, MixtureProperty property, const FlashResult& state)
{
    double sum = 0;
    if (state.vapourFraction > 0) {
        sum += state.vapourFraction *
               (solution.*property)(Phase::kVapour, state.temperature, state.pressure, state.vapour).value;
    }
    if (state.vapourFraction < 1) {
        sum += (1 - state.vapourFraction) *
               (solution.*property)(Phase::kLiquid, state.temperature, state.pressure, state.liquid).value;
    }
    return sum;
}

// The highest temperature at which every compound of the solution can be liquid.
double LiquidLimit(const IdealSolution& solution)
{
    double limit = kHighestTemperature;
    for (std::size_t i = 0; i < solution.Count(); ++i) {
        limit = std::min({limit, solution.At(i).vaporisation[4], solution.At(i).liquidDensity[2]});
    }
    return std::nextafter(limit, 0.0);
}

FlashResult SinglePhase(const IdealSolution& solution, MixtureProperty property, Phase phase, double pressure,
                        double target, const std::vector<double>& feed, Bracket range, const char* what)
{
    const auto difference = [&](double temperature) {
        return (solution.*property)(phase, temperature, pressure, feed).value - target;
    };
    const double temperature = FindRoot(difference, range.lower, range.upper, what);
    return Split(solution, temperature, pressure, phase == Phase::kVapour ? 1 : 0, feed);
}

// The flash at a given pressure and a given enthalpy or entropy, `target`. At constant pressure, both properties rise with
// temperature, in the two-phase range too.
FlashResult PropertyFlash(const IdealSolution& solution, MixtureProperty property, double pressure, double target,
                          std::span<const double> anyFeed, AllowedPhases allowed, const char* what)
{
    const std::vector<double> feed = Normalised(solution, anyFeed);
    CheckPressure(pressure);
    if (!allowed.vapour || !allowed.liquid) {
        const Phase phase = allowed.vapour ? Phase::kVapour : Phase::kLiquid;
        const double limit = allowed.vapour ? kHighestTemperature : LiquidLimit(solution);
        return SinglePhase(solution, property, phase, pressure, target, feed, {kLowestTemperature, limit}, what);
    }
    const FlashResult bubble = FlashPVF(solution, pressure, 0, feed);
    const FlashResult dew = FlashPVF(solution, pressure, 1, feed);
    const double atBubble = Mean(solution, property, bubble), atDew = Mean(solution, property, dew);
    if (target <= atBubble) {
        return SinglePhase(solution, property, Phase::kLiquid, pressure, target, feed,
                           {kLowestTemperature, bubble.temperature}, what);
    }
    if (target >= atDew) {
        return SinglePhase(solution, property, Phase::kVapour, pressure, target, feed,
                           {dew.temperature, kHighestTemperature}, what);
    }
    // A single compound boils at one temperature: the lever rule gives the vapour fraction.
    if (!(dew.temperature > bubble.temperature)) {
        return Split(solution, bubble.temperature, pressure, (target - atBubble) / (atDew - atBubble), feed);
    }
    const double vapourFraction = FindRoot(
        [&](double fraction) {
            return Mean(solution, property, FlashPVF(solution, pressure, fraction, feed)) - target;
        },
        0, 1, what);
    return FlashPVF(solution, pressure, vapourFraction, feed);
}

void CheckVapourFraction(double vapourFraction)
{
    if (!(vapourFraction >= 0 && vapourFraction <= 1)) throw OutOfRange("vapour fraction", vapourFraction, 0, 1);
}

}  // namespace

double RachfordRice(std::span<const double> feed, std::span<const double> kValues)
{
    if (Balance(feed, kValues, 0) <= 0) return 0;
    if (Balance(feed, kValues, 1) >= 0) return 1;
    // The balance falls strictly between the two ends, and no denominator vanishes there.
    return FindRoot([&](double fraction) { return Balance(feed, kValues, fraction); }, 0, 1,
                    "The vapour fraction was not found");
}

double BubblePressure(const IdealSolution& solution, double temperature, std::span<const double> anyFeed)
{
    CheckTemperature(temperature);
    const std::vector<double> feed = Normalised(solution, anyFeed);
    double pressure = 0;
    for (std::size_t i = 0; i < feed.size(); ++i) pressure += feed[i] * VapourPressure(solution.At(i), temperature);
    return pressure;
}

double DewPressure(const IdealSolution& solution, double temperature, std::span<const double> anyFeed)
{
    CheckTemperature(temperature);
    const std::vector<double> feed = Normalised(solution, anyFeed);
    double reciprocal = 0;
    for (std::size_t i = 0; i < feed.size(); ++i) reciprocal += feed[i] / VapourPressure(solution.At(i), temperature);
    return 1 / reciprocal;
}

double BubbleTemperature(const IdealSolution& solution, double pressure, std::span<const double> feed)
{
    const Bracket range = BoilingRange(solution, pressure, feed);
    const auto difference = [&](double temperature) {
        return std::log(BubblePressure(solution, temperature, feed) / pressure);
    };
    return RootInRange(range, difference, "The bubble point was not found");
}

double DewTemperature(const IdealSolution& solution, double pressure, std::span<const double> feed)
{
    const Bracket range = BoilingRange(solution, pressure, feed);
    const auto difference = [&](double temperature) {
        return std::log(DewPressure(solution, temperature, feed) / pressure);
    };
    return RootInRange(range, difference, "The dew point was not found");
}

FlashResult FlashTP(const IdealSolution& solution, double temperature, double pressure, std::span<const double> anyFeed,
                    AllowedPhases allowed)
{
    const std::vector<double> feed = Normalised(solution, anyFeed);
    double vapourFraction = allowed.vapour ? 1 : 0;
    if (allowed.vapour && allowed.liquid) {
        vapourFraction = RachfordRice(feed, solution.KValues(temperature, pressure).value);
    }
    return Split(solution, temperature, pressure, vapourFraction, feed);
}

FlashResult FlashPVF(const IdealSolution& solution, double pressure, double vapourFraction,
                     std::span<const double> anyFeed)
{
    CheckVapourFraction(vapourFraction);
    const std::vector<double> feed = Normalised(solution, anyFeed);
    const Bracket range{BubbleTemperature(solution, pressure, feed), DewTemperature(solution, pressure, feed)};
    double temperature = range.lower;
    if (vapourFraction == 1) {
        temperature = range.upper;
    } else if (vapourFraction > 0) {
        // Every K-value rises with temperature, so the balance at a given vapour fraction rises too.
        temperature = RootInRange(
            range, [&](double t) { return Balance(feed, solution.KValues(t, pressure).value, vapourFraction); },
            "The temperature of this vapour fraction was not found");
    }
    return Split(solution, temperature, pressure, vapourFraction, feed);
}

FlashResult FlashTVF(const IdealSolution& solution, double temperature, double vapourFraction,
                     std::span<const double> anyFeed)
{
    CheckVapourFraction(vapourFraction);
    const std::vector<double> feed = Normalised(solution, anyFeed);
    const double dew = DewPressure(solution, temperature, feed);
    const double bubble = BubblePressure(solution, temperature, feed);
    double pressure = bubble;
    if (vapourFraction == 1) {
        pressure = dew;
    } else if (vapourFraction > 0) {
        // The balance rises with the negative of the pressure, as RootInRange requires.
        pressure = -RootInRange(
            {-bubble, -dew},
            [&](double negative) {
                return Balance(feed, solution.KValues(temperature, -negative).value, vapourFraction);
            },
            "The pressure of this vapour fraction was not found");
    }
    return Split(solution, temperature, pressure, vapourFraction, feed);
}

FlashResult FlashPH(const IdealSolution& solution, double pressure, double enthalpy, std::span<const double> feed,
                    AllowedPhases allowed)
{
    return PropertyFlash(solution, &IdealSolution::Enthalpy, pressure, enthalpy, feed, allowed,
                         "No temperature in the model's range has this enthalpy");
}

FlashResult FlashPS(const IdealSolution& solution, double pressure, double entropy, std::span<const double> feed,
                    AllowedPhases allowed)
{
    return PropertyFlash(solution, &IdealSolution::Entropy, pressure, entropy, feed, allowed,
                         "No temperature in the model's range has this entropy");
}

FlashResult Solve(const IdealSolution& solution, FlashKind kind, double first, double second,
                  std::span<const double> feed, AllowedPhases allowed)
{
    switch (kind) {
        case FlashKind::kTP: return FlashTP(solution, first, second, feed, allowed);
        case FlashKind::kPVF: return FlashPVF(solution, first, second, feed);
        case FlashKind::kTVF: return FlashTVF(solution, first, second, feed);
        case FlashKind::kPH: return FlashPH(solution, first, second, feed, allowed);
        case FlashKind::kPS: return FlashPS(solution, first, second, feed, allowed);
    }
    throw NoSolution("unknown flash");
}

}  // namespace zelt::sample
