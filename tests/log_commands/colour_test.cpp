// Colours on a terminal: where they are, and that they change nothing else.
#include <gtest/gtest.h>

#include <regex>

#include "command_runner.h"
#include "ctl/output.h"
#include "temporary_folder.h"

namespace zelt::test {
namespace {

TEST(Colours, MarkCallsAndErrors)
{
    const TemporaryLog log(
        InLog("<info value=\"a\"/>\r\n<func name=\"A::M\" direc=\"in\" object=\"P\">\r\n<warning value=\"w\"/>\r\n"
              "<error value=\"E_FAIL: no\"/>\r\n<func name=\"A::N\" direc=\"out\" object=\"F\">\r\n</func>\r\n"
              "</func>\r\n"));
    EXPECT_EQ(
        "       3  \x1b[2minfo: a\x1b[0m\n"
        "       4  \x1b[34m> A::M\x1b[0m  P\n"
        "       5    \x1b[33mwarning: w\x1b[0m\n"
        "       6    \x1b[31merror: E_FAIL: no\x1b[0m\n"
        "       7    \x1b[35m< A::N\x1b[0m  F\n",
        RunCommand({"log", "show", log.Path()}, true).data);
    EXPECT_EQ(
        "5: \x1b[33mwarning\x1b[0m in A::M (P): w\n"
        "6: \x1b[31mfailure\x1b[0m in A::M (P): E_FAIL: no\n",
        RunCommand({"log", "errors", log.Path()}, true).data);
}

TEST(Colours, ChangeNothingElse)
{
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"show"}, {"errors"}, {"errors", "--context"}, {"why"}, {"check"}, {"stats"}}) {
        std::vector<std::string> all = {"log"};
        all.insert(all.end(), words.begin(), words.end());
        all.insert(all.end(), {kConversation, GoldenLog("sample_simulator_11")});
        const std::string coloured = RunCommand(all, true).data;
        EXPECT_NE(std::string::npos, coloured.find('\x1b')) << words[0];
        EXPECT_EQ(RunCommand(all).data, std::regex_replace(coloured, std::regex("\x1b\\[[0-9]+m"), "")) << words[0];
    }
}

TEST(Colours, AreInNoFileAndInNothingForPrograms)
{
    const TemporaryFolder folder;
    EXPECT_EQ(1, RunCommand({"log", "errors", "-o", folder.Of("out"), kConversation}, true).code);
    EXPECT_EQ(RunCommand({"log", "errors", kConversation}).data, ReadBytes(folder.Of("out")));
    const std::vector<std::string> commands[] = {{"errors", "--json"}, {"check", "--json"}, {"stats", "--json"},
                                                 {"export", "--html"}, {"export", "--csv"}, {"export", "--json"},
                                                 {"list", "--json"},   {"redact"}};
    for (std::vector<std::string> words : commands) {
        words.insert(words.begin(), "log");
        words.push_back(kConversation);
        EXPECT_EQ(std::string::npos, RunCommand(words, true).data.find('\x1b')) << words[1];
    }
}

TEST(Colours, AreWantedOnATerminalUnlessTheUserWantsNone)
{
    EXPECT_TRUE(ctl::WantsColours(true, nullptr, nullptr));
    EXPECT_TRUE(ctl::WantsColours(true, "", "xterm-256color"));
    EXPECT_FALSE(ctl::WantsColours(false, nullptr, "xterm"));
    EXPECT_FALSE(ctl::WantsColours(true, "1", "xterm"));
    EXPECT_FALSE(ctl::WantsColours(true, nullptr, "dumb"));
}

}  // namespace
}  // namespace zelt::test
