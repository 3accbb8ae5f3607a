// Searches the bytes of a log, sixteen at a time if the compiler may use SSE2, one at a time otherwise, with the same results.
// The searches read up to kSlack bytes past what they look for, so a buffer needs that many extra bytes at its end.
#pragma once

#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>

#include <bit>
#endif

namespace zelt {

inline constexpr std::size_t kSlack = 64;

// Whether a byte may stand unescaped in an attribute's text: ASCII from the blank on, except markup.
constexpr bool IsPlainText(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x80 && c != '"' && c != '&' && c != '\'' && c != '<' && c != '>';
}

struct PlainBytes {
    // The first byte that IsPlainText rejects.
    static const char* EndOfPlainText(const char* at)
    {
        while (IsPlainText(*at)) ++at;
        return at;
    }
    // The first byte that is not a blank.
    static const char* EndOfBlanks(const char* at)
    {
        while (*at == ' ') ++at;
        return at;
    }
    // Finds the first ampersand or quote, and copies the text before it, and up to kSlack bytes more.
    static const char* CopyToMarkup(const char* at, char* out)
    {
        while (*at != '&' && *at != '"') *out++ = *at++;
        return at;
    }
};

#ifdef __SSE2__
struct VectorBytes {
    static const char* EndOfPlainText(const char* at)
    {
        const __m128i blank = _mm_set1_epi8(' '), quote = _mm_set1_epi8('"'), apostrophe = _mm_set1_epi8('\''),
                      greater = _mm_set1_epi8('>'), one = _mm_set1_epi8(1), two = _mm_set1_epi8(2);
        while (true) {
            const __m128i bytes = Load(at);
            // Bytes from 0x80 are negative. Setting the lowest bit turns an ampersand into an apostrophe, and setting the
            // second turns '<' into '>', so one comparison finds both.
            const __m128i control = _mm_cmplt_epi8(bytes, blank);
            const __m128i first = _mm_or_si128(control, _mm_cmpeq_epi8(bytes, quote));
            const __m128i second = _mm_or_si128(_mm_cmpeq_epi8(_mm_or_si128(bytes, one), apostrophe),
                                                _mm_cmpeq_epi8(_mm_or_si128(bytes, two), greater));
            const int found = _mm_movemask_epi8(_mm_or_si128(first, second));
            if (found) return at + std::countr_zero(static_cast<unsigned>(found));
            at += sizeof bytes;
        }
    }
    static const char* EndOfBlanks(const char* at)
    {
        while (true) {
            const int blanks = _mm_movemask_epi8(_mm_cmpeq_epi8(Load(at), _mm_set1_epi8(' ')));
            if (blanks != 0xFFFF) return at + std::countr_one(static_cast<unsigned>(blanks));
            at += sizeof(__m128i);
        }
    }
    static const char* CopyToMarkup(const char* at, char* out)
    {
        while (true) {
            const __m128i bytes = Load(at);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
            // An ampersand and a quote differ in one bit.
            const __m128i isMarkup = _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8('"' ^ '&')), _mm_set1_epi8('&'));
            const int found = _mm_movemask_epi8(isMarkup);
            if (found) return at + std::countr_zero(static_cast<unsigned>(found));
            at += sizeof bytes;
            out += sizeof bytes;
        }
    }

private:
    static __m128i Load(const char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }
};
using FastBytes = VectorBytes;
#else
using FastBytes = PlainBytes;
#endif

}  // namespace zelt
