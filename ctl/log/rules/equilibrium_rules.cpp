#include "ctl/log/rules/equilibrium_rules.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <utility>

#include "ctl/log/text/log_values.h"
#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

// A fraction of the feed and the sum over the phases may differ by kBalanceTolerance, relative to the larger one; below
// kTraceFraction they are not compared. The six digits of a log explain only a hundredth of that difference, but a calculation
// stops at its own tolerance. The limit is relative, so it also holds in other units, as in a redacted log.
constexpr double kBalanceTolerance = 5e-3, kTraceFraction = 1e-2;
// Fractions that do not add up to 1 are findings of another rule.
constexpr double kSumTolerance = 1e-4;
// The fugacities of a compound may differ by kFugacityTolerance, relative to the larger one. They are not compared if the
// compound's fraction in either phase is below kFugacityTrace.
constexpr double kFugacityTolerance = 2e-2, kFugacityTrace = 1e-3;
constexpr std::size_t kMostMixtures = 200;

bool AddsUp(const std::vector<double>& fractions)
{
    return std::fabs(std::accumulate(fractions.begin(), fractions.end(), 0.0) - 1) <= kSumTolerance;
}

}  // namespace

void EquilibriumRules::Finish()
{
    for (const Finding& finding : pending) report(finding.line, finding.rule, finding.text);
    pending.clear();
}

void EquilibriumRules::Judge()
{
    if (flash.Kind() == FlashRecord::Of::Unit) {
        if (const auto imbalance = UnitImbalance(flash, connected.Count())) {
            pending.push_back({flash.Line(), "unit-balance", *imbalance});
        }
        return;
    }
    for (const FlashRecord::Material& material : flash.Materials()) {
        if (material.isUnsure) continue;
        if (flash.Kind() == FlashRecord::Of::Properties) {
            FindFugacities(material);
            continue;
        }
        FindPhaseNotGiven(material);
        FindImbalance(material);
        Remember(material);
    }
}

void EquilibriumRules::FindPhaseNotGiven(const FlashRecord::Material& material)
{
    const bool someAreGiven = std::any_of(material.phases.begin(), material.phases.end(),
                                          [](const auto& phase) { return phase.composition.line != 0; });
    for (const FlashRecord::Phase& phase : material.phases) {
        if (!phase.declared || !phase.atEquilibrium || phase.composition.line) continue;
        if (phase.isGiven && !someAreGiven) continue;
        pending.push_back({phase.declared, "phase-not-given",
                           "the phase \"" + phase.label + "\" of \"" + material.name +
                               "\" is said to be present at equilibrium, but the calculation in line " +
                               std::to_string(flash.Line()) + " sets " +
                               (phase.isGiven ? "no composition of it" : "nothing of it")});
    }
}

void EquilibriumRules::FindImbalance(const FlashRecord::Material& material)
{
    const FlashRecord::Composition& feed = material.feed;
    if (feed.fractions.empty() || !AddsUp(feed.fractions)) return;
    std::vector<double> sums(feed.fractions.size());
    std::string names;
    for (const FlashRecord::Phase& phase : material.phases) {
        // A package of version 1.0 does not say which phases are present.
        if (material.declares ? !phase.declared : !phase.share) continue;
        if (material.declares && !phase.atEquilibrium) return;
        const FlashRecord::Composition& part = phase.composition;
        if (!phase.share || part.fractions.size() != sums.size() || !AddsUp(part.fractions)) return;
        if (part.basis != feed.basis || phase.shareBasis != feed.basis) return;
        for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += *phase.share * part.fractions[i];
        names += (names.empty() ? "" : ", ") + phase.label;
    }
    if (names.empty()) return;
    // A compound that only the phases have may come from a reaction.
    for (std::size_t i = 0; i < sums.size(); ++i) {
        if (feed.fractions[i] == 0 && sums[i] > 0) return;
    }
    std::size_t worst = 0;
    const auto difference = [&](std::size_t i) {
        const double larger = std::max(sums[i], feed.fractions[i]);
        return larger < kTraceFraction ? 0 : std::fabs(sums[i] - feed.fractions[i]) / larger;
    };
    for (std::size_t i = 1; i < sums.size(); ++i) {
        if (difference(i) > difference(worst)) worst = i;
    }
    if (difference(worst) <= kBalanceTolerance) return;
    pending.push_back({flash.Line(), "balance",
                       "the phases calculated for \"" + material.name + "\" (" + names +
                           ") together have the fraction " + Digits(sums[worst]) + " of compound " +
                           std::to_string(worst + 1) + ", and the feed has " + Digits(feed.fractions[worst]) +
                           " (line " + std::to_string(feed.line) + ')'});
}

// Forgets the calculated phases before a call that may change them, such as one that sets a parameter.
void EquilibriumRules::ForgetBefore(const LogEvent& call)
{
    constexpr std::string_view kMethods[] = {"put_value", "Reset", "Edit", "Load", "Initialize", "Terminate"};
    if (!call.inward) return;
    const std::string_view method = call.Method();
    if (IsOneOf(method, kMethods)) states.clear();
}

void EquilibriumRules::Remember(const FlashRecord::Material& material)
{
    State state = {flash.Line(), {}};
    for (const FlashRecord::Phase& phase : material.phases) {
        if (phase.declared && phase.atEquilibrium && phase.temperature && phase.pressure &&
            !phase.composition.fractions.empty() && phase.composition.basis == "mole") {
            state.phases.push_back(phase);
            state.phases.back().fugacity = {};
        }
    }
    states.erase(material.name);
    if (state.phases.size() > 1 && states.size() < kMostMixtures) states[material.name] = std::move(state);
}

void EquilibriumRules::FindFugacities(const FlashRecord::Material& material)
{
    const auto found = states.find(material.name);
    if (found == states.end()) return;
    for (const FlashRecord::Phase& phase : material.phases) {
        if (phase.fugacity.fractions.empty()) continue;
        const auto same = std::find_if(found->second.phases.begin(), found->second.phases.end(), [&](const auto& one) {
            // Only a fugacity for the very state that is in equilibrium counts.
            return one.label == phase.label && one.temperature == phase.temperature && one.pressure == phase.pressure &&
                   one.composition.fractions == phase.composition.fractions;
        });
        if (same == found->second.phases.end()) continue;
        same->fugacity = phase.fugacity;
        for (const FlashRecord::Phase& other : found->second.phases) {
            if (&other != &*same) Compare(material, found->second, *same, other);
        }
    }
}

void EquilibriumRules::Compare(const FlashRecord::Material& material, const State& state, const FlashRecord::Phase& one,
                               const FlashRecord::Phase& other)
{
    const std::vector<double>&a = one.fugacity.fractions, &b = other.fugacity.fractions;
    const std::size_t count = one.composition.fractions.size();
    if (a.size() != count || b.size() != count || one.temperature != other.temperature) return;
    for (std::size_t i = 0; i < count; ++i) {
        if (std::min(one.composition.fractions[i], other.composition.fractions[i]) < kFugacityTrace) continue;
        if (std::fabs(a[i] - b[i]) <= kFugacityTolerance * std::max(std::fabs(a[i]), std::fabs(b[i]))) continue;
        pending.push_back({one.fugacity.line, "fugacity",
                           "\"" + one.label + "\" and \"" + other.label + "\" of \"" + material.name +
                               "\" are in equilibrium by the calculation in line " + std::to_string(state.line) +
                               ", but the fugacity of compound " + std::to_string(i + 1) + " is " + Digits(a[i]) +
                               " in the one and " + Digits(b[i]) + " in the other (line " +
                               std::to_string(other.fugacity.line) + ')'});
        return;
    }
}

}  // namespace zelt::ctl
