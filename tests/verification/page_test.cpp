#include "tests/verification/page.h"

#include <gtest/gtest.h>

namespace zelt::verification {
namespace {

TestResult Result(State state, const std::string& output = {}) { return {state, output}; }

const std::map<std::string, TestResults> kResults = {
    {"unit32",
     {{"A.b", Result(State::Passed, "said\n")},
      {"A.c", Result(State::Failed, "line\n")},
      {"S.a", Result(State::Skipped, "f.cpp:1: Skipped\nno display\n")}}}};

Answer Of(const std::vector<Tests>& tests) { return AnswerOf({{}, {}, tests}, kResults); }

TEST(Answers, AreThoseOfTheRowsTests)
{
    EXPECT_EQ(Verdict::Passed, Of({{"unit32", "A.b"}}).verdict);
    const Answer both = Of({{"unit32", "A.b:S.a"}});
    EXPECT_EQ(Verdict::Passed, both.verdict);
    EXPECT_EQ("1 skipped: no display", both.remark);
    EXPECT_EQ("A.b\nsaid\n", both.said);
    const Answer failed = Of({{"unit32", "A.*"}});
    EXPECT_EQ(Verdict::Failed, failed.verdict);
    EXPECT_EQ("A.c", failed.remark);
    const Answer skipped = Of({{"unit32", "S.*"}});
    EXPECT_EQ(Verdict::LeftOut, skipped.verdict);
    EXPECT_EQ("no display", skipped.remark);
}

// A test that was renamed must not make a point look answered.
TEST(Answers, NeedATest)
{
    const Answer none = Of({{"unit32", "A.b"}, {"unit32", "B.*"}});
    EXPECT_EQ(Verdict::Failed, none.verdict);
    EXPECT_EQ("no test B.*", none.remark);
    EXPECT_EQ(Verdict::Failed, Of({{"other", "A.b"}}).verdict);
}

TEST(Pages, SayWhatHappened)
{
    Page page = {"1.2.3",
                 {{"System", "Windows"}},
                 {{"Units", "", kResults.at("unit32")}, {"Registration", "needs an administrator", {}}},
                 {{{"First", "A `point`", "why", "how"}, {Verdict::Passed, "", "A.b\nsaid\n"}},
                  {{"First", "Another", "why", "how"}, {Verdict::Failed, "A.c", ""}},
                  {{"Second", "Third", "why", "how"}, {Verdict::ForAPerson, "press `F1`", ""}}},
                 {}};
    EXPECT_EQ(
        "Verification of ZELT 1.2.3\n"
        "\n"
        "  System     Windows\n"
        "\n"
        "Test programs\n"
        "  FAILED     Units: 1 passed, 1 failed, 1 skipped\n"
        "               A.c\n"
        "  left out   Registration: needs an administrator\n"
        "\n"
        "First\n"
        "  passed     A point\n"
        "  FAILED     Another\n"
        "               A.c\n"
        "\n"
        "Second\n"
        "  by hand    Third\n"
        "               press F1\n"
        "\n"
        "The computer\n"
        "  0 entries and files were put back\n"
        "\n"
        "3 points: 1 passed, 1 failed, 0 left out, 1 by hand\n",
        Text(page));
    EXPECT_EQ("\n---- Units: A.c\nline\n\n---- A point\nA.b\nsaid\n", Details(page));
    EXPECT_TRUE(HasFailed(page));
    page.programs.clear();
    EXPECT_TRUE(HasFailed(page));
    page.rows[1].second.verdict = Verdict::LeftOut;
    EXPECT_FALSE(HasFailed(page));
    page.differences = {7, {}, {"registry entry is new: B"}};
    EXPECT_FALSE(HasFailed(page));
    EXPECT_NE(std::string::npos, Text(page).find("  registry entry is new: B\n"));
    page.differences = {7, {"file stays: a.zlg"}, {}};
    EXPECT_TRUE(HasFailed(page));
    EXPECT_NE(std::string::npos,
              Text(page).find("The computer\n  7 entries and files were put back\n  file stays: a.zlg\n"));
}

}  // namespace
}  // namespace zelt::verification
