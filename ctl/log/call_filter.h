// Selects the calls of a log that a command deals with, by object, interface, method and direction. A command that also selects
// by result does that itself.
#pragma once

#include <optional>
#include <string>

#include "ctl/command.h"
#include "ctl/log/call_results.h"

namespace zelt::ctl {

// The options, as rows for the option tables of the commands that filter.
// clang-format off
#define ZELT_CALL_FILTER_OPTIONS \
    {"--object",    "NAME",   "calls of this object; * and ? stand for any text and any letter, here and below"}, \
    {"--interface", "NAME",   "calls through this interface"}, \
    {"--method",    "NAME",   "calls of this method, without its interface"}, \
    {"--direction", "in|out", "in: calls of the logged component; out: its calls to objects of the simulator"}
// clang-format on

class CallFilter {
public:
    // Throws UsageError for an unknown direction.
    explicit CallFilter(const Arguments& arguments);

    // Whether any of the options was given.
    bool Any() const { return object || interfaceName || method || inward; }
    bool Matches(const LogEvent& call);

    // Writes a message if there is a filter and no call has passed it.
    void ReportNone(const std::string& log, Output& messages) const;

private:
    bool Fits(const LogEvent& call) const;

    bool anyMatch = false;
    std::optional<std::string> object, interfaceName, method;
    std::optional<bool> inward;
};

// Whether the whole text matches; the case of ASCII letters does not matter.
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace zelt::ctl
