#include "shell/log_viewer/fragment_search.h"

#include <algorithm>
#include <bit>

#include "log_reader/byte_search.h"

namespace zelt {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool IsLetter(char c) { return c >= 'a' && c <= 'z'; }

// Whether this character, where a label has it, is also in the file, and not escaped.
bool IsInFile(char c) { return IsPlainText(c) && c != '(' && c != ')'; }

// `part` has no parentheses. Returns the piece of it that is certain to be in the file if the part is in a label of the form
// "name (object)" or "name (type: T)".
std::string_view WithoutOwnWords(std::string_view part)
{
    constexpr std::string_view kWord = "type: ";
    while (part.ends_with(' ')) part.remove_suffix(1);
    if (kWord.find(part) != std::string_view::npos) return {};
    for (std::size_t from = 0; from < kWord.size(); ++from) {
        if (part.starts_with(kWord.substr(from))) return part.substr(kWord.size() - from);
    }
    return part;
}

}  // namespace

FragmentSearch::FragmentSearch(std::string_view text, bool ignoreCase) : ignoreCase(ignoreCase)
{
    isForeign = std::any_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte >= 0x80;
    });
    std::string wanted(text);
    if (ignoreCase) std::transform(wanted.begin(), wanted.end(), wanted.begin(), Lower);
    for (std::size_t from = 0; from < wanted.size(); ++from) {
        std::size_t end = from;
        while (end < wanted.size() && IsInFile(wanted[end])) ++end;
        const std::string_view part = WithoutOwnWords(std::string_view(wanted).substr(from, end - from));
        if (part.size() > fragment.size()) fragment = part;
        from = end;
    }
}

bool FragmentSearch::IsAt(const char* place) const
{
    if (!ignoreCase) return std::equal(fragment.begin(), fragment.end(), place);
    return std::equal(fragment.begin(), fragment.end(), place, [](char a, char b) { return a == Lower(b); });
}

bool FragmentSearch::MayBeIn(std::string_view bytes) const
{
    if (isForeign) return false;
    if (fragment.empty()) return true;
    if (bytes.size() < fragment.size()) return false;
    const char* at = bytes.data();
    const char* const end = at + (bytes.size() - fragment.size() + 1);
#ifdef __SSE2__
    // Compares the first and the last character at sixteen places at once. A capital letter differs from a small one in one bit.
    const std::size_t last = fragment.size() - 1;
    const auto bit = [this](char c) { return _mm_set1_epi8(ignoreCase && IsLetter(c) ? 0x20 : 0); };
    const __m128i firstBit = bit(fragment.front()), lastBit = bit(fragment.back());
    const __m128i first = _mm_set1_epi8(fragment.front()), final = _mm_set1_epi8(fragment.back());
    const auto load = [](const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); };
    for (; at < end; at += sizeof(__m128i)) {
        const __m128i one = _mm_cmpeq_epi8(_mm_or_si128(load(at), firstBit), first);
        const __m128i other = _mm_cmpeq_epi8(_mm_or_si128(load(at + last), lastBit), final);
        auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(one, other)));
        for (; found; found &= found - 1) {
            const char* const place = at + std::countr_zero(found);
            if (place < end && IsAt(place)) return true;
        }
    }
#else
    for (; at < end; ++at) {
        if (IsAt(at)) return true;
    }
#endif
    return false;
}

}  // namespace zelt
