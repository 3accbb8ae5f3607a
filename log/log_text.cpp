#include "log/log_text.h"

#include <emmintrin.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "log/vocabulary/markup.h"

namespace zelt {
namespace {

// The entity for a character of markup; empty for a character that is copied, null for one that is dropped.
constexpr const char* EntityOf(unsigned char c)
{
    const char* const entity = MarkupEntity(static_cast<char>(c));
    if (entity) return entity;
    return c >= 0x20 && c <= 0x7F ? "" : nullptr;
}

struct Entities {
    std::array<const char*, 256> of;
    constexpr Entities() : of{}
    {
        for (unsigned c = 0; c < 256; ++c) of[c] = EntityOf(static_cast<unsigned char>(c));
    }
};

constexpr Entities kEntities;

bool IsCopied(unsigned char c)
{
    const char* const entity = kEntities.of[c];
    return entity && !*entity;
}

// Whether all of these bytes are copied. A byte from 0x80 up is negative, so it is less than a blank.
bool AreCopied(__m128i bytes)
{
    const __m128i dropped = _mm_cmplt_epi8(bytes, _mm_set1_epi8(' '));
    const __m128i quote = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
    const __m128i ampersandOrApostrophe = _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(~1)), _mm_set1_epi8('&'));
    const __m128i angle = _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(~2)), _mm_set1_epi8('<'));
    return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(dropped, quote), _mm_or_si128(ampersandOrApostrophe, angle))) ==
           0;
}
static_assert(('&' & ~1) == '&' && ('\'' & ~1) == '&' && ('<' & ~2) == '<' && ('>' & ~2) == '<');

template <class T>
T Read(const char* from)
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

// Whether the text can be copied unchanged, as nearly all can. The last step is always whole: it may look at some bytes again.
bool IsCopied(std::string_view text)
{
    const char* const begin = text.data();
    const std::size_t size = text.size();
    if (size >= 16) {
        for (std::size_t i = 0; i + 16 <= size; i += 16) {
            if (!AreCopied(Read<__m128i>(begin + i))) return false;
        }
        return AreCopied(Read<__m128i>(begin + size - 16));
    }
    if (size >= 8) return AreCopied(_mm_set_epi64x(Read<long long>(begin), Read<long long>(begin + size - 8)));
    if (size >= 4) {
        const int first = Read<int>(begin), last = Read<int>(begin + size - 4);
        return AreCopied(_mm_set_epi32(first, last, first, last));
    }
    for (const char c : text) {
        if (!IsCopied(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

// Copies `Size` characters and returns the end. The size is a constant, so the compiler needs no call.
template <std::size_t Size>
char* Put(char* to, const char* from)
{
    std::memcpy(to, from, Size);
    return to + Size;
}

// --- Six significant digits of a double. The runtime library's conversion is exact for every value and takes longer than all
// the rest of an entry. Most values do not need it: scaled by a power of ten that a double holds exactly, the six digits are
// the integer part, and the scaling's error (one part in 2^52, so 1e-9 of a digit) matters only next to a tie.

constexpr int kDigits = 6;
constexpr double kLeast = 1e5, kTooMany = 1e6;  // an integer of six digits is at least kLeast and less than kTooMany
constexpr double kNearTie = 1e-6;

constexpr int kPowers = 23;  // 10^22 is the last that a double holds exactly
constexpr std::array<double, kPowers> kPowerOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool HasPower(int power) { return power > -kPowers && power < kPowers; }
double Scaled(double value, int power) { return power >= 0 ? value * kPowerOfTen[power] : value / kPowerOfTen[-power]; }

// A double as the sum of two that have half of its digits, so that the products of such halves are exact.
struct Halves {
    double high, low;
    explicit Halves(double value)
    {
        constexpr double kSplitter = 134217729;  // 2^27 + 1
        const double spread = kSplitter * value;
        high = spread - (spread - value);
        low = value - high;
    }
};

// Whether a * b is exactly `product`.
bool IsProduct(double a, double b, double product)
{
    if (a * b != product) return false;
    const Halves left(a), right(b);
    const double error = (left.high * right.high - product) + left.high * right.low + left.low * right.high;
    return error + left.low * right.low == 0;
}

// Whether Scaled returned `scaled` without an error.
bool IsExact(double value, int power, double scaled)
{
    return power >= 0 ? IsProduct(value, kPowerOfTen[power], scaled) : IsProduct(scaled, kPowerOfTen[-power], value);
}

// The six digits and the decimal exponent of the first of them; false for a value that needs the exact conversion.
bool SplitDigits(double magnitude, std::uint32_t& digits, int& exponent)
{
    const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52) - 1023;
    exponent = binary * 1233 >> 12;  // 1233 / 4096 is close to the decimal logarithm of two
    if (!HasPower(kDigits - 1 - exponent)) return false;
    double scaled = Scaled(magnitude, kDigits - 1 - exponent);
    if (scaled >= kTooMany || scaled < kLeast) {
        exponent += scaled < kLeast ? -1 : 1;
        if (!HasPower(kDigits - 1 - exponent)) return false;
        scaled = Scaled(magnitude, kDigits - 1 - exponent);
        if (scaled >= kTooMany || scaled < kLeast) return false;
    }
    digits = static_cast<std::uint32_t>(scaled);
    const double rest = scaled - digits;
    bool roundsUp = rest > 0.5;
    if (rest > 0.5 - kNearTie && rest < 0.5 + kNearTie) {
        if (!IsExact(magnitude, kDigits - 1 - exponent, scaled)) return false;
        // A tie is rounded to the even digit.
        if (rest == 0.5) roundsUp = digits % 2 != 0;
    }
    if (roundsUp && ++digits == static_cast<std::uint32_t>(kTooMany)) {
        digits /= 10;
        ++exponent;
    }
    return true;
}

struct DigitPairs {
    std::array<char, 200> text;
    constexpr DigitPairs() : text{}
    {
        for (int i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};

constexpr DigitPairs kDigitPairs;

const char* DigitPair(std::uint32_t number) { return &kDigitPairs.text[2 * number]; }

// Writes the value as "%g" shows it; null, and nothing written, for one that needs the exact conversion. Always copies eight
// digits, which takes no loop, and then goes to the end of those that count.
char* WriteOrdinaryDouble(char* to, double value)
{
    std::uint32_t digits = 0;
    int exponent = 0;
    if (!SplitDigits(std::abs(value), digits, exponent)) return nullptr;

    constexpr std::size_t kCopied = 8;
    std::array<char, 16> digit = {};
    Put<2>(Put<2>(Put<2>(digit.data(), DigitPair(digits / 10000)), DigitPair(digits / 100 % 100)),
           DigitPair(digits % 100));
    int count = kDigits;
    while (count > 1 && digit[count - 1] == '0') --count;

    char* end = to;
    if (std::signbit(value)) *end++ = '-';
    if (exponent < -4 || exponent >= kDigits) {
        *end++ = digit[0];
        if (count > 1) {
            *end++ = '.';
            Put<kCopied>(end, digit.data() + 1);
            end += count - 1;
        }
        *end++ = 'e';
        *end++ = exponent < 0 ? '-' : '+';
        return Put<2>(end, DigitPair(static_cast<std::uint32_t>(std::abs(exponent))));
    }
    if (exponent < 0) {
        Put<kCopied>(end, "0.000000");
        end += 1 - exponent;
        Put<kCopied>(end, digit.data());
        return end + count;
    }
    const int whole = exponent + 1;
    Put<kCopied>(end, digit.data());
    end += whole;
    if (count <= whole) return end;
    *end++ = '.';
    Put<kCopied>(end, digit.data() + whole);
    return end + count - whole;
}

}  // namespace

bool AppendEscaped(EntryText& out, std::string_view text)
{
    if (IsCopied(text)) {
        out += text;
        return false;
    }
    bool dropped = false;
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* entity = kEntities.of[static_cast<unsigned char>(text[i])];
        if (entity && !*entity) continue;
        out += text.substr(runStart, i - runStart);
        runStart = i + 1;
        if (entity) {
            out += std::string_view(entity);
        } else {
            dropped = true;
        }
    }
    out += text.substr(runStart);
    return dropped;
}

char* WriteDecimal(char* to, long value) { return std::to_chars(to, to + kLongestShortText, value).ptr; }

char* WriteDouble(char* to, double value)
{
    if (char* const end = WriteOrdinaryDouble(to, value)) return end;
    return std::to_chars(to, to + kLongestShortText, value, std::chars_format::general, kDigits).ptr;
}

char* WritePointer(char* to, const void* pointer)
{
    constexpr int kHexDigits = static_cast<int>(sizeof(void*)) * 2;
    constexpr char kHex[] = "0123456789ABCDEF";
    const auto value = reinterpret_cast<std::uintptr_t>(pointer);
    char* end = Put<2>(to, "0x");
    for (int digit = kHexDigits - 1; digit >= 0; --digit) *end++ = kHex[(value >> (4 * digit)) & 0xF];
    return end;
}

char* WriteQuoted(char* to, std::wstring_view text)
{
    constexpr std::size_t kQuotes = 12;
    if (text.size() > kLongestShortText - kQuotes) return nullptr;
    char* end = Put<6>(to, "&quot;");
    for (const wchar_t c : text) {
        if (c > 0x7F || !IsCopied(static_cast<unsigned char>(c))) return nullptr;
        *end++ = static_cast<char>(c);
    }
    return Put<6>(end, "&quot;");
}

void AppendDecimal(std::string& out, long value)
{
    std::array<char, kLongestShortText> text;
    out.append(text.data(), WriteDecimal(text.data(), value));
}

void AppendDouble(std::string& out, double value)
{
    std::array<char, kLongestShortText> text;
    out.append(text.data(), WriteDouble(text.data(), value));
}

void AppendPointer(std::string& out, const void* pointer)
{
    std::array<char, kLongestShortText> text;
    out.append(text.data(), WritePointer(text.data(), pointer));
}

}  // namespace zelt
