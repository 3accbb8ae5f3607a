// Golden files that are stored as differences.
#include "tests/system/harness/golden_text.h"

#include <gtest/gtest.h>

#include "tests/trees.h"

namespace zelt::test {
namespace {

TEST(GoldenText, IsTheBaseChangedAsTheDifferenceSays)
{
    const struct {
        const char* base;
        const char* difference;
        const char* text;
    } kRows[] = {
        {"a\nb\nc\n", "", "a\nb\nc\n"},
        {"a\nb\nc\n", "1a2,3\n> x\n> y\n", "a\nx\ny\nb\nc\n"},
        {"a\nb\nc\n", "0a1\n> x\n", "x\na\nb\nc\n"},
        {"a\nb\nc\n", "2,3d1\n< b\n< c\n", "a\n"},
        {"a\nb\nc\n", "1c1\n< a\n---\n> x\n3a4\n> d\n", "x\nb\nc\nd\n"},
        {"a\r\nb\r\n", "2c2\n< b\r\n---\n> x\r\n", "a\r\nx\r\n"},
    };
    for (const auto& row : kRows) EXPECT_EQ(row.text, Changed(row.base, row.difference)) << row.difference;
}

TEST(GoldenText, IsNothingWhereTheDifferenceDoesNotFit)
{
    for (const char* difference :
         {"2d1\n< x\n", "9d8\n< c\n", "9a10\n> x\n", "nonsense\n", "2,1d1\n", "3d2\n< c\n1d0\n< a\n"}) {
        EXPECT_FALSE(Changed("a\nb\nc\n", difference)) << difference;
    }
    EXPECT_FALSE(GoldenText(SourceFile("tests/golden"), "there is no such file"));
}

TEST(GoldenText, MakesTheLogOfAHeldParameter)
{
    const auto base = GoldenText(SourceFile("tests/golden"), "sample_simulator_11.zlg");
    const auto held = GoldenText(SourceFile("tests/golden"), "sample_simulator_11_held.zlg");
    ASSERT_TRUE(base && held);
    EXPECT_NE(*base, *held);
    EXPECT_NE(std::string::npos, held->find("Parameter specification) is not released at final release"));
}

}  // namespace
}  // namespace zelt::test
