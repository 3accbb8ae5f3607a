// Characters that control a terminal or reverse the reading order: shown as codes, wherever they occur in a log.
#include <gtest/gtest.h>

#include "command_runner.h"
#include "ctl/output.h"

namespace zelt::test {
namespace {

struct HiddenCase {
    const char *text, *shown, *json;
};

const HiddenCase kHidden[] = {
    {"\u0080", R"(\u{80})", R"(\u0080)"},
    {"\u009b", R"(\u{9b})", R"(\u009b)"},
    {"\u009f", R"(\u{9f})", R"(\u009f)"},
    {"\u007f", R"(\u{7f})", R"(\u007f)"},
    {"\u061c", R"(\u{61c})", R"(\u061c)"},
    {"\u200e", R"(\u{200e})", R"(\u200e)"},
    {"\u200f", R"(\u{200f})", R"(\u200f)"},
    {"\u202a", R"(\u{202a})", R"(\u202a)"},
    {"\u202b", R"(\u{202b})", R"(\u202b)"},
    {"\u202c", R"(\u{202c})", R"(\u202c)"},
    {"\u202d", R"(\u{202d})", R"(\u202d)"},
    {"\u202e", R"(\u{202e})", R"(\u202e)"},
    {"\u2066", R"(\u{2066})", R"(\u2066)"},
    {"\u2067", R"(\u{2067})", R"(\u2067)"},
    {"\u2068", R"(\u{2068})", R"(\u2068)"},
    {"\u2069", R"(\u{2069})", R"(\u2069)"},
    // Their neighbours, and letters that are written from right to left, are text.
    {"\u00a0", "\u00a0", "\u00a0"},
    {"\u061b", "\u061b", "\u061b"},
    {"\u200d", "\u200d", "\u200d"},
    {"\u2010", "\u2010", "\u2010"},
    {"\u202f", "\u202f", "\u202f"},
    {"\u2065", "\u2065", "\u2065"},
    {"\u206a", "\u206a", "\u206a"},
    {"\u05d0\u0628", "\u05d0\u0628", "\u05d0\u0628"},
    // Characters of each length in bytes, with a low and with a high first byte. Some of their other bytes would be hidden on
    // their own.
    {"\u00c0", "\u00c0", "\u00c0"},
    {"\u07c0", "\u07c0", "\u07c0"},
    {"\u0800", "\u0800", "\u0800"},
    {"\uf000", "\uf000", "\uf000"},
    {"\U00010000", "\U00010000", "\U00010000"},
    {"\U0010ffff", "\U0010ffff", "\U0010ffff"},
    {"\U0001f600", "\U0001f600", "\U0001f600"},
    {"~", "~", "~"},
};

// Puts the text everywhere in a log where foreign text may occur.
std::string LogWith(const std::string& text)
{
    return InLog("<func name=\"I" + text + "::M" + text + "\" direc=\"in\" object=\"O" + text + "\"><arg name=\"a" +
                 text + "\" direc=\"in\" type=\"t" + text + "\"><argval value=\"v" + text +
                 "\"/></arg><error value=\"Uncaught " + text + "\"/></func><warning value=\"w" + text + "\"/>\n");
}

struct FormCase {
    std::vector<std::string> words;
    int texts;  // how often the output contains one of the log's eight texts
};

TEST(HiddenCharacters, AreShownAsCodesByEachCommand)
{
    const FormCase forms[] = {
        {{"log", "show"}, 8},
        {{"log", "show", "--calls"}, 5},
        {{"log", "follow"}, 8},
        {{"log", "errors"}, 5},
        {{"log", "stats"}, 3},
        {{"log", "check"}, 4},
        {{"log", "export", "--csv"}, 14},
        {{"log", "export", "--html"}, 8},
    };
    for (const HiddenCase& hidden : kHidden) {
        const TemporaryLog log(LogWith(hidden.text));
        for (const FormCase& form : forms) {
            std::vector<std::string> words = form.words;
            words.push_back(log.Path());
            const std::string data = RunCommand(words).data;
            EXPECT_EQ(form.texts, CountOf(data, hidden.shown)) << words[1] << ' ' << words[2] << ": " << data;
            if (std::string(hidden.text) != hidden.shown) {
                EXPECT_EQ(0, CountOf(data, hidden.text)) << words[1] << ' ' << words[2] << ": " << data;
            }
        }
    }
}

TEST(HiddenCharacters, AreCodesOfJson)
{
    for (const HiddenCase& hidden : kHidden) {
        const TemporaryLog log(LogWith(hidden.text));
        EXPECT_EQ(8, CountOf(RunCommand({"log", "export", "--json", log.Path()}).data, hidden.json)) << hidden.json;
        EXPECT_EQ(5, CountOf(RunCommand({"log", "errors", "--json", log.Path()}).data, hidden.json)) << hidden.json;
    }
}

TEST(HiddenCharacters, AreShownAsCodesWhenLogsDiffer)
{
    const TemporaryLog a(LogWith("\u202ea")), b(LogWith("\u202eb"));
    const std::string data = RunCommand({"log", "diff", a.Path(), b.Path()}).data;
    EXPECT_EQ(0, CountOf(data, "\u202e")) << data;
    EXPECT_LT(0, CountOf(data, R"(\u{202e}a)")) << data;
    EXPECT_LT(0, CountOf(data, R"(\u{202e}b)")) << data;
}

TEST(HiddenCharacters, AreShownAsCodesInMessages)
{
    const std::string missing = RunCommand({"log", "show", "a\x1b[2J\u009b\r\u202eb"}).messages;
    EXPECT_TRUE(missing.starts_with("zeltctl: a\\u{1b}[2J\\u{9b}\\u{d}\\u{202e}b: ")) << missing;
    const std::string unknown = RunCommand({"log", "\u202eshow"}).messages;
    EXPECT_TRUE(unknown.starts_with("zeltctl: there is no command \"log \\u{202e}show\"")) << unknown;
}

TEST(HiddenCharacters, LeaveTheEndsOfLinesAndTabs)
{
    ctl::Output out;
    out << "a\tb\r\nc\rd\n"
        << std::string_view("\0", 1) << "\xe2\x80"
        << "\xc2";
    EXPECT_EQ("a\tb\r\nc\\u{d}d\n\\u{0}\xe2\\x{80}\xc2", out.Text());
}

// Texts are examined several bytes at a time, so the place and the length could make a difference.
TEST(HiddenCharacters, AreShownAtEachPlaceOfATextOfAnyLength)
{
    const struct {
        std::string text, shown;
    } kCases[] = {{"\r\n", "\r\n"},     {"\n", "\n"},        {"\t", "\t"},        {"\r", "\\u{d}"},
                  {"\x1f", "\\u{1f}"},  {"\x7f", "\\u{7f}"}, {"\x80", "\\x{80}"}, {"\u202e", "\\u{202e}"},
                  {"\u00e9", "\u00e9"}, {" ", " "},          {"~", "~"}};
    for (std::size_t length = 0; length < 100; ++length) {
        for (std::size_t before = 0; before <= length; ++before) {
            for (const auto& one : kCases) {
                const std::string start(before, 'a'), rest(length - before, 'z');
                ctl::Output out;
                out << start + one.text + rest;
                ASSERT_EQ(start + one.shown + rest, out.Text());
            }
        }
    }
}

}  // namespace
}  // namespace zelt::test
