// log follow, on a log that grows meanwhile; and the exports of whole logs.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "command_runner.h"

namespace zelt::test {
namespace {

TEST(LogFollow, ShowsAWholeLogLikeShow)
{
    for (const std::string& log : kGoldenLogs) {
        const Outcome followed = RunCommand({"log", "follow", GoldenLog(log)});
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
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("       3  info: a\n       4  > A::Outer  P\n       5    < A::Hangs  F\n", outcome.data);
    EXPECT_NE(std::string::npos, outcome.messages.find("no end yet"));
}

TEST(LogFollow, ShowsWhatIsWrittenMeanwhile)
{
    const std::string whole = ReadBytes(ZELT_TESTS "/log_commands/conversation.zlg");
    const auto lines = LinesOf(whole);
    const TemporaryLog log(lines[0] + "\n" + lines[1] + "\n" + lines[2] + "\n");
    std::thread writer([&] {
        for (std::size_t i = 3; i < lines.size(); ++i) {
            if (i % 20 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(150));
            // The writer's entries are whole, so a line never comes in halves.
            log.Append(lines[i] + "\n");
        }
    });
    const Outcome outcome = RunCommand({"log", "follow", "--idle", "20", log.Path()});
    writer.join();
    EXPECT_EQ(RunCommand({"log", "show", log.Path()}).data, outcome.data);
    EXPECT_EQ("", outcome.messages);
}

TEST(LogFollow, ShowsOnlyTheNewWhenAsked)
{
    const TemporaryLog log(
        "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n<info value=\"old\"/>\r\n");
    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        log.Append("<info value=\"new\"/>\r\n</zeltlogdocument>");
    });
    const Outcome outcome = RunCommand({"log", "follow", "--new", "--idle", "20", log.Path()});
    writer.join();
    EXPECT_EQ("       4  info: new\n", outcome.data);
}

int CountOf(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
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
