#include "shell/command_line.h"

#include <algorithm>

namespace zelt {
namespace {

struct Switch {
    std::wstring_view text;  // In lower case.
    RegistrationAction action;
};

// clang-format off
constexpr Switch kSwitches[] = {
    {L"regserver",          RegistrationAction::Register},
    {L"unregserver",        RegistrationAction::Unregister},
    {L"regserverperuser",   RegistrationAction::RegisterPerUser},
    {L"unregserverperuser", RegistrationAction::UnregisterPerUser},
};
// clang-format on

constexpr std::wstring_view kBlanks = L" \t";
constexpr std::wstring_view kSwitchMarks = L"-/";
// A quoted switch ends at the closing quote.
constexpr std::wstring_view kTokenEnds = L" \t\"";

// The words to find are ASCII, so nothing else needs folding, and the locale has no effect.
std::wstring LowerCase(std::wstring_view text)
{
    std::wstring lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; });
    return lower;
}

bool Contains(std::wstring_view text, std::wstring_view part) { return text.find(part) != std::wstring_view::npos; }

std::wstring_view Trim(std::wstring_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::wstring_view WithoutQuotes(std::wstring_view text)
{
    if (text.empty() || text.front() != L'"') return text;
    text.remove_prefix(1);
    if (!text.empty() && text.back() == L'"') text.remove_suffix(1);
    return text;
}

// Finds the first switch: one of the known words, directly after a switch mark anywhere in the text.
RegistrationAction FindAction(std::wstring_view lower)
{
    for (std::size_t mark = lower.find_first_of(kSwitchMarks); mark != std::wstring_view::npos;
         mark = lower.find_first_of(kSwitchMarks, mark + 1)) {
        const std::wstring_view rest = lower.substr(mark + 1);
        const std::wstring_view token = rest.substr(0, rest.find_first_of(kTokenEnds));
        for (const Switch& known : kSwitches) {
            if (token == known.text) return known.action;
        }
    }
    return RegistrationAction::None;
}

}  // namespace

StartPlan ParseCommandLine(std::wstring_view tail)
{
    const std::wstring lower = LowerCase(tail);
    // Every registration switch contains this word.
    if (Contains(lower, L"regserver")) return {StartMode::Registration, FindAction(lower), {}};

    const std::wstring_view rest = Trim(tail);
    if (!rest.empty() && !Contains(kSwitchMarks, rest.substr(0, 1))) {
        return {StartMode::LogViewer, RegistrationAction::None, std::wstring(WithoutQuotes(rest))};
    }
    const bool embedding = Contains(lower, L"embedding");
    return {embedding ? StartMode::Server : StartMode::Interactive, RegistrationAction::None, {}};
}

}  // namespace zelt
