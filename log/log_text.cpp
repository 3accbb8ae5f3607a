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

// A register whose lower half is read from memory.
__m128i ReadHalf(const char* from) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)); }
void WriteHalf(char* to, __m128i bytes) { _mm_storel_epi64(reinterpret_cast<__m128i*>(to), bytes); }

// Copies the text if it can be copied unchanged, as nearly all can, and returns its end; otherwise null. The last step is always
// whole: it may copy some characters again.
char* PutUnchanged(char* to, std::string_view text)
{
    const std::size_t size = text.size();
    if (size >= 16) {
        for (std::size_t i = 0; i + 16 < size; i += 16) {
            const auto bytes = Read<__m128i>(text.data() + i);
            if (!AreCopied(bytes)) return nullptr;
            std::memcpy(to + i, &bytes, 16);
        }
        const auto bytes = Read<__m128i>(text.data() + size - 16);
        if (!AreCopied(bytes)) return nullptr;
        std::memcpy(to + size - 16, &bytes, 16);
    } else if (size >= 8) {
        const __m128i first = ReadHalf(text.data()), last = ReadHalf(text.data() + size - 8);
        if (!AreCopied(_mm_unpacklo_epi64(first, last))) return nullptr;
        WriteHalf(to, first);
        WriteHalf(to + size - 8, last);
    } else if (size >= 4) {
        const int first = Read<int>(text.data()), last = Read<int>(text.data() + size - 4);
        const __m128i ends = _mm_unpacklo_epi32(_mm_cvtsi32_si128(first), _mm_cvtsi32_si128(last));
        if (!AreCopied(_mm_unpacklo_epi64(ends, ends))) return nullptr;
        std::memcpy(to, &first, 4);
        std::memcpy(to + size - 4, &last, 4);
    } else {
        for (std::size_t i = 0; i < size; ++i) {
            if (!IsCopied(static_cast<unsigned char>(text[i]))) return nullptr;
            to[i] = text[i];
        }
    }
    return to + size;
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

// 10^22 is the last that a double holds exactly. The negative powers are rounded, and serve only values that are not next to a tie.
constexpr int kMostPower = 22;
constexpr std::array<double, 2 * kMostPower + 1> kPowersOfTen = {
    1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9, 1e-8,
    1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,  1e7,
    1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21, 1e22};

bool HasPower(int power) { return power >= -kMostPower && power <= kMostPower; }
double PowerOfTen(int power) { return kPowersOfTen[static_cast<std::size_t>(power + kMostPower)]; }

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

// Rounds a value, scaled by the power of ten, that is next to a tie. False if its digits need the exact conversion.
bool RoundNearTie(double magnitude, int power, std::int32_t& digits)
{
    const double scaled = power >= 0 ? magnitude * PowerOfTen(power) : magnitude / PowerOfTen(-power);
    if (power >= 0 ? !IsProduct(magnitude, PowerOfTen(power), scaled)
                   : !IsProduct(scaled, PowerOfTen(-power), magnitude)) {
        return false;
    }
    digits = static_cast<std::int32_t>(scaled);
    const double rest = scaled - digits;
    // A tie is rounded to the even digit.
    if (rest > 0.5 || (rest == 0.5 && digits % 2 != 0)) ++digits;
    return true;
}

// The six digits and the decimal exponent of the first of them; false for a value that needs the exact conversion. Branches only
// where nearly all values go the same way: after each write of an entry, the processor has to guess anew.
bool SplitDigits(double magnitude, std::uint32_t& digits, int& exponent)
{
    const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52) - 1023;
    exponent = binary * 1233 >> 12;  // 1233 / 4096 is close to the decimal logarithm of two
    if (!HasPower(exponent + 1) || !HasPower(kDigits - 1 - exponent)) return false;
    exponent += magnitude >= PowerOfTen(exponent + 1) ? 1 : 0;
    const int power = kDigits - 1 - exponent;
    const double scaled = magnitude * PowerOfTen(power);
    if (!(scaled >= kLeast && scaled < kTooMany)) return false;
    // Conversions of signed numbers take one instruction.
    auto rounded = static_cast<std::int32_t>(scaled);
    const double rest = scaled - rounded;
    if (rest > 0.5 - kNearTie && rest < 0.5 + kNearTie) {
        if (!RoundNearTie(magnitude, power, rounded)) return false;
    } else {
        rounded += rest > 0.5 ? 1 : 0;
    }
    if (rounded == static_cast<std::int32_t>(kTooMany)) {
        rounded /= 10;
        ++exponent;
    }
    digits = static_cast<std::uint32_t>(rounded);
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

// The six digits as characters, and zeros behind them. A register collects them, because memory that was written in small pieces
// cannot be read at once as a large one.
__m128i CharactersOf(std::uint32_t digits)
{
    const __m128i first = _mm_cvtsi32_si128(Read<std::uint16_t>(DigitPair(digits / 10000)));
    const __m128i second = _mm_insert_epi16(first, Read<std::uint16_t>(DigitPair(digits / 100 % 100)), 1);
    return _mm_insert_epi16(second, Read<std::uint16_t>(DigitPair(digits % 100)), 2);
}

// How many of the six characters are left without the zeros at their end. The first is not a zero.
int CountWithoutZeros(__m128i characters)
{
    const __m128i zeros = _mm_cmpeq_epi8(characters, _mm_set1_epi8('0'));
    const auto others = ~static_cast<unsigned>(_mm_movemask_epi8(zeros)) & ((1u << kDigits) - 1);
    return std::bit_width(others);
}

// Writes the value as "%g" shows it; null, and nothing written, for one that needs the exact conversion. Always copies eight
// digits, which takes no loop, and then goes to the end of those that count.
char* WriteOrdinaryDouble(char* to, double value)
{
    if (value == 0) {
        if (std::signbit(value)) *to++ = '-';
        *to++ = '0';
        return to;
    }
    std::uint32_t digits = 0;
    int exponent = 0;
    if (!SplitDigits(std::abs(value), digits, exponent)) return nullptr;

    constexpr std::size_t kCopied = 8;
    const __m128i characters = CharactersOf(digits);
    const int count = CountWithoutZeros(characters);
    std::array<char, 16> digit;
    std::memcpy(digit.data(), &characters, 16);

    *to = '-';
    char* end = to + (std::signbit(value) ? 1 : 0);
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
    end[whole] = '.';
    Put<kCopied>(end + whole + 1, digit.data() + whole);
    return end + (count > whole ? count + 1 : whole);
}

}  // namespace

bool AppendEscaped(EntryText& out, std::string_view text)
{
    if (out.AppendWith(text.size(), [text](char* to) { return PutUnchanged(to, text); })) return false;
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
