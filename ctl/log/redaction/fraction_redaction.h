// The fractions of a mixture in a log that is given away. They become the mass fractions that the mixture would have if its
// compounds had certain other masses, which LogAliases chooses. Such fractions still add up to the same sum, and the
// compositions of phases still balance with their feed. So the rules for fractions find the same in the redacted log.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/log_aliases.h"
#include "ctl/log/rules/flash_record.h"

namespace zelt::ctl {

// How many fractions can be redacted together: more than any mixture has. A forged log may have more values than this.
inline constexpr std::size_t kMostFractions = 1000;

// What replaces the values of one argument. 0 stays, and negative values stay negative. If a value is clearly above 1, so is
// one of the redacted values, as far as the sum allows; otherwise none is. `areAll`: the values are all the fractions of a
// mixture, so their sum stays, too.
std::vector<std::string> RedactFractions(const std::vector<std::string>& values, bool areAll,
                                         const LogAliases& aliases);

// What replaces a phase fraction about which nothing else is known. The fractions of two phases still add up to 1, and 0 and 1
// stay.
std::string RedactPhaseFraction(std::string_view value, const LogAliases& aliases);

// The phase fraction that keeps the balance between the redacted feed of a calculation and its redacted phases; nothing unless
// the compositions of the feed and of `phase` are known.
std::optional<std::string> BalancedPhaseFraction(std::string_view value, const FlashRecord::Material& material,
                                                 std::string_view phase, const LogAliases& aliases);

// What replaces the flow of the compound at this place (RedactFlow), and the total flow of a material (BalancedFlow), so that
// both agree with the redacted fractions. BalancedFlow returns nothing when the composition of the material is not known.
std::string RedactFlow(std::string_view value, std::size_t place, const LogAliases& aliases);
std::optional<std::string> BalancedFlow(std::string_view value, const FlashRecord::Material& material,
                                        const LogAliases& aliases);

}  // namespace zelt::ctl
