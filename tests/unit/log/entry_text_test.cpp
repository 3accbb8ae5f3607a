// Appending to an entry gives the bytes in order, whatever their lengths, and keeps them when memory grows.
#include <gtest/gtest.h>

#include <string>

#include "log/entry_text.h"

namespace zelt::test {
namespace {

std::string PieceOf(std::size_t size)
{
    std::string bytes(size, 'x');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>('!' + i % 90);
    return bytes;
}

TEST(EntryText, AppendsPiecesOfEveryLength)
{
    EntryText text(1);
    std::string expected;
    for (std::size_t size = 0; size < 600; ++size) {
        const std::string piece = PieceOf(size);
        text += piece;
        text += '|';
        text.Blanks(size % 40);
        expected += piece + '|' + std::string(size % 40, ' ');
        ASSERT_EQ(expected, text.View()) << size;
    }
    text += "a constant";
    EXPECT_EQ(expected + "a constant", text.View());
    text.CutTo(3);
    text += std::string_view();
    EXPECT_EQ(expected.substr(0, 3), text.View());
}

TEST(EntryText, AppendsNothingWhenAWriterGivesUp)
{
    EntryText text(1);
    text += "before";
    EXPECT_FALSE(text.AppendWith(10'000, [](char* to) -> char* {
        to[9'999] = 'x';
        return nullptr;
    }));
    EXPECT_EQ("before", text.View());
    EXPECT_TRUE(text.AppendWith(10'000, [](char* to) {
        *to = '!';
        return to + 1;
    }));
    EXPECT_EQ("before!", text.View());
}

}  // namespace
}  // namespace zelt::test
