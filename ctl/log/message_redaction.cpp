#include "ctl/log/message_redaction.h"

#include <algorithm>

#include "ctl/log/call_results.h"

namespace zelt::ctl {
namespace {

bool IsStandardInterface(std::string_view name)
{
    const bool isName = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    });
    return isName && (name.starts_with("ICape") || name.starts_with("ECape") || name.starts_with("IPersist"));
}

std::string RedactHole(char kind, std::string_view text, const LogAliases& aliases)
{
    if (kind == 'n') return aliases.Name(text);
    if (kind == 'i' && !IsStandardInterface(text)) return aliases.Text(text);
    return std::string(text);
}

}  // namespace

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases)
{
    // This is how an element without a value is shown.
    if (message.text.empty() || message.text == "<no information>") return std::string(message.text);
    const auto found = SentenceOf(message);
    if (!found) return aliases.Text(message.text);
    std::string redacted;
    std::string_view pattern = RowOf(found->sentence).text;
    for (std::size_t filled = 0; !pattern.empty(); ++filled) {
        char hole = 0;
        redacted += sentences::TakeLiteral(pattern, hole);
        if (hole) redacted += RedactHole(hole, found->holes[filled], aliases);
    }
    return redacted;
}

}  // namespace zelt::ctl
