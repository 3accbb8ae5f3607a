// What log check reports: a line of the log, a rule and a sentence.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zelt::ctl {

// The rules, in the order of the help.
inline constexpr std::string_view kCheckRules[] = {
    "damaged",     "open-call",    "structure",       "violation",      "exception",
    "version-mix", "initialize",   "after-terminate", "not-terminated", "not-released",
    "fractions",   "not-a-number", "read-before-set", "bounds",         "phase-not-given",
    "balance",     "fugacity",     "unit-balance",    "derivative",
};

using ReportFinding = std::function<void(int line, const char* rule, const std::string& text)>;

}  // namespace zelt::ctl
