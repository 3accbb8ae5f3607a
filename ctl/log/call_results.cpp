#include "ctl/log/call_results.h"

#include <algorithm>
#include <iterator>

namespace zelt::ctl {
namespace {

bool IsCodeCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// Errors of which the callee's own follows, or that tell of a failure inside the call.
constexpr std::string_view kFailures[] = {
    "object not created",
    "Uncaught ",
    "Failed to ",
    "Unit Operation creation failed: ",
    "Unit Operation selection has been cancelled.",
    "Object failed to Save.",
    "Write error during Save.",
    "Read error during Load",
    "Internal call to InitNew failed",
    "Out of memory ",
};

bool IsFailure(std::string_view text)
{
    return LengthOfCode(text) > 0 || std::any_of(std::begin(kFailures), std::end(kFailures),
                                                 [&](std::string_view failure) { return text.starts_with(failure); });
}

}  // namespace

std::size_t LengthOfCode(std::string_view text)
{
    // The other texts have a blank before their colon.
    const std::size_t colon = text.find(": ");
    if (colon == std::string_view::npos) return 0;
    const std::string_view code = text.substr(0, colon);
    return std::all_of(code.begin(), code.end(), IsCodeCharacter) ? colon : 0;
}

MessageKind KindOfMessage(const LogEvent& event)
{
    switch (event.kind) {
        case EventKind::Info: return MessageKind::Info;
        // The caller gets E_NOINTERFACE, and no error line follows.
        case EventKind::Warning:
            return event.text == "Interface not exposed by object" ? MessageKind::Failure : MessageKind::Warning;
        case EventKind::Error: return IsFailure(event.text) ? MessageKind::Failure : MessageKind::Violation;
        default: return MessageKind::None;
    }
}

void CallResult::Take(MessageKind kind)
{
    failed |= kind == MessageKind::Failure;
    violated |= kind == MessageKind::Violation;
    warned |= kind == MessageKind::Warning;
}

bool IsBound(const LogEvent& event)
{
    return event.kind == EventKind::Info &&
           (event.text.starts_with("Lower bound: ") || event.text.starts_with("Upper bound: "));
}

std::string_view Unquoted(std::string_view value)
{
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') return value;
    return value.substr(1, value.size() - 2);
}

}  // namespace zelt::ctl
