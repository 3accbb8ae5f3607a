#include "tests/verification/test_program.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

namespace zelt::verification {
namespace {

TEST(TestOutput, IsReadTestByTest)
{
    const Reading reading = ReadOutput(
        "Note: Google Test filter = *\r\n[==========] Running 4 tests from 2 test suites.\r\n[----------] 3 tests from "
        "A\n"
        "[ RUN      ] A.b\n[       OK ] A.b (3 ms)\n"
        "[ RUN      ] A.c\nfile.cpp:7: Failure\n[  FAILED  ] A.c (0 ms)\n"
        "[ RUN      ] All/P.d/0\nmore\n[  FAILED  ] All/P.d/0, where GetParam() = 3 (1 ms)\n"
        "[ RUN      ] A.e\nfile.cpp:9: Skipped\nno display\n[  SKIPPED ] A.e (0 ms)\n"
        "[  PASSED  ] 1 test.\n[  SKIPPED ] 1 test, listed below:\n[  SKIPPED ] A.e\n[  FAILED  ] 2 tests, listed "
        "below:\n"
        "[  FAILED  ] A.c\n");
    EXPECT_EQ(4u, reading.announced);
    EXPECT_EQ("", reading.unfinished);
    ASSERT_EQ(4u, reading.results.size());
    EXPECT_EQ(State::Passed, reading.results.at("A.b").state);
    EXPECT_EQ(State::Failed, reading.results.at("A.c").state);
    EXPECT_EQ("file.cpp:7: Failure\n", reading.results.at("A.c").output);
    EXPECT_EQ(State::Failed, reading.results.at("All/P.d/0").state);
    EXPECT_EQ(State::Skipped, reading.results.at("A.e").state);
    EXPECT_EQ("file.cpp:9: Skipped\nno display\n", reading.results.at("A.e").output);
}

TEST(TestOutput, MayBeginItsLastLineWithTextOfTheTest)
{
    const Reading reading = ReadOutput("[ RUN      ] A.b\nprogress 7 %[       OK ] A.b (3 ms)\n[ RUN      ] A.c\n");
    EXPECT_EQ("A.c", reading.unfinished);
    EXPECT_EQ(State::Passed, reading.results.at("A.b").state);
}

TEST(TestOutput, ThatEndsInATestFailsIt)
{
    const Reading reading =
        ReadOutput("[ RUN      ] A.b\n[       OK ] A.b (3 ms)\n[ RUN      ] A.bc\n[       OK ] A.b (3 ms)\nlast");
    EXPECT_EQ("A.bc", reading.unfinished);
    ASSERT_EQ(2u, reading.results.size());
    EXPECT_EQ(State::Failed, reading.results.at("A.bc").state);
    EXPECT_EQ("[       OK ] A.b (3 ms)\nlast\n", reading.results.at("A.bc").output);
}

// TestPrograms.RunOnAfterATestThatEndedThem runs this program again, with this variable, to run the tests of the suite Part.
// In an ordinary run, these do nothing.
constexpr wchar_t kPart[] = L"ZELT_VERIFY_TESTS_PART";
bool IsPart() { return GetEnvironmentVariableW(kPart, nullptr, 0) != 0; }

TEST(Part, A) {}
TEST(Part, B)
{
    if (IsPart()) ExitProcess(7);
}
TEST(Part, C) { EXPECT_FALSE(IsPart()); }
TEST(Part, D)
{
    if (IsPart()) GTEST_SKIP() << "no reason";
}

TEST(TestPrograms, RunOnAfterATestThatEndedThem)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const auto scratch = std::filesystem::temp_directory_path() / L"ZELT verify tests";
    std::filesystem::create_directories(scratch);
    SetEnvironmentVariableW(kPart, L"1");
    std::size_t last = 0;
    const TestResults results =
        RunTests({program, "Part.*-Part.None", scratch.wstring()}, [&](std::size_t ended, std::size_t all) {
            EXPECT_LE(ended, all);
            last = all;
        });
    SetEnvironmentVariableW(kPart, nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(scratch, ignored);
    ASSERT_EQ(4u, results.size());
    EXPECT_EQ(State::Passed, results.at("Part.A").state);
    EXPECT_EQ(State::Failed, results.at("Part.B").state);
    EXPECT_EQ("The program ended in this test, with code 0x00000007.\n", results.at("Part.B").output);
    EXPECT_EQ(State::Failed, results.at("Part.C").state);
    EXPECT_EQ(State::Skipped, results.at("Part.D").state);
}

}  // namespace
}  // namespace zelt::verification
