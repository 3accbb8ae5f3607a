#include "log/log_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace zelt::test {
namespace {

// --- A double has the text that "%g" prints, digit for digit, whether the fast or the exact conversion makes it.

std::string Written(double value)
{
    std::string text;
    AppendDouble(text, value);
    return text;
}

std::string Expected(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

TEST(DoubleText, IsThatOfTheStandardLibraryAtTheEdges)
{
    constexpr double kEdges[] = {
        0.0,      -0.0,     1,        -1,       0.1,    0.5,        2.5,          9.999995,       9.99999, 99999.5,
        999999,   999999.4, 999999.5, 1000000,  1e-4,   9.99999e-5, 9.9999951e-5, 0.000123456789, 1.5e-5,  123456.5,
        123457.5, 1234565,  1e5,      1e21,     1e22,   1e23,       1e27,         1e28,           1e-17,   1e-18,
        1e-300,   1e300,    5e-324,   2.2e-308, 101325, 8.31446,    353.2,        0.333333333333, 1.0 / 3, 2.0 / 3e7};
    for (const double edge : kEdges) {
        for (const double value : {edge, -edge, std::nextafter(edge, 1e308), std::nextafter(edge, -1e308)}) {
            EXPECT_EQ(Expected(value), Written(value));
        }
    }
    EXPECT_EQ("inf", Written(std::numeric_limits<double>::infinity()));
    EXPECT_EQ("-inf", Written(-std::numeric_limits<double>::infinity()));
    EXPECT_EQ(Expected(std::numeric_limits<double>::max()), Written(std::numeric_limits<double>::max()));
}

// Every power of ten, including those outside the table of scale factors. An access outside that table would end the
// program, by an assertion of the standard library.
TEST(DoubleText, IsThatOfTheStandardLibraryAroundEachPowerOfTen)
{
    for (int power = -323; power <= 308; ++power) {
        const double exact = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
        for (const double factor : {1.0, 1.5, 2.5, 9.99999, 9.999996}) {
            const double value = exact * factor;
            if (!std::isfinite(value)) continue;
            for (const double one : {value, std::nextafter(value, 0), std::nextafter(value, HUGE_VAL), -value}) {
                if (!std::isfinite(one)) continue;
                ASSERT_EQ(Expected(one), Written(one));
            }
        }
    }
}

TEST(DoubleText, IsThatOfTheStandardLibraryForValuesOfAllSizes)
{
    std::mt19937_64 random(20);  // the same values in each run
    const auto expectSame = [](double value) { ASSERT_EQ(Expected(value), Written(value)); };
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t bits = random();
        double any;
        std::memcpy(&any, &bits, sizeof any);
        if (std::isfinite(any)) expectSame(any);
        const double usual = static_cast<double>(random() >> 11) * std::pow(10.0, static_cast<int>(random() % 60) - 40);
        expectSame(usual);
        // Ties and nearby values, where a rounded power of ten would give wrong digits.
        const double tie =
            (static_cast<double>(random() % 1'000'000) + 0.5) * std::pow(10.0, static_cast<int>(random() % 40) - 20);
        expectSame(tie);
        expectSame(std::nextafter(tie, 0));
        expectSame(std::nextafter(tie, 1e308));
    }
}

// --- Text is copied several characters at a time while none of them needs an entity or is dropped.

TEST(EscapedText, HasEachEntityAndLosesEachCharacterWhereverItIs)
{
    struct Special {
        char character;
        std::string shown;
        bool isDropped;
    };
    const Special specials[] = {{'&', "&amp;", false},   {'<', "&lt;", false},    {'>', "&gt;", false},
                                {'"', "&quot;", false},  {'\'', "&apos;", false}, {'\x1F', "", true},
                                {'\x80', "", true},      {'\xFF', "", true},      {' ', " ", false},
                                {'\x7F', "\x7F", false}, {'%', "%", false},       {';', ";", false}};
    for (std::size_t size = 0; size < 70; ++size) {
        std::string text(size, 'x');
        EntryText whole(1);
        EXPECT_FALSE(AppendEscaped(whole, text));
        EXPECT_EQ(text, whole.View());
        for (const Special& special : specials) {
            for (std::size_t at = 0; at < size; ++at) {
                text.assign(size, 'x');
                text[at] = special.character;
                EntryText out(1);
                ASSERT_EQ(special.isDropped, AppendEscaped(out, text)) << size << ' ' << at;
                text.replace(at, 1, special.shown);
                ASSERT_EQ(text, out.View());
            }
        }
    }
}

}  // namespace
}  // namespace zelt::test
