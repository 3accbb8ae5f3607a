#include "ctl/log/redaction/fraction_redaction.h"

#include <algorithm>
#include <cmath>

#include "ctl/log/call_results.h"
#include "ctl/log/text/log_values.h"

namespace zelt::ctl {
namespace {

// The tolerance of the rules for fractions.
constexpr double kTolerance = 1e-4;

// The mass of a mole of the mixture, with the compounds' masses from the aliases.
double MassOf(const std::vector<double>& fractions, const LogAliases& aliases)
{
    double mass = 0;
    for (std::size_t i = 0; i < fractions.size(); ++i) mass += fractions[i] * aliases.Mass(i);
    return mass;
}

// Replaces the positive numbers at these places by others with this sum. If there was a number above 1, there still is one, and
// otherwise none, as far as the sum allows that.
void Share(const std::vector<std::size_t>& places, const std::vector<double>& numbers, double sum,
           const LogAliases& aliases, std::vector<std::string>& redacted)
{
    constexpr double kLimit = 1 + kTolerance;
    std::vector<double> shares;
    double all = 0, largest = 0;
    for (const std::size_t place : places) {
        shares.push_back(numbers[place] * aliases.Mass(place));
        all += shares.back();
        largest = std::max(largest, numbers[place]);
    }
    for (double& share : shares) share *= sum / all;
    const auto most = std::max_element(shares.begin(), shares.end());
    const double equal = sum / static_cast<double>(shares.size());
    if (largest <= kLimit && *most > kLimit) {
        // Moves the shares towards equal ones until none is above the limit.
        const double part = *most > equal ? (kLimit - equal) / (*most - equal) * 0.99 : 0;
        for (double& share : shares) share = equal + std::max(part, 0.0) * (share - equal);
    } else if (largest > kLimit && *most <= kLimit) {
        const double rest = sum - *most, now = (kLimit + sum) / 2;
        for (double& share : shares) share *= rest > 0 ? (sum - now) / rest : 1;
        *most = now;
    }
    for (std::size_t i = 0; i < places.size(); ++i) redacted[places[i]] = Digits(shares[i]);
}

}  // namespace

std::vector<std::string> RedactFractions(const std::vector<std::string>& values, bool areAll, const LogAliases& aliases)
{
    std::vector<std::string> redacted(values.size());
    std::vector<double> numbers(values.size());
    std::vector<std::size_t> above;
    double sum = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto number = NumberOf(values[i]);
        if (!number) {
            redacted[i] = aliases.Value(values[i], "double");
            areAll = false;
        } else if (*number == 0) {
            redacted[i] = values[i];
        } else if (*number < 0) {
            // Rounding can make fractions a little negative; more than that is a finding.
            const double weight = -aliases.Weight(values[i]) * (*number < -kTolerance ? 1 : kTolerance * 0.9);
            redacted[i] = Digits(weight);
            sum += *number - weight;
        } else {
            numbers[i] = *number;
            sum += *number;
            above.push_back(i);
        }
    }
    if (above.empty()) return redacted;
    if (areAll && sum > 0) {
        Share(above, numbers, sum, aliases, redacted);
        return redacted;
    }
    // The sum of only some fractions would reveal too much, so it does not stay.
    for (const std::size_t i : above) {
        redacted[i] = Digits(aliases.Weight(values[i]) + (numbers[i] > 1 + kTolerance ? 1.1 : 0));
    }
    return redacted;
}

std::string RedactPhaseFraction(std::string_view value, const LogAliases& aliases)
{
    const auto number = NumberOf(value);
    if (!number) return aliases.Value(value, "double");
    if (*number == 0 || *number == 1) return std::string(value);
    const double power = 0.5 + aliases.Weight("phase fraction");
    if (*number < 0) return Digits(-aliases.Weight(value));
    if (*number > 1) return Digits(1 + aliases.Weight(value));
    const double first = std::pow(*number, power), second = std::pow(1 - *number, power);
    return Digits(first / (first + second));
}

std::optional<std::string> BalancedPhaseFraction(std::string_view value, const FlashRecord::Material& material,
                                                 std::string_view phase, const LogAliases& aliases)
{
    const FlashRecord::Phase* found = material.Find(phase);
    const auto number = NumberOf(value);
    if (!found || !number || material.feed.fractions.size() != found->composition.fractions.size()) return {};
    const double feed = MassOf(material.feed.fractions, aliases), part = MassOf(found->composition.fractions, aliases);
    if (!(feed > 0 && part > 0)) return {};
    return Digits(*number * part / feed);
}

std::string RedactFlow(std::string_view value, std::size_t place, const LogAliases& aliases)
{
    const auto number = NumberOf(value);
    if (!number) return aliases.Value(value, "double");
    return *number == 0 ? std::string(value) : Digits(*number * aliases.Mass(place) * aliases.Weight("flow"));
}

std::optional<std::string> BalancedFlow(std::string_view value, const FlashRecord::Material& material,
                                        const LogAliases& aliases)
{
    const auto number = NumberOf(value);
    const double mass = MassOf(material.feed.fractions, aliases);
    if (!number || !(mass > 0)) return {};
    return *number == 0 ? std::string(value) : Digits(*number * mass * aliases.Weight("flow"));
}

}  // namespace zelt::ctl
