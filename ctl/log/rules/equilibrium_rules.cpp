#include "ctl/log/rules/equilibrium_rules.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace zelt::ctl {
namespace {

// By which part of the larger one a feed's fraction and the sum of the phases may differ, and below which they are not compared. The
// six digits of a log allow for a hundredth of it, and a calculation stops at a tolerance of its own. In other units, as in a log
// that was redacted, the part is the same.
constexpr double kBalanceTolerance = 5e-3, kTrace = 1e-2;
// Fractions that do not add up to 1 are findings of another rule.
constexpr double kSumTolerance = 1e-4;

std::string Digits(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

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
    for (const FlashRecord::Material& material : flash.Materials()) {
        if (material.isUnsure) continue;
        FindPhaseNotGiven(material);
        FindImbalance(material);
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
    std::size_t worst = 0;
    const auto difference = [&](std::size_t i) {
        const double larger = std::max(sums[i], feed.fractions[i]);
        return larger < kTrace ? 0 : std::fabs(sums[i] - feed.fractions[i]) / larger;
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

}  // namespace zelt::ctl
