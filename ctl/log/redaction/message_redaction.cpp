#include "ctl/log/redaction/message_redaction.h"

#include <algorithm>

#include "ctl/log/call_results.h"
#include "log/vocabulary/found_sentence.h"
#include "log/vocabulary/system_interfaces.h"

namespace zelt::ctl {
namespace {

// Whether this is the name of an interface of the system, or looks like that of an interface of the standard or of persistence.
bool IsStandardInterface(std::string_view name)
{
    if (IsSystemInterface(name)) return true;
    const bool isName = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    });
    return isName && (name.starts_with("ICape") || name.starts_with("ECape") || name.starts_with("IPersist"));
}

}  // namespace

std::string RedactHole(char kind, bool mayBeName, std::string_view text, const LogAliases& aliases)
{
    if (kind == 'n') return aliases.Name(text);
    if (kind == 's' && mayBeName) return aliases.Text(text);
    if (kind == 'i' && !IsStandardInterface(text)) return aliases.Text(text);
    return std::string(text);
}

// If the text fits a second row, too, words in a hole of the first row may be a name in the second.
bool MayHaveNames(const SentenceRow& row, std::string_view text)
{
    return FindSentence(row.severity, text, row.sentence).has_value();
}

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases)
{
    // The reader delivers "<no information>" for a message without a text.
    if (message.text.empty() || message.text == "<no information>") return std::string(message.text);
    const auto found = SentenceOf(message);
    if (!found) return aliases.Text(message.text);
    const bool isAmbiguous = MayHaveNames(RowOf(found->sentence), message.text);
    std::string redacted;
    sentences::Walk(
        RowOf(found->sentence).text, [&](std::string_view literal) { redacted += literal; },
        [&](char kind, std::size_t number) {
            redacted += RedactHole(kind, isAmbiguous, found->holes[number], aliases);
        });
    return redacted;
}

}  // namespace zelt::ctl
