// The tools of the system tests: golden files, processes and registry keys.
#include <gtest/gtest.h>

#include "system/narrow.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/harness/process.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/system/harness/text_file.h"

namespace zelt::test {
namespace {

struct TemporaryFile {
    explicit TemporaryFile(const char* name) : path(TemporaryPath(name)) {}
    ~TemporaryFile() { DeleteFileA(path.c_str()); }
    const std::string path;
};

struct HarnessRow {
    const char* name;
    const char* expected;
    const char* actual;
    const char* difference;
};

// clang-format off
const HarnessRow kDifferences[] = {
    {"equal",        "a\r\nb\r\n", "a\r\nb\r\n", ""},
    {"a line",       "a\nb\nc\n",  "a\nx\nc\n",  "differs in line 2, column 1\n  after:    a\\n\n  expected: b\\n\n  actual:   x\\n"},
    {"first line",   "ab",         "ac",         "differs in line 1, column 2\n  expected: ab\n  actual:   ac"},
    {"line end",     "a\r\n",      "a\n",        "differs in line 1, column 2\n  expected: a\\r\\n\n  actual:   a\\n"},
    {"shorter",      "a\nb\n",     "a\n",        "differs in line 2, column 1\n  after:    a\\n\n  expected: b\\n\n  actual:   (end)"},
    {"longer",       "a\n",        "a\nb\n",     "differs in line 2, column 1\n  after:    a\\n\n  expected: (end)\n  actual:   b\\n"},
    {"a blank line", "\n\nb",      "\n\nc",      "differs in line 3, column 1\n  after:    \\n\n  expected: b\n  actual:   c"},
    {"unprintable",  "\xE9",       "\t",         "differs in line 1, column 1\n  expected: \\xE9\n  actual:   \\x09"},
};
// clang-format on

TEST(GoldenFile, ShowsTheFirstDifference)
{
    for (const HarnessRow& row : kDifferences)
        EXPECT_EQ(row.difference, FirstDifference(row.expected, row.actual)) << row.name;
}

TEST(GoldenFile, FailsWhenItIsMissingOrDiffers)
{
    const TemporaryFile file("golden.zlg");
    EXPECT_EQ(file.path + " does not exist", CompareWithGolden(file.path, "", false));
    EXPECT_FALSE(FileExists(file.path));
    WriteWholeFile(file.path, "a\r\n");
    EXPECT_EQ("", CompareWithGolden(file.path, "a\r\n", false));
    EXPECT_NE("", CompareWithGolden(file.path, "a\n", false));
    EXPECT_EQ("a\r\n", ReadWholeFile(file.path));
}

TEST(GoldenFile, IsRewrittenOnRequestAndFailsOnce)
{
    const TemporaryFile file("golden.zlg");
    EXPECT_NE(std::string::npos, CompareWithGolden(file.path, "new\r\n", true).find("rewritten"));
    EXPECT_EQ("new\r\n", ReadWholeFile(file.path));
    EXPECT_EQ("", CompareWithGolden(file.path, "new\r\n", true));
}

TEST(Process, GivesTheExitCodeAndTheOutput)
{
    const TemporaryFile output("output.txt");
    EXPECT_EQ(7u, RunProcess(L"cmd.exe /c echo hello& echo there 1>&2& exit 7", output.path, 30000).value_or(0));
    const std::string text = ReadWholeFile(output.path);
    EXPECT_NE(std::string::npos, text.find("hello")) << text;
    EXPECT_NE(std::string::npos, text.find("there")) << text;
}

TEST(Process, ReportsAProgramThatDoesNotExist)
{
    EXPECT_THROW(Process::Start(L"no-such-program.exe"), std::runtime_error);
}

// A program that runs for a while.
std::wstring WaitingProgram() { return L"ping.exe -n 30 127.0.0.1"; }

TEST(Process, EndsWithItsOwner)
{
    DWORD id = 0;
    {
        const Process process = Process::Start(WaitingProgram());
        id = process.Id();
        EXPECT_FALSE(process.Wait(200));
        EXPECT_TRUE(process.Running());
    }
    const std::optional<Process> gone = Process::Open(id);
    EXPECT_TRUE(!gone || !gone->Running());
}

TEST(Process, IsTakenOverById)
{
    const Process started = Process::Start(WaitingProgram());
    std::optional<Process> same = Process::Open(started.Id());
    ASSERT_TRUE(same);
    same->Kill();
    EXPECT_FALSE(started.Running());
    EXPECT_EQ(static_cast<DWORD>(-1), started.Wait(0).value_or(0));
}

TEST(ScratchKey, IsShownAsTextAndDeletedWithItsContents)
{
    std::wstring path;
    {
        ScratchKey scratch;
        path = scratch.Path();
        const DWORD one = 1;
        scratch.SetValue(L"Number", REG_DWORD, &one, sizeof one);
        scratch.SetValue(L"Odd", REG_MULTI_SZ, "abc", 3);
        HKEY below = nullptr;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyW(scratch.Key(), L"Below", &below));
        RegCloseKey(below);
        const std::string key = Narrow(path);
        EXPECT_EQ(key + "\n" + key + " | Number | 4 | 01000000\n" + key + " | Odd | 7 | 616263\n" + key + "\\Below\n",
                  RegistryText(HKEY_CURRENT_USER, path));
    }
    EXPECT_EQ("", RegistryText(HKEY_CURRENT_USER, path));
}

}  // namespace
}  // namespace zelt::test
