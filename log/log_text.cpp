#include "log/log_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "log/vocabulary/markup.h"

namespace zelt {
namespace {

template <class T, class... Format>
void AppendNumber(std::string& out, T value, Format... format)
{
    std::array<char, 64> text;
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, format...);
    out.append(text.data(), result.ptr);
}

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

// --- Six significant digits of a double. The runtime library's conversion is exact for every value and takes longer than all the
// rest of an entry. Most values do not need it: scaled by a power of ten that a double holds exactly, the six digits are the
// integer part, and the scaling's error (one part in 2^52, so 1e-9 of a digit) matters only next to a tie.

constexpr int kDigits = 6;
constexpr double kLeast = 1e5, kTooMany = 1e6;  // the integers of six digits lie in between
constexpr double kNearTie = 1e-6;

constexpr int kPowers = 23;  // 10^22 is the last that a double holds exactly
constexpr std::array<double, kPowers> kPowerOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool HasPower(int power) { return power > -kPowers && power < kPowers; }
double Scaled(double value, int power) { return power >= 0 ? value * kPowerOfTen[power] : value / kPowerOfTen[-power]; }

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
    if (rest > 0.5 - kNearTie && rest < 0.5 + kNearTie) return false;
    if (rest > 0.5 && ++digits == static_cast<std::uint32_t>(kTooMany)) {
        digits /= 10;
        ++exponent;
    }
    return true;
}

// Appends the value as "%g" shows it; false, and nothing appended, for one that needs the exact conversion.
bool AppendOrdinaryDouble(std::string& out, double value)
{
    std::uint32_t digits = 0;
    int exponent = 0;
    if (!SplitDigits(std::abs(value), digits, exponent)) return false;

    std::array<char, kDigits> digit;
    for (int i = kDigits; i-- > 0; digits /= 10) digit[i] = static_cast<char>('0' + digits % 10);
    int count = kDigits;
    while (count > 1 && digit[count - 1] == '0') --count;

    std::array<char, 32> text;
    char* end = text.data();
    const auto put = [&end](const char* from, int length) { end = std::copy_n(from, length, end); };
    if (std::signbit(value)) *end++ = '-';
    if (exponent < -4 || exponent >= kDigits) {
        put(digit.data(), 1);
        if (count > 1) {
            *end++ = '.';
            put(digit.data() + 1, count - 1);
        }
        *end++ = 'e';
        *end++ = exponent < 0 ? '-' : '+';
        *end++ = static_cast<char>('0' + std::abs(exponent) / 10);
        *end++ = static_cast<char>('0' + std::abs(exponent) % 10);
    } else if (exponent < 0) {
        put("0.0000", 1 - exponent);
        put(digit.data(), count);
    } else {
        const int whole = exponent + 1;
        put(digit.data(), whole);
        if (count > whole) {
            *end++ = '.';
            put(digit.data() + whole, count - whole);
        }
    }
    out.append(text.data(), end);
    return true;
}

}  // namespace

bool AppendEscaped(std::string& out, std::string_view text)
{
    bool dropped = false;
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* entity = kEntities.of[static_cast<unsigned char>(text[i])];
        if (entity && !*entity) continue;
        out.append(text, runStart, i - runStart);
        runStart = i + 1;
        if (entity) {
            out.append(entity);
        } else {
            dropped = true;
        }
    }
    out.append(text, runStart, std::string_view::npos);
    return dropped;
}

void AppendDecimal(std::string& out, long value) { AppendNumber(out, value); }

void AppendDouble(std::string& out, double value)
{
    if (!AppendOrdinaryDouble(out, value)) AppendNumber(out, value, std::chars_format::general, kDigits);
}

void AppendPointer(std::string& out, const void* pointer)
{
    constexpr int kHexDigits = static_cast<int>(sizeof(void*)) * 2;
    constexpr char kHex[] = "0123456789ABCDEF";
    const auto value = reinterpret_cast<std::uintptr_t>(pointer);
    out.append("0x");
    for (int digit = kHexDigits - 1; digit >= 0; --digit) out.push_back(kHex[(value >> (4 * digit)) & 0xF]);
}

}  // namespace zelt
