// log follow; and the exports as CSV, JSON and HTML.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "command_runner.h"
#include "ctl/log/follow.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

TEST(LogFollow, ShowsAWholeLogLikeShow)
{
    for (const std::string& log : kGoldenLogs) {
        const Outcome followed = RunCommand({"log", "follow", "--queries", GoldenLog(log)});
        EXPECT_EQ(0, followed.code);
        EXPECT_EQ(RunCommand({"log", "show", GoldenLog(log)}).data, followed.data);
    }
}

TEST(LogFollow, ShowsACallThatHangs)
{
    const std::string begun =
        "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n<info value=\"a\"/>\r\n"
        "<func name=\"A::Outer\" direc=\"in\" object=\"P\">\r\n <func name=\"A::Hangs\" direc=\"out\" "
        "object=\"F\">\r\n";
    const TemporaryLog log(begun);
    const Outcome outcome = RunCommand({"log", "follow", "--idle", "0.2", log.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("       3  info: a\n       4  > A::Outer  P\n       5    < A::Hangs  F\n", outcome.data);
    EXPECT_NE(std::string::npos, outcome.messages.find("no end yet"));
}

TEST(LogFollow, ShowsWhatIsWrittenMeanwhile)
{
    const std::string whole = ReadBytes(SourceFile("tests/log_commands/conversation.zlg"));
    const auto lines = LinesOf(whole);
    const TemporaryLog log(lines[0] + "\n" + lines[1] + "\n" + lines[2] + "\n");
    std::thread writer([&] {
        for (std::size_t i = 3; i < lines.size(); ++i) {
            if (i % 20 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(150));
            // Like ZELT, this writes whole lines, so half a line never arrives.
            log.Append(lines[i] + "\n");
        }
    });
    const Outcome outcome = RunCommand({"log", "follow", "--queries", "--idle", "20", log.Path()});
    writer.join();
    EXPECT_EQ(RunCommand({"log", "show", log.Path()}).data, outcome.data);
    EXPECT_EQ("", outcome.messages);
}

TEST(LogFollow, ShowsOnlyTheNewWhenAsked)
{
    static const TemporaryLog* growing = nullptr;
    const TemporaryLog log(
        "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n<info value=\"old\"/>\r\n");
    growing = &log;
    // The log grows when all of it has been read.
    ctl::SetFollowPause([] {
        growing->Append("<info value=\"new\"/>\r\n</zeltlogdocument>");
        ctl::SetFollowPause(nullptr);
    });
    const Outcome outcome = RunCommand({"log", "follow", "--new", "--idle", "20", log.Path()});
    ctl::SetFollowPause(nullptr);
    EXPECT_EQ("       4  info: new\n", outcome.data);
}

TEST(LogExport, BringsEveryCallAndValueIntoEachForm)
{
    for (const std::string& log : kGoldenLogs) {
        const std::string bytes = ReadBytes(GoldenLog(log));
        const int calls = CountOf(bytes, "<func "), values = CountOf(bytes, "<argval "),
                  arguments = CountOf(bytes, "<arg ");
        const std::string csv = RunCommand({"log", "export", "--csv", GoldenLog(log)}).data;
        EXPECT_EQ(calls, CountOf(csv.substr(csv.find('\n')), ",call,"));
        EXPECT_LE(values, CountOf(csv, ",value,"));
        const std::string json = RunCommand({"log", "export", "--json", GoldenLog(log)}).data;
        EXPECT_EQ(calls, CountOf(json, "{\"kind\":\"call\""));
        EXPECT_EQ(values, CountOf(json, "{\"kind\":\"value\""));
        EXPECT_EQ(CountOf(json, "["), CountOf(json, "]"));
        const std::string html = RunCommand({"log", "export", "--html", GoldenLog(log)}).data;
        EXPECT_EQ(calls, CountOf(html, "<details "));
        EXPECT_EQ(calls, CountOf(html, "</details>"));
        EXPECT_EQ(values, CountOf(html, "<q>"));
        EXPECT_LE(arguments, CountOf(html, "<p class=a"));
        EXPECT_EQ(CountOf(html, "<p "), CountOf(html, "</p>"));
    }
}

struct CellCase {
    const char *value, *cell;
};

// A text that a spreadsheet would execute stays text; a number stays a number.
const CellCase kCells[] = {
    {"=1+1", "'=1+1"},
    {"=cmd|'/c calc'!A1", "'=cmd|'/c calc'!A1"},
    {"@SUM(A1)", "'@SUM(A1)"},
    {"+1+2", "'+1+2"},
    {"+5", "'+5"},
    {"-1+2", "'-1+2"},
    {"-", "'-"},
    {"-x", "'-x"},
    {"-inf", "'-inf"},
    {"-nan", "'-nan"},
    {"-1e999", "'-1e999"},
    {"-0x10", "'-0x10"},
    {"-5", "-5"},
    {"-5e-06", "-5e-06"},
    {"-0.25", "-0.25"},
    {"1=1", "1=1"},
    {"a-b", "a-b"},
    {"", ""},
    {"&#9;=1", "'\t=1"},
    {"&#10;=1", "\"'\n=1\""},
    {"=HYPERLINK(&quot;x&quot;,1)", "\"'=HYPERLINK(\"\"x\"\",1)\""},
    {"&quot;=1+1&quot;", "\"\"\"=1+1\"\"\""},
    {"\uff1d1", "'\uff1d1"},
    {"\uff0b1", "'\uff0b1"},
    {"\uff0d1", "'\uff0d1"},
    {"\uff201", "'\uff201"},
};

TEST(LogExport, WritesNoCellThatASpreadsheetRuns)
{
    const std::string header = RunCommand({"log", "export", "--csv", GoldenLog("sample_simulator_11")}).data;
    const std::string columns = header.substr(0, header.find('\n') + 1);
    for (const CellCase& one : kCells) {
        const TemporaryLog log(InLog("<info value=\"" + std::string(one.value) + "\"/>\n"));
        EXPECT_EQ(columns + "3,info,,,,,,,,,,," + one.cell + "\r\n",
                  RunCommand({"log", "export", "--csv", log.Path()}).data);
    }
    // Each column that comes from the log.
    const TemporaryLog log(
        InLog("<func name=\"=I::-M\" direc=\"in\" object=\"@O\"><arg name=\"+a\" direc=\"in\" "
              "type=\"=t\"><argval value=\"=v\"/></arg></func>\n"));
    EXPECT_EQ(columns + "3,call,1,,in,'=I,'-M,'@O,,,,,\r\n3,value,1,,in,'=I,'-M,'@O,'+a,in,'=t,1,'=v\r\n",
              RunCommand({"log", "export", "--csv", log.Path()}).data);
}

TEST(LogExport, ClosesTheFormsOfACutOffLog)
{
    const std::string bytes = ReadBytes(GoldenLog("sample_simulator_11"));
    const TemporaryLog log(bytes.substr(0, bytes.size() / 2));
    const std::string json = RunCommand({"log", "export", "--json", log.Path()}).data;
    EXPECT_EQ(CountOf(json, "["), CountOf(json, "]"));
    EXPECT_EQ(CountOf(json, "{"), CountOf(json, "}"));
    const std::string html = RunCommand({"log", "export", "--html", log.Path()}).data;
    EXPECT_EQ(CountOf(html, "<details "), CountOf(html, "</details>"));
    EXPECT_TRUE(html.ends_with("</html>\n"));
}

}  // namespace
}  // namespace zelt::test
