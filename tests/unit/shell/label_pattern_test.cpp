// The search in one label, compared with the standard library's search.
#include "shell/log_viewer/label_pattern.h"

#include <gtest/gtest.h>

#include <random>

namespace zelt::test {
namespace {

TEST(LabelPattern, MindsCaseUnlessTold)
{
    EXPECT_TRUE(LabelPattern("Query", false).IsIn("o: QueryInterface"));
    EXPECT_FALSE(LabelPattern("query", false).IsIn("o: QueryInterface"));
    EXPECT_TRUE(LabelPattern("qUERYiNTERFACE", true).IsIn("o: QueryInterface"));
    EXPECT_FALSE(LabelPattern("Query", true).Is("QueryInterface"));
    EXPECT_TRUE(LabelPattern("QUERY", true).Is("query"));
    EXPECT_FALSE(LabelPattern("QUERY", false).Is("query"));
    // The whole alphabet, and nothing else.
    EXPECT_TRUE(LabelPattern("abcdefghijklmnopqrstuvwxyz", true).Is("ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    EXPECT_FALSE(LabelPattern("@", true).Is("`"));
    EXPECT_FALSE(LabelPattern("a", true).Is("B"));
    // Only letters of ASCII have another case.
    EXPECT_FALSE(LabelPattern("\xC3\x84", true).IsIn("\xC3\xA4"));
    EXPECT_FALSE(LabelPattern("[", true).IsIn("{"));
    EXPECT_FALSE(LabelPattern("a", false).IsIn(""));
}

TEST(LabelPattern, FindsWhatTheLibraryFinds)
{
    std::mt19937 random(7);
    const auto text = [&](std::size_t longest) {
        std::string result(random() % (longest + 1), ' ');
        for (char& character : result) character = "abAB"[random() % 4];
        return result;
    };
    const auto lower = [](std::string result) {
        for (char& character : result) character = static_cast<char>(character | 0x20);
        return result;
    };
    int found = 0;
    for (int i = 0; i < 20'000; ++i) {
        const std::string label = text(30);
        const std::string wanted = text(5);
        SCOPED_TRACE(wanted + " in " + label);
        const bool expected = label.find(wanted) != std::string::npos;
        ASSERT_EQ(expected, LabelPattern(wanted, false).IsIn(label));
        ASSERT_EQ(lower(label).find(lower(wanted)) != std::string::npos, LabelPattern(wanted, true).IsIn(label));
        ASSERT_EQ(label == wanted, LabelPattern(wanted, false).Is(label));
        found += expected;
    }
    EXPECT_GT(found, 1000);
    EXPECT_LT(found, 19'000);
}

}  // namespace
}  // namespace zelt::test
