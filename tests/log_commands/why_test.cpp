// log why: what it tells about a failure, and which failures it tells about.
#include <gtest/gtest.h>

#include "command_runner.h"

namespace zelt::test {
namespace {

std::string Call(const std::string& name, const std::string& direction, const std::string& object,
                 const std::string& inside = {})
{
    return "<func name=\"" + name + "\" direc=\"" + direction + "\" object=\"" + object + "\">\r\n" + inside +
           "</func>\r\n";
}

std::string Argument(const std::string& name, const std::string& direction, const std::vector<std::string>& values)
{
    std::string text = "<arg name=\"" + name + "\" direc=\"" + direction + "\" type=\"t\">\r\n";
    for (const std::string& value : values) text += "<argval value=\"" + value + "\"/>\r\n";
    return text + "</arg>\r\n";
}

std::string TextArgument(const std::string& name, const std::string& value)
{
    return Argument(name, "in", {"&quot;" + value + "&quot;"});
}

std::string Error(const std::string& text) { return "<error value=\"" + text + "\"/>\r\n"; }

std::string ReadTemperature(const std::string& property, const std::string& value, const std::string& more = {})
{
    return Call("ICapeThermoMaterial::GetOverallProp", "out", "Feed",
                TextArgument("property", property) + TextArgument("basis", "") +
                    (value.empty() ? "" : Argument("results", "out", {value})) + more);
}

std::string FlashOf(const std::string& solution, const std::string& inside)
{
    return Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", "in", "P",
                TextArgument("solutionType", solution) + inside);
}

std::string Numbered(const char* name, int number)
{
    std::string text(name);
    return text.append(std::to_string(number));
}

std::string Why(const std::string& entries)
{
    return RunCommand({"log", "why", TemporaryLog(InLog(entries)).Path()}).data;
}

TEST(LogWhy, TellsTheWholeStory)
{
    EXPECT_EQ(
        "Failure 1 of 1: ICapeThermoEquilibriumRoutine::CalcEquilibrium (P)\n"
        "      64  ECapeSolvingErrorHR: no convergence\n"
        "      64  Error information: \"50 iterations\" (source: P)\n"
        "  The call\n"
        "      33  > ICapeThermoEquilibriumRoutine::CalcEquilibrium  P\n"
        "      34      solutionType = \"Second\"\n"
        "  What it asked and set before it failed\n"
        "      37  < Feed: GetOverallProp temperature = 500\n"
        "      48  < Feed: GetOverallProp fraction (failed)\n"
        "  What the log last says about Feed\n"
        "      18  pressure = 101325\n"
        "      37  temperature = 500\n"
        "  When it last succeeded before\n"
        "       3  with solutionType = \"First\"\n"
        "       7  < Feed: GetOverallProp temperature = 353.2\n"
        "      18  < Feed: GetOverallProp pressure = 101325\n"
        "          it returned count = 2\n"
        "  Rules that were broken during it\n"
        "      62  violation: Phase label cannot be empty\n",
        Why(FlashOf("First", ReadTemperature("temperature", "353.2") + ReadTemperature("pressure", "101325") +
                                 Argument("count", "out", {"2"})) +
            FlashOf("Second", ReadTemperature("temperature", "500") +
                                  ReadTemperature("fraction", "", Error("ECapeThrmPropertyNotAvailableHR: not there")) +
                                  "<info value=\"a\"/>\r\n<info value=\"b\"/>\r\n<info value=\"c\"/>\r\n"
                                  "<info value=\"d\"/>\r\n<info value=\"e\"/>\r\n" +
                                  Error("Phase label cannot be empty") +
                                  "<info value=\"Error information: &quot;50 iterations&quot; (source: P)\"/>\r\n" +
                                  Error("ECapeSolvingErrorHR: no convergence"))));
}

TEST(LogWhy, TellsOnceWhatFailsTheSameWayAgain)
{
    std::string entries;
    for (int i = 0; i < 12; ++i) entries += FlashOf("S", Error("E_FAIL: no"));
    entries += FlashOf("S", Error("E_FAIL: otherwise"));
    EXPECT_EQ(
        "Failure 1 of 2: ICapeThermoEquilibriumRoutine::CalcEquilibrium (P)\n"
        "       7  E_FAIL: no\n"
        "          The same failure occurred 11 more times: lines 9, 15, 21, 27, 33, 39, 45, 51 ...\n"
        "  The call\n"
        "       3  > ICapeThermoEquilibriumRoutine::CalcEquilibrium  P\n"
        "       4      solutionType = \"S\"\n"
        "  When it last succeeded before\n"
        "          never in this log\n"
        "\n"
        "Failure 2 of 2: ICapeThermoEquilibriumRoutine::CalcEquilibrium (P)\n"
        "      79  E_FAIL: otherwise\n"
        "  The call\n"
        "      75  > ICapeThermoEquilibriumRoutine::CalcEquilibrium  P\n"
        "      76      solutionType = \"S\"\n"
        "  When it last succeeded before\n"
        "          never in this log\n",
        Why(entries));
}

TEST(LogWhy, TellsOfAFailureThatTheCallerCopedWith)
{
    // The story shows the material's call and the call around it.
    EXPECT_EQ(
        "Failure 1 of 1: ICapeThermoMaterial::GetOverallProp (Feed)\n"
        "      25  E_FAIL: no\n"
        "  The call\n"
        "       3  > ICapeThermoEquilibriumRoutine::CalcEquilibrium  P\n"
        "      18  < ICapeThermoMaterial::GetOverallProp  Feed\n"
        "      19      property = \"fraction\"\n"
        "      22      basis = \"\"\n"
        "  What the log last says about Feed\n"
        "       7  temperature = 353.2\n"
        "  When it last succeeded before\n"
        "       7  with property = \"temperature\"\n"
        "          it returned results = 353.2\n",
        Why(FlashOf("S",
                    ReadTemperature("temperature", "353.2") + ReadTemperature("fraction", "", Error("E_FAIL: no")))));
}

TEST(LogWhy, TellsOfACallThatNeverReturned)
{
    const std::string whole =
        InLog(FlashOf("S", ReadTemperature("temperature", "353.2") + ReadTemperature("pressure", "1")));
    const TemporaryLog log(whole.substr(0, whole.find("<arg name=\"results\"", whole.find("pressure"))));
    const Outcome outcome = RunCommand({"log", "why", log.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        "Failure 1 of 1: ICapeThermoEquilibriumRoutine::CalcEquilibrium (P)\n"
        "          The call never returned: the log is cut off during it.\n"
        "  The call\n"
        "       3  > ICapeThermoEquilibriumRoutine::CalcEquilibrium  P\n"
        "       4      solutionType = \"S\"\n"
        "  What it asked and set before it failed\n"
        "       7  < Feed: GetOverallProp temperature = 353.2\n"
        "      18  < Feed: GetOverallProp pressure (no answer)\n"
        "  What the log last says about Feed\n"
        "       7  temperature = 353.2\n"
        "  When it last succeeded before\n"
        "          never in this log\n",
        outcome.data);
    EXPECT_NE(std::string::npos, outcome.messages.find("cut off or damaged"));
}

TEST(LogWhy, ShowsOnlySoMuchOfALongConversation)
{
    std::string inside;
    for (int i = 0; i < 20; ++i) inside += ReadTemperature(Numbered("p", i), Numbered("", i));
    for (int i = 0; i < 6; ++i) inside += ReadTemperature(Numbered("f", i), "", Error("E_FAIL: no"));
    inside += ReadTemperature("temperature", "300") + ReadTemperature("z1", "1") + ReadTemperature("z2", "1") +
              ReadTemperature("z3", "1");
    inside += ReadTemperature("z4", "1") + ReadTemperature("z5", "1") + ReadTemperature("z6", "1") +
              ReadTemperature("z7", "1") + ReadTemperature("z8", "1");
    const std::string story = Why(FlashOf("S", inside + Error("E_FAIL: no")));
    EXPECT_LE(LinesOf(story).size(), 30u) << story;
    EXPECT_NE(std::string::npos, story.find("          25 calls not shown\n")) << story;
    // The first failed calls are shown, and the latest calls.
    for (const char* shown : {"f0 (failed)", "f3 (failed)", "z3 = 1", "z8 = 1"}) {
        EXPECT_NE(std::string::npos, story.find(shown)) << shown;
    }
    EXPECT_NE(std::string::npos, story.find("          21 other values not shown\n")) << story;
    EXPECT_NE(std::string::npos, story.find("  temperature = 300\n")) << story;
    for (const std::string& line : LinesOf(story)) EXPECT_LE(line.size(), 100u) << line;
}

TEST(LogWhy, CutsLongValuesAndCountsThem)
{
    std::vector<std::string> values;
    for (int i = 0; i < 40; ++i) values.push_back("0.025");
    const std::string story =
        Why(Call("A::M", "in", "P", Argument("x", "in", values) + Argument("y", "in", {}) + Error("E_FAIL: no")));
    EXPECT_NE(std::string::npos,
              story.find("       4      x = 0.025, 0.025, 0.025, 0.025, 0.025, 0.025, 0.025, 0.025, 0.025, ... (40 "
                         "values)\n"))
        << story;
    EXPECT_NE(std::string::npos, story.find("      46      y = (empty)\n")) << story;
}

TEST(LogWhy, ForgetsWhatItKnewOfAMaterialThatWasCleared)
{
    const std::string story = Why(FlashOf("S", ReadTemperature("temperature", "300") +
                                                   Call("ICapeThermoMaterial::ClearAllProps", "out", "Feed") +
                                                   ReadTemperature("pressure", "1") + Error("E_FAIL: no")));
    EXPECT_NE(std::string::npos, story.find("  What the log last says about Feed\n      20  pressure = 1\n  When"))
        << story;
}

TEST(LogWhy, KnowsThePhasesOfAMaterial)
{
    for (const std::string method : {"GetPresentPhases", "SetPresentPhases"}) {
        const std::string story =
            Why(FlashOf("S", Call("ICapeThermoMaterial::" + method, "out", "Feed",
                                  Argument("phaseLabels", "out", {"&quot;Vapor&quot;", "&quot;Liquid&quot;"})) +
                                 Error("E_FAIL: no")));
        EXPECT_NE(std::string::npos,
                  story.find("  What the log last says about Feed\n       7  phases = \"Vapor\", \"Liquid\"\n"))
            << story;
    }
}

TEST(LogWhy, SaysWhenNoCallFailed)
{
    const TemporaryLog log(InLog(FlashOf("S", Error("Phase label cannot be empty"))));
    const Outcome outcome = RunCommand({"log", "why", log.Path()});
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("No call failed.\n", outcome.data);
    EXPECT_EQ("No call failed.\n", Why(""));
}

TEST(LogWhy, CountsTheFailuresThatAreTooManyToTell)
{
    const auto storyOf = [](int failures) {
        std::string entries;
        for (int i = 0; i < failures; ++i) entries += Call(Numbered("A::M", i), "in", "P", Error("E_FAIL: no"));
        return Why(entries);
    };
    EXPECT_TRUE(storyOf(510).starts_with("Failure 1 of 500: A::M0 (P)\n"));
    EXPECT_TRUE(storyOf(510).ends_with("\nand 10 other failures; log errors lists all\n"));
    EXPECT_TRUE(storyOf(501).ends_with("\nand 1 other failure; log errors lists all\n"));
}

}  // namespace
}  // namespace zelt::test
