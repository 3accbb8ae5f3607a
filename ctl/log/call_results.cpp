#include "ctl/log/call_results.h"

#include <algorithm>

namespace zelt::ctl {
namespace {

bool IsCodeCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// A status code's name or number stands before the description. All other texts have a blank before their colon.
bool BeginsWithCode(std::string_view text)
{
    const std::size_t colon = text.find(": ");
    if (colon == std::string_view::npos || colon == 0) return false;
    const std::string_view code = text.substr(0, colon);
    return std::all_of(code.begin(), code.end(), IsCodeCharacter);
}

bool IsFailure(std::string_view text)
{
    return text == "object not created" || text.starts_with("Uncaught ") || BeginsWithCode(text);
}

}  // namespace

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
