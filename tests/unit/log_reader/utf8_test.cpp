// Texts that claim to be UTF-8: valid characters stay as they are, and all other bytes are replaced.
#include "log_reader/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace zelt::test {
namespace {

// R stands for the replacement character, three bytes.
std::string ExpectedUtf8(std::string text)
{
    for (std::size_t at = 0; (at = text.find('R', at)) != std::string::npos; at += 3)
        text.replace(at, 1, "\xEF\xBF\xBD");
    return text;
}

TEST(Utf8, IsKeptOrReplacedByteForByte)
{
    static const struct {
        const char *text, *appended;
    } kCases[] = {
        {"", ""},
        {"plain", "plain"},
        {"\x7F", "\x7F"},
        {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {"\xC2\x80\xDF\xBF", "\xC2\x80\xDF\xBF"},
        {"\xE0\xA0\x80\xEF\xBF\xBF", "\xE0\xA0\x80\xEF\xBF\xBF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        // Texts at least as long as a machine word, with bytes outside ASCII at the beginning, inside or at the end.
        {"\xC3\xA9galement, et encore", "\xC3\xA9galement, et encore"},
        {"\xFFsixteen letters", "Rsixteen letters"},
        {"seven b\xFF", "seven bR"},
        {"sixteen\xFF letters", "sixteenR letters"},
        {"sixteen \xFFletters", "sixteen Rletters"},
        {"sixteen letters\xFF", "sixteen lettersR"},
        {"seventeen letters\xFF", "seventeen lettersR"},
        // Overlong forms, surrogates, values beyond the last character.
        {"\xC0\x80\xC1\xBF", "RRRR"},
        {"\xE0\x9F\xBF", "RRR"},
        {"\xED\xA0\x80", "RRR"},
        {"\xF0\x8F\xBF\xBF", "RRRR"},
        {"\xF4\x90\x80\x80", "RRRR"},
        {"\xF5\xFF", "RR"},
        // Truncated sequences, and sequences without a beginning.
        {"a\xC3", "aR"},
        {"a\xE2\x82", "aRR"},
        {"\xE2\x82z", "RRz"},
        {"\xF0\x9F\x98", "RRR"},
        {"\x80z\xBF", "RzR"},
        {"\xC3\x28", "R("},
        {"\xC3\xC3\xA9", "R\xC3\xA9"},
    };
    for (const auto& tested : kCases) {
        std::string out = "before ";
        AppendUtf8(out, tested.text);
        EXPECT_EQ("before " + ExpectedUtf8(tested.appended), out) << tested.text;
    }
}

TEST(Utf8, OfMegabytesIsReplacedInOneGo)
{
    std::string out;
    AppendUtf8(out, std::string(10'000'000, '\xFF'));
    EXPECT_EQ(30'000'000u, out.size());
}

}  // namespace
}  // namespace zelt::test
