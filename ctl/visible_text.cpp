#include "ctl/visible_text.h"

#include <bit>
#include <charconv>
#include <cstring>
#include <iterator>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace zelt::ctl {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

bool IsPlain(char c) { return c >= 0x20 && c < 0x7F; }

#ifdef __SSE2__
// How many bytes from `start` on need no code, line ends and tabs included. Tests sixteen at a time; the last few are neither
// tested nor counted.
std::size_t PlainStart(std::string_view text, std::size_t start)
{
    const __m128i blank = _mm_set1_epi8(' '), last = _mm_set1_epi8(0x7F), tab = _mm_set1_epi8('\t'),
                  feed = _mm_set1_epi8('\n'), carriage = _mm_set1_epi8('\r');
    std::size_t at = start;
    for (; at + sizeof blank < text.size(); at += sizeof blank) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at + 1));
        // Bytes from 0x80 on are negative, so they are less than a blank. Large texts have many line ends, so these need no
        // branch.
        const __m128i special = _mm_or_si128(_mm_cmplt_epi8(bytes, blank), _mm_cmpeq_epi8(bytes, last));
        const __m128i pairs = _mm_and_si128(_mm_cmpeq_epi8(bytes, carriage), _mm_cmpeq_epi8(next, feed));
        const __m128i layout =
            _mm_or_si128(pairs, _mm_or_si128(_mm_cmpeq_epi8(bytes, feed), _mm_cmpeq_epi8(bytes, tab)));
        const auto hidden = static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(layout, special)));
        if (hidden) return at + static_cast<std::size_t>(std::countr_zero(hidden)) - start;
    }
    return at - start;
}
#else
// How many bytes from `start` on are plain; the last few are neither tested nor counted. Nearly all text is plain, and a word
// takes no longer to test than a byte.
std::size_t PlainStart(std::string_view text, std::size_t start)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101, kHighBits = 0x80 * kOnes;
    std::size_t at = start;
    for (std::uint64_t word; at + sizeof word <= text.size(); at += sizeof word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        // Sets the high bit of a byte that is not plain: the subtraction for bytes below 0x20, the addition for 0x7F. Bytes
        // from 0x80 on have it already.
        const std::uint64_t found = ((word - 0x20 * kOnes) | (word + kOnes) | word) & kHighBits;
        if (!found) continue;
        // The first marked byte is not plain; borrows and carries can mark only bytes after it.
        if constexpr (std::endian::native == std::endian::little)
            at += static_cast<std::size_t>(std::countr_zero(found)) / 8;
        break;
    }
    return at - start;
}
#endif

// Line ends and tabs, which may occur in any text.
bool IsLayout(char c) { return c == '\n' || c == '\t'; }

void AppendCode(std::string& out, const Character& character)
{
    char digits[8];
    const auto end = std::to_chars(digits, std::end(digits), character.code, 16).ptr;
    out.append(character.valid ? "\\u{" : "\\x{").append(digits, end) += '}';
}

}  // namespace

Character FirstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return {lead, 1, true};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {lead, 1, false};
    std::uint32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) return {lead, 1, false};
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    return {code, length, true};
}

bool IsHidden(std::uint32_t code)
{
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

std::size_t WidthOf(std::string_view text)
{
    std::string shown;
    AppendVisible(shown, text);
    std::size_t width = 0;
    for (std::size_t i = 0; i < shown.size(); i += FirstCharacter(std::string_view(shown).substr(i)).length) ++width;
    return width;
}

void AppendVisible(std::string& out, std::string_view text)
{
    std::size_t done = 0;
    for (std::size_t i = PlainStart(text, 0); i < text.size();) {
        if (IsPlain(text[i])) {
            ++i;
            continue;
        }
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            i += 2;
            i += PlainStart(text, i);
            continue;
        }
        const std::string_view rest = text.substr(i);
        const Character character = FirstCharacter(rest);
        if (IsHidden(character.code) && !IsLayout(rest[0])) {
            out += text.substr(done, i - done);
            AppendCode(out, character);
            done = i + character.length;
        }
        i += character.length;
        i += PlainStart(text, i);
    }
    out += text.substr(done);
}

}  // namespace zelt::ctl
