#include "ctl/log/call_filter.h"

#include "ctl/log/log_paths.h"

namespace zelt::ctl {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool MatchesPattern(std::string_view text, std::string_view pattern)
{
    // When the text after a star does not match, the star takes one more character. It is enough to do this for the latest
    // star.
    std::size_t at = 0, next = 0, star = std::string_view::npos, resumed = 0;
    while (at < text.size()) {
        if (next < pattern.size() && pattern[next] == '*') {
            star = next++;
            resumed = at;
        } else if (next < pattern.size() && (pattern[next] == '?' || Lower(pattern[next]) == Lower(text[at]))) {
            ++at;
            ++next;
        } else if (star != std::string_view::npos) {
            next = star + 1;
            at = ++resumed;
        } else {
            return false;
        }
    }
    while (next < pattern.size() && pattern[next] == '*') ++next;
    return next == pattern.size();
}

CallFilter::CallFilter(const Arguments& arguments)
    : object(arguments.Value("--object")),
      interfaceName(arguments.Value("--interface")),
      method(arguments.Value("--method"))
{
    const auto direction = arguments.Value("--direction");
    if (!direction) return;
    if (*direction != "in" && *direction != "out") throw UsageError("--direction is in or out");
    inward = *direction == "in";
}

bool CallFilter::Matches(const LogEvent& call)
{
    const bool fits = Fits(call);
    anyMatch |= fits;
    return fits;
}

void CallFilter::ReportNone(const std::string& log, Output& messages) const
{
    if (Any() && !anyMatch) messages << NameOfLog(log) << ": no call passes the filter\n";
}

bool CallFilter::Fits(const LogEvent& call) const
{
    return (!object || MatchesPattern(call.text, *object)) &&
           (!interfaceName || MatchesPattern(call.Interface(), *interfaceName)) &&
           (!method || MatchesPattern(call.Method(), *method)) && (!inward || call.inward == *inward);
}

}  // namespace zelt::ctl
