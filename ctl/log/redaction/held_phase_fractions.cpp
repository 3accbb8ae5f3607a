#include "ctl/log/redaction/held_phase_fractions.h"

#include <utility>

#include "ctl/log/redaction/fraction_redaction.h"

namespace zelt::ctl {
namespace {

// Not more than the feeds and phases that a reader compares.
constexpr std::size_t kMostLatest = 1000;

}  // namespace

void HeldPhaseFractions::Take(PhaseFraction fraction, std::string& text, const LogAliases& aliases)
{
    if (flash.IsOpen()) {
        held.push_back(std::move(fraction));
        return;
    }
    // What a calculation has set is read again as it was set.
    const auto found = latest.find(KeyOf(fraction));
    text.insert(fraction.place, found != latest.end() ? found->second : RedactPhaseFraction(fraction.value, aliases));
}

void HeldPhaseFractions::Fill(std::string& text, const LogAliases& aliases)
{
    if (held.empty()) return;
    std::string filled;
    std::size_t done = 0;
    for (const PhaseFraction& fraction : held) {
        const FlashRecord::Material* material = flash.Find(fraction.object);
        const auto balanced =
            material ? BalancedPhaseFraction(fraction.value, *material, fraction.phase, aliases) : std::nullopt;
        const std::string substitute = balanced ? *balanced : RedactPhaseFraction(fraction.value, aliases);
        if (balanced) {
            if (latest.size() == kMostLatest) latest.clear();
            latest[KeyOf(fraction)] = substitute;
        }
        filled.append(text, done, fraction.place - done).append(substitute);
        done = fraction.place;
    }
    text = filled.append(text, done);
    held.clear();
}

}  // namespace zelt::ctl
