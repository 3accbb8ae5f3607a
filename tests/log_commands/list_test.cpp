// log list: the logs of a folder, the newest first.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "command_runner.h"
#include "standard_input.h"
#include "temporary_folder.h"

namespace zelt::test {
namespace {

std::string Log(const std::string& start, const std::string& package, const std::string& calls = {})
{
    return InLog("<info value=\"ZELT Logging started at " + start + "\"/>\r\n<info value=\"Creating " + package +
                 "\"/>\r\n" + calls);
}

const std::string kCall = "<func name=\"A::M\" direc=\"in\" object=\"P\">\r\n</func>\r\n";
const std::string kFailing =
    "<func name=\"A::M\" direc=\"in\" object=\"P\">\r\n<error value=\"E_FAIL: no\"/>\r\n<error value=\"E_FAIL: "
    "no\"/>\r\n</func>\r\n";

TEST(LogList, ShowsTheNewestFirst)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", Log("November 21, 2026, 08:48", "Aromatics", kCall + kFailing)),
                      b = folder.Write("b.zlg", Log("November 21, 2026, 17:05", "Sch\u00fctt")),
                      c = folder.Write("c.zlg", Log("March 02, 2027, 00:00", "Long name of a package", kCall)),
                      d = folder.Write("d.zlg", Log("November 09, 2026, 23:59", "Aromatics",
                                                    std::string(3000, '\n') + kFailing + kFailing));
    const std::string cut = ReadBytes(b);
    folder.Write("b.zlg", cut.substr(0, cut.find("</zelt")));
    const Outcome outcome = RunCommand({"log", "list", folder.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("", outcome.messages);
    EXPECT_EQ(
        "start             package                  size  calls  failures  state     log\n"
        "2027-03-02 00:00  Long name of a package  242 B      1         0  complete  " +
            c +
            "\n"
            "2026-11-21 17:05  Sch\u00fctt                  159 B      0         0  cut off   " +
            b +
            "\n"
            "2026-11-21 08:48  Aromatics               341 B      2         1  complete  " +
            a +
            "\n"
            "2026-11-09 23:59  Aromatics                4 KB      2         2  complete  " +
            d + "\n",
        outcome.data);
}

TEST(LogList, TellsLogsOfOneMinuteApartByTheirLastChange)
{
    const TemporaryFolder folder;
    const auto now = std::filesystem::file_time_type::clock::now();
    const char* const names[] = {"b.zlg", "c.zlg", "a.zlg"};  // the oldest first
    for (int i = 0; i < 3; ++i) {
        const std::string log = folder.Write(names[i], Log("November 21, 2026, 08:48", "Aromatics"));
        std::filesystem::last_write_time(log, now - std::chrono::minutes(3 - i));
    }
    const std::string listed = RunCommand({"log", "list", folder.Path()}).data;
    EXPECT_LT(listed.find("a.zlg"), listed.find("c.zlg")) << listed;
    EXPECT_LT(listed.find("c.zlg"), listed.find("b.zlg")) << listed;
}

TEST(LogList, IsForScriptsToo)
{
    const TemporaryFolder folder;
    folder.Write("a.zlg", Log("November 21, 2026, 08:48", "A", kFailing));
    const StandardInput input(folder.Of("a.zlg"));
    const Outcome outcome = RunCommand({"log", "list", "--json", "-"});
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ(
        "[\n{\"log\":\"standard input\",\"package\":\"A\",\"start\":\"2026-11-21 08:48\",\"calls\":1,\"failures\":1,"
        "\"complete\":true}]\n",
        outcome.data);
}

TEST(LogList, GoesByTheFilesWhereALogIsInAnotherLanguage)
{
    const TemporaryFolder folder;
    const std::string old = folder.Write("b.zlg", Log("M\u00e4rz 02, 2027, 00:00", "A")),
                      recent = folder.Write("a.zlg", Log("March 02, 2026, 00:00", "B"));
    const auto now = std::filesystem::last_write_time(recent);
    std::filesystem::last_write_time(old, now - std::chrono::hours(1));
    const auto lines = LinesOf(RunCommand({"log", "list", folder.Path()}).data);
    ASSERT_EQ(3u, lines.size());
    EXPECT_TRUE(lines[1].starts_with("2026-03-02 00:00      B  ")) << lines[1];
    EXPECT_TRUE(lines[2].starts_with("M\u00e4rz 02, 2027, 00:00  A  ")) << lines[2];
    std::filesystem::last_write_time(old, now + std::chrono::hours(1));
    EXPECT_TRUE(LinesOf(RunCommand({"log", "list", folder.Path()}).data)[1].starts_with("M\u00e4rz"));
}

TEST(LogList, LeavesOutWhatIsNoLog)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", Log("March 02, 2026, 00:00", "A")), b = folder.Write("b.zlg", "text");
    const Outcome outcome = RunCommand({"log", "list", folder.Path()});
    EXPECT_EQ(3, outcome.code);
    EXPECT_EQ(2u, LinesOf(outcome.data).size()) << outcome.data;
    EXPECT_EQ("zeltctl: " + b + ": this is not a log of ZELT, or it is empty\n", outcome.messages);
    const TemporaryFolder empty;
    const Outcome none = RunCommand({"log", "list", empty.Path()});
    EXPECT_EQ(3, none.code);
    EXPECT_EQ("", none.data);
    EXPECT_EQ("zeltctl: " + empty.Path() + ": this is a folder, not a log\n", none.messages);
    EXPECT_EQ("[]\n", RunCommand({"log", "list", "--json", empty.Path()}).data);
    // A log without the lines that ZELT begins each log with.
    const TemporaryFolder bare;
    bare.Write("a.zlg", InLog(""));
    EXPECT_EQ(
        "start  package  size  calls  failures  state     log\n"
        "                79 B      0         0  complete  " +
            bare.Of("a.zlg") + "\n",
        RunCommand({"log", "list", bare.Path()}).data);
}

}  // namespace
}  // namespace zelt::test
