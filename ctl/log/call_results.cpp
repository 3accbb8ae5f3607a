#include "ctl/log/call_results.h"

#include "log/vocabulary/system_interfaces.h"

namespace zelt::ctl {
namespace {

bool IsSystemQuery(const FoundSentence& found)
{
    switch (found.sentence) {
        case Sentence::UnsupportedInterface:
        case Sentence::InterfaceLackedByObject:
        case Sentence::InterfaceWithoutObject: return IsSystemInterface(found.holes[1]);
        default: return false;
    }
}

// Whether a text begins with the same character as one of these sentences. Few do, so this saves most searches.
template <Sentence... kOnes>
bool BeginsLike(std::string_view text)
{
    static_assert(((RowOf(kOnes).text.front() != '%') && ...));
    return !text.empty() && ((text.front() == RowOf(kOnes).text.front()) || ...);
}

}  // namespace

std::optional<FoundSentence> SentenceOf(const LogEvent& event)
{
    switch (event.kind) {
        case EventKind::Info: return FindSentence(Severity::Info, event.text);
        case EventKind::Warning: return FindSentence(Severity::Warning, event.text);
        case EventKind::Error: return FindSentence(Severity::Error, event.text);
        default: return {};
    }
}

MessageKind KindOfMessage(const LogEvent& event)
{
    if (event.kind == EventKind::Info) return MessageKind::Info;
    if (event.kind != EventKind::Warning && event.kind != EventKind::Error) return MessageKind::None;
    const auto found = SentenceOf(event);
    if (found && RowOf(found->sentence).meaning == Meaning::Failure) return MessageKind::Failure;
    if (event.kind == EventKind::Error) return MessageKind::Violation;
    return found && IsSystemQuery(*found) ? MessageKind::Query : MessageKind::Warning;
}

void CallResult::Take(MessageKind kind)
{
    failed |= kind == MessageKind::Failure;
    violated |= kind == MessageKind::Violation;
    warned |= kind == MessageKind::Warning;
}

bool IsBound(const LogEvent& event)
{
    if (event.kind != EventKind::Info || !BeginsLike<Sentence::LowerBound, Sentence::UpperBound>(event.text))
        return false;
    const auto found = SentenceOf(event);
    return found && (found->sentence == Sentence::LowerBound || found->sentence == Sentence::UpperBound);
}

bool SaysMore(const LogEvent& event)
{
    if (event.kind != EventKind::Info) return false;
    if (!BeginsLike<Sentence::ErrorInformationOf, Sentence::ErrorInformation, Sentence::DescriptionOfObject,
                    Sentence::NameOfError, Sentence::UnavailableProperty>(event.text)) {
        return false;
    }
    const auto found = SentenceOf(event);
    if (!found) return false;
    switch (found->sentence) {
        case Sentence::ErrorInformationOf:
        case Sentence::ErrorInformation:
        case Sentence::DescriptionOfObject:
        case Sentence::NameOfError:
        case Sentence::UnavailableProperty: return true;
        default: return false;
    }
}

bool IsSuppression(const LogEvent& event)
{
    const auto found = event.kind == EventKind::Warning ? SentenceOf(event) : std::nullopt;
    return found && found->sentence == Sentence::CharactersSuppressed;
}

std::string_view Unquoted(std::string_view value)
{
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') return value;
    return value.substr(1, value.size() - 2);
}

std::string HiddenQueries(long long count)
{
    if (count == 0) return {};
    return std::to_string(count) + (count == 1 ? " system query hidden" : " system queries hidden");
}

}  // namespace zelt::ctl
