// Which part of a text is looked for in a log's bytes, and where it is found.
#include "shell/log_viewer/fragment_search.h"

#include <gtest/gtest.h>

#include "log_reader/byte_search.h"

namespace zelt::test {
namespace {

TEST(FragmentSearch, LooksForTheLongestPartThatTheFileHas)
{
    const struct {
        const char *text, *fragment;
    } rows[] = {
        {"plain", "plain"},
        {"two words", "two words"},
        {"ends with a blank ", "ends with a blank"},
        {" x", "x"},
        {"e: x", "x"},
        {"e: ", ""},
        {"type: ", ""},
        {"type: type: x", "type: x"},
        {"b (ty", "b"},
        {"a b (c d) e", "a b"},
        {"GetProp (Feed)", "GetProp"},
        {"a (type: long)", "long"},
        {"(type: ", ""},
        {"ype:", ""},
        {"mytype:", "mytype:"},
        {"type:s", "type:s"},
        {"a&long<b", "long"},
        {"it's \"quoted\"", "quoted"},
        {"& ", ""},
        {"", ""},
    };
    for (const auto& row : rows) EXPECT_EQ(row.fragment, FragmentSearch(row.text, false).Fragment()) << row.text;
    EXPECT_EQ("getprop", FragmentSearch("GetProp (F)", true).Fragment());
    EXPECT_EQ("", FragmentSearch("TYPE:", true).Fragment());
}

bool IsIn(const std::string& text, const std::string& bytes, bool ignoreCase = false)
{
    // The copy of the text after the bytes must not be found.
    const std::string all = bytes + text + std::string(kSlack, '\0');
    return FragmentSearch(text, ignoreCase).MayBeIn(std::string_view(all).substr(0, bytes.size()));
}

TEST(FragmentSearch, FindsItsPartAtEachPlace)
{
    for (std::size_t length : {1u, 2u, 3u, 15u, 16u, 17u, 40u}) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('A' + i % 26);
        for (std::size_t size = 0; size < 70; ++size) {
            EXPECT_FALSE(IsIn(text, std::string(size, '.'))) << length << ' ' << size;
            for (std::size_t at = 0; at + length <= size; ++at) {
                std::string bytes(size, '.');
                bytes.replace(at, length, text);
                ASSERT_TRUE(IsIn(text, bytes)) << length << ' ' << size << ' ' << at;
            }
        }
    }
}

TEST(FragmentSearch, IgnoresCaseOnDemand)
{
    EXPECT_FALSE(IsIn("queryinterface", "o: QueryInterface for"));
    EXPECT_TRUE(IsIn("queryinterface", "o: QueryInterface for", true));
    EXPECT_TRUE(IsIn("QUERYINTERFACE", "o: QueryInterface for", true));
    // Pairs of characters that are not letters but, like the two cases of a letter, differ in one bit only.
    EXPECT_FALSE(IsIn("[a]", "{A}", true));
    EXPECT_FALSE(IsIn("a[", "a{", true));
    EXPECT_FALSE(IsIn("@z", "`Z", true));
}

TEST(FragmentSearch, FindsNothingThatTheseLogsCannotHave)
{
    EXPECT_FALSE(IsIn("caf\xC3\xA9", "caf\xC3\xA9"));
    EXPECT_FALSE(IsIn("a\tb", "a\tb"));
    EXPECT_TRUE(IsIn("& ", "nothing is known of such a text"));
}

}  // namespace
}  // namespace zelt::test
