#include "log/vocabulary/found_sentence.h"

#include <algorithm>

namespace zelt {
namespace {

bool IsCodeCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// The literals of a pattern, one more than its holes, and the kinds of the holes.
struct Pieces {
    std::array<std::string_view, kMostHoles + 1> literals = {};
    std::array<char, kMostHoles> holes = {};
    std::size_t count = 0;  // of holes

    constexpr Pieces() = default;
    constexpr explicit Pieces(std::string_view pattern)
    {
        sentences::Walk(
            pattern, [&](std::string_view literal) { literals[count] = literal; },
            [&](char kind, std::size_t) { holes[count++] = kind; });
    }
};

constexpr std::size_t kRows = std::size(kSentences);

constexpr std::array<Pieces, kRows> kPieces = [] {
    std::array<Pieces, kRows> all;
    for (std::size_t row = 0; row < kRows; ++row) all[row] = Pieces(kSentences[row].text);
    return all;
}();

// The rows of each severity are together.
constexpr std::size_t FirstRow(Severity severity)
{
    std::size_t row = 0;
    while (row < kRows && kSentences[row].severity < severity) ++row;
    return row;
}
constexpr std::size_t kFirstRows[] = {FirstRow(Severity::Info), FirstRow(Severity::Warning), FirstRow(Severity::Error),
                                      kRows};
constexpr bool AreTogether()
{
    for (std::size_t row = 1; row < kRows; ++row) {
        if (kSentences[row].severity < kSentences[row - 1].severity) return false;
    }
    return true;
}
static_assert(AreTogether());

bool Matches(const Pieces& pieces, std::string_view text, std::array<std::string_view, kMostHoles>& found)
{
    if (!text.starts_with(pieces.literals[0])) return false;
    text.remove_prefix(pieces.literals[0].size());
    if (pieces.count == 0) return text.empty();
    std::size_t first = 0;
    // A code ends at the first colon and blank, whatever comes after them.
    while (first < pieces.count && pieces.holes[first] == 'c') {
        const std::size_t length = LengthOfCode(text);
        const std::string_view next = pieces.literals[first + 1];
        if (length == 0 || !text.substr(length).starts_with(next)) return false;
        found[first++] = text.substr(0, length);
        text.remove_prefix(length + next.size());
    }
    if (first == pieces.count) return text.empty();
    // Each other hole reaches to the last place where the literal after it is found.
    const std::string_view tail = pieces.literals[pieces.count];
    if (!text.ends_with(tail)) return false;
    text.remove_suffix(tail.size());
    for (std::size_t hole = pieces.count; hole-- > first + 1;) {
        const std::size_t at = text.rfind(pieces.literals[hole]);
        if (at == std::string_view::npos) return false;
        found[hole] = text.substr(at + pieces.literals[hole].size());
        text = text.substr(0, at);
    }
    found[first] = text;
    return true;
}

}  // namespace

std::size_t LengthOfCode(std::string_view text)
{
    // In errors that do not begin with a code, a blank precedes the first colon.
    const std::size_t colon = text.find(": ");
    if (colon == std::string_view::npos) return 0;
    const std::string_view code = text.substr(0, colon);
    return std::all_of(code.begin(), code.end(), IsCodeCharacter) ? colon : 0;
}

std::string SentenceText(Sentence sentence, HoleTexts holes)
{
    std::string text;
    ForEachPiece(sentence, holes, [&text](std::string_view piece) { text += piece; });
    return text;
}

std::optional<FoundSentence> FindSentence(Severity severity, std::string_view text, std::optional<Sentence> after)
{
    const auto element = static_cast<std::size_t>(severity);
    const std::size_t first = after ? static_cast<std::size_t>(*after) + 1 : 0;
    for (std::size_t row = std::max(first, kFirstRows[element]); row < kFirstRows[element + 1]; ++row) {
        // Most texts differ from most rows in the first character.
        const char start = kSentences[row].text.front();
        if (start != '%' && (text.empty() || text.front() != start)) continue;
        FoundSentence found = {kSentences[row].sentence, {}};
        if (Matches(kPieces[row], text, found.holes)) return found;
    }
    return {};
}

}  // namespace zelt
