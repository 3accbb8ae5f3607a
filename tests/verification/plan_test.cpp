#include "tests/verification/plan.h"

#include <gtest/gtest.h>

#include "tests/system/harness/text_file.h"
#include "tests/trees.h"

namespace zelt::verification {
namespace {

constexpr char kPage[] =
    "# Page\r\n\n## First\n\n| what | why it is open | how to try |\n|---|---|---|\n"
    "| A `point` | a reason | try it |\n| Another | another reason | look |\n\n## Second\n\n"
    "| what | why it is open | how to try |\n|---|---|---|\n| Third | why | how |\n";
const std::string kPrograms = "# a remark\n\nprogram | unit32 | build/unit_tests.exe | Units | - | *-Long*\n";
const std::string kRows =
    "row | Third | windows admin | unit32 A.*:B.c\nrow | A `point` | - | unit32 C.* ; unit32 D.*\nrow | Another | "
    "windows | -\n";

std::string Failure(const std::string& plan)
{
    try {
        ReadPlan(plan, kPage);
    } catch (const PlanError& error) {
        return error.what();
    }
    return {};
}

TEST(OpenPoints, AreReadFromTheirTables)
{
    const std::vector<OpenPoint> points = ReadOpenPoints(kPage);
    ASSERT_EQ(3u, points.size());
    EXPECT_EQ("First", points[0].section);
    EXPECT_EQ("A `point`", points[0].what);
    EXPECT_EQ("a reason", points[0].why);
    EXPECT_EQ("try it", points[0].how);
    EXPECT_EQ("Second", points[2].section);
    EXPECT_EQ("how", points[2].how);
}

TEST(Plans, HaveTheRowsInTheOrderOfThePage)
{
    const Plan plan = ReadPlan(kPrograms + kRows, kPage);
    ASSERT_EQ(1u, plan.programs.size());
    EXPECT_EQ("build/unit_tests.exe", plan.programs[0].path);
    EXPECT_EQ(Needs(), plan.programs[0].needs);
    EXPECT_EQ("*-Long*", plan.programs[0].filter);
    ASSERT_EQ(3u, plan.rows.size());
    EXPECT_EQ("A `point`", plan.rows[0].point.what);
    ASSERT_EQ(2u, plan.rows[0].tests.size());
    EXPECT_EQ("D.*", plan.rows[0].tests[1].filter);
    EXPECT_TRUE(plan.rows[1].tests.empty());
    EXPECT_EQ((Needs{"admin", "windows"}), plan.rows[2].needs);
}

TEST(Plans, FitTheirPageRowByRow)
{
    EXPECT_EQ("the plan has no row for: Another",
              Failure(kPrograms + "row | A `point` | - | -\nrow | Third | - | -\n"));
    EXPECT_EQ("the page has no row for: Fourth", Failure(kPrograms + kRows + "row | Fourth | - | -\n"));
    EXPECT_EQ("the same row again: row | Third | - | -", Failure(kPrograms + kRows + "row | Third | - | -\n"));
}

TEST(Plans, AreRefusedWithTheLine)
{
    EXPECT_EQ("unknown need \"wine\": row | Third | wine | -", Failure("row | Third | wine | -\n"));
    EXPECT_EQ("unknown program: row | Third | - | unit32 A.*", Failure("row | Third | - | unit32 A.*\n"));
    EXPECT_EQ("a program without a filter: row | Third | - | unit32",
              Failure(kPrograms + "row | Third | - | unit32\n"));
    EXPECT_EQ("neither a program nor a row: row | Third", Failure("row | Third\n"));
}

// The plan that is shipped, with the page that is shipped.
TEST(Plans, OfTheProjectFitsItsPage)
{
    const Plan plan = ReadPlan(test::ReadWholeFile(test::SourceFile("tests/verification/plan.txt")),
                               test::ReadWholeFile(test::SourceFile("docs/unverified.md")));
    EXPECT_FALSE(plan.rows.empty());
}

TEST(Filters, TakeTestsAsGtestDoes)
{
    EXPECT_TRUE(Takes("*", "A.b"));
    EXPECT_TRUE(Takes("A.*", "A.b"));
    EXPECT_FALSE(Takes("A.*", "All/A.b/3"));
    EXPECT_TRUE(Takes("*A.?/*", "All/A.b/3"));
    EXPECT_TRUE(Takes("X.*:A.b", "A.b"));
    EXPECT_FALSE(Takes("A.*-A.b", "A.b"));
    EXPECT_TRUE(Takes("-A.b", "A.c"));
    EXPECT_FALSE(Takes("*-X.*:A.b", "A.b"));
}

}  // namespace
}  // namespace zelt::verification
