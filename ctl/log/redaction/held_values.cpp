#include "ctl/log/redaction/held_values.h"

#include <utility>

#include "ctl/log/redaction/fraction_redaction.h"

namespace zelt::ctl {
namespace {

// Enough for the feeds and phases that a reader compares. Before one more is added, all are forgotten.
constexpr std::size_t kMostLatest = 1000;

std::string Unbalanced(const HeldValues::HeldValue& value, const LogAliases& aliases)
{
    return value.isFlow ? aliases.Value(value.text, "double") : RedactPhaseFraction(value.text, aliases);
}

}  // namespace

void HeldValues::Take(HeldValue value, std::string& lines, const LogAliases& aliases)
{
    if (flash.IsOpen()) {
        held.push_back(std::move(value));
        return;
    }
    // A value that a calculation has set keeps its substitute when it is read again.
    const auto found = latest.find(KeyOf(value));
    lines.insert(value.place, found != latest.end() ? found->second : Unbalanced(value, aliases));
}

void HeldValues::Fill(std::string& lines, const LogAliases& aliases)
{
    if (held.empty()) return;
    const std::size_t first = held[0].place;
    const std::string behind(lines, first);
    lines.resize(first);
    std::size_t done = 0;
    for (const HeldValue& value : held) {
        const FlashRecord::Material* material = flash.Find(value.object);
        const auto balanced = !material      ? std::nullopt
                              : value.isFlow ? BalancedFlow(value.text, *material, aliases)
                                             : BalancedPhaseFraction(value.text, *material, value.phase, aliases);
        const std::string substitute = balanced ? *balanced : Unbalanced(value, aliases);
        if (balanced) {
            if (latest.size() == kMostLatest) latest.clear();
            latest[KeyOf(value)] = substitute;
        }
        lines.append(behind, done, value.place - first - done).append(substitute);
        done = value.place - first;
    }
    lines.append(behind, done);
    held.clear();
}

}  // namespace zelt::ctl
