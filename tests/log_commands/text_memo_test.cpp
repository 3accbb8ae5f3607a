// Memos for texts that recur: they return what would be made from the text if it were not remembered. Also tests a stack
// that keeps the memory of what leaves it.
#include <gtest/gtest.h>

#include <string>

#include "ctl/log/reused_stack.h"
#include "ctl/log/text/text_memo.h"

namespace zelt::test {
namespace {

// More texts than the memo can hold, some of them too long for it to keep.
TEST(TextMemo, GivesWhatIsMadeOfEachText)
{
    ctl::TextMemo memo;
    for (int round = 0; round < 3; ++round) {
        for (std::size_t length = 0; length < 300; ++length) {
            for (const char last : {'x', 'y'}) {
                const std::string text = std::string(length, 'a') + last;
                EXPECT_EQ("of " + text,
                          memo.Of(text, [](std::string_view given) { return "of " + std::string(given); }));
            }
        }
    }
}

TEST(TextMemo, MakesWhatRecursOnce)
{
    ctl::Memo<int> memo;
    int made = 0;
    const auto make = [&] { return ++made; };
    EXPECT_EQ(1, memo.Of("values", "VT_R8", make));
    EXPECT_EQ(1, memo.Of("values", "VT_R8", make));
    // The same letters, divided differently, are another key.
    EXPECT_EQ(2, memo.Of("valuesV", "T_R8", make));
    EXPECT_EQ(3, memo.Of("", "valuesVT_R8", make));
    const std::string longText(300, 'a');
    EXPECT_EQ(4, memo.Of(longText, "", make));
    EXPECT_EQ(5, memo.Of(longText, "", make));
}

TEST(ReusedStack, KeepsTheMemoryOfWhatLeavesIt)
{
    ctl::ReusedStack<std::string> stack;
    stack.Push() = std::string(100, 'a');
    stack.Push() = std::string(1, 'b');
    EXPECT_EQ("b", stack.Top());
    EXPECT_EQ(2u, stack.Size());
    stack.ShrinkTo(5);
    EXPECT_EQ(2u, stack.Size());
    stack.Pop();
    const char* const memory = stack.Top().data();
    stack.Pop();
    EXPECT_TRUE(stack.IsEmpty());
    EXPECT_EQ(memory, stack.Push().data());
    EXPECT_EQ(1, stack.end() - stack.begin());
}

}  // namespace
}  // namespace zelt::test
