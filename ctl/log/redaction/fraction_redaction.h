// The fractions of a mixture in a log that is given away: others, which add up to the same. So the rules for fractions find the same
// in the redacted log.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/log_aliases.h"
#include "ctl/log/log_events.h"

namespace zelt::ctl {

// More compounds than a mixture has. A forged log may have more values than this.
inline constexpr std::size_t kMostFractions = 1000;

// What replaces the values of one argument. 0 stays, and so does whether a value is below 0 or above 1. Of all fractions of a mixture
// the sum stays too.
std::vector<std::string> RedactFractions(const std::vector<std::string>& values, bool areAll,
                                         const LogAliases& aliases);

// Knows of each argument whether its values are fractions.
class FractionArguments {
public:
    // Each call, argument and value, in order.
    void Begin(const LogEvent& event);
    void EndCall() { calls.pop_back(); }

    // Of the latest argument.
    bool AreFractions() const { return areFractions; }
    // And whether they are those of all compounds.
    bool AreAll() const { return !calls.empty() && !calls.back().ofSome; }

private:
    struct OpenCall {
        bool isComposition;  // a method that gets temperature, pressure and composition
        bool ofFraction;     // of the property "fraction"
        bool ofSome;         // of the compounds that are named
    };
    std::vector<OpenCall> calls;
    bool isProperty = false, isCompounds = false, areFractions = false;
};

}  // namespace zelt::ctl
