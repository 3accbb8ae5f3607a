// Redacts the arguments of a recording, by the same rules as those of a log.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "ctl/log/log_aliases.h"
#include "ctl/log/redaction/argument_meaning.h"
#include "ctl/log/redaction/compound_names.h"
#include "ctl/recording/recorded_values.h"
#include "ctl/recording/redaction/balanced_values.h"

namespace zelt::ctl {

class ValueRedaction {
public:
    // `width` is that of the recording's pointers, in bits.
    ValueRedaction(const LogAliases& aliases, BalancedValues& balanced, std::uint32_t width, bool keepsErrors)
        : aliases(aliases), balanced(balanced), digits(width / 4), keepsErrors(keepsErrors)
    {}

    // `argument` must be the latest that `meanings` was given. `texts` keeps the texts of the redacted argument.
    recording::ArgumentRecord Redact(const recording::ArgumentRecord& argument, const ArgumentMeanings& meanings,
                                     std::deque<std::string>& texts);
    std::uint64_t Address(std::uint64_t address) const;

private:
    Scalar Redacted(const recording::ArgumentRecord& argument, const Scalar& scalar, const ArgumentMeanings& meanings,
                    std::deque<std::string>& texts);
    Scalar RedactedText(const Scalar& scalar, ArgumentMeaning meaning, std::deque<std::string>& texts);
    std::string RedactedNumber(const std::string& text, const std::string& type, const ArgumentMeanings& meanings);

    const LogAliases& aliases;
    BalancedValues& balanced;
    const std::size_t digits;  // of an address
    const bool keepsErrors;
    CompoundNames compounds;
    std::vector<std::string> fractions;  // of the argument, redacted
    std::size_t place = 0;               // of the value in the argument
};

}  // namespace zelt::ctl
