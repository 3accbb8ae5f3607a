// log show --at and --nested: one call with those around it, and all that happens during calls.
#include <gtest/gtest.h>

#include "command_runner.h"
#include "standard_input.h"

namespace zelt::test {
namespace {

Outcome ShowAt(int line, const std::vector<std::string>& more = {})
{
    std::vector<std::string> words = {"log", "show", "--at", std::to_string(line), kConversation};
    words.insert(words.end(), more.begin(), more.end());
    return RunCommand(words);
}

const std::string kCalc =
    "      15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
    "      16    in props (VT_ARRAY|VT_BSTR) = \"enthalpy\", \"a, \"b\"\"\n"
    "      22    in phaseLabel (string) = \"\"\n"
    "      25    error: Phase label cannot be empty\n"
    "      26    < ICapeThermoMaterial::GetOverallProp  Feed (2)\n"
    "      38        warning: Old value for CapeDoubleEmpty used: should be NaN\n"
    "      42    < ICapeThermoMaterial::CreateMaterial  Feed (2)\n"
    "      47    error: ECapeInvalidArgumentHR: The property \"a, \"b\"\" is not calculated\n"
    "            result: failed\n";
const std::string kGet =
    "      15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
    "      26    < ICapeThermoMaterial::GetOverallProp  Feed (2)\n"
    "      27      in property (string) = \"temperature\"\n"
    "      30      in basis (string) = <NULL>\n"
    "      33      out results (VT_ARRAY|VT_R8) = 353.2, N/A\n"
    "      38        warning: Old value for CapeDoubleEmpty used: should be NaN\n"
    "      39        = -5e-06\n"
    "              result: ok\n";
const std::string kCreate =
    "      15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
    "      42    < ICapeThermoMaterial::CreateMaterial  Feed (2)\n"
    "      43      out materialObject (interface) = interface to object \"New\" (address 0x01999300)\n"
    "              result: ok\n";

TEST(LogShowAt, ShowsTheCallThatTheLineIsIn)
{
    // From the opening line to the closing one; the closing line of an inner call belongs to the inner call.
    for (const int line : {15, 16, 18, 21, 25, 47, 48}) EXPECT_EQ(kCalc, ShowAt(line).data) << line;
    for (const int line : {26, 27, 28, 37, 40, 41}) EXPECT_EQ(kGet, ShowAt(line).data) << line;
    for (const int line : {42, 43, 45, 46}) EXPECT_EQ(kCreate, ShowAt(line).data) << line;
    EXPECT_EQ(0, ShowAt(47).code);
    EXPECT_EQ("", ShowAt(47).messages);
}

TEST(LogShowAt, ShowsAllThatIsInsideWhenAsked)
{
    const std::string calc = ShowAt(47, {"--nested"}).data;
    EXPECT_NE(std::string::npos, calc.find("      33      out results (VT_ARRAY|VT_R8) = 353.2, N/A\n")) << calc;
    EXPECT_NE(std::string::npos, calc.find("      43      out materialObject (interface)"));
    EXPECT_TRUE(calc.ends_with("is not calculated\n            result: failed\n"));
    EXPECT_EQ(kCreate, ShowAt(43, {"--nested"}).data);
}

TEST(LogShowAt, ShowsALineOutsideOfCalls)
{
    EXPECT_EQ("       4  info: Creating A & <B>\n", ShowAt(4).data);
    EXPECT_EQ(
        "      70  warning: Object \"New\" (type: Material Object) is not released at final release of \"A & "
        "<B>\" (reference count 1)\n",
        ShowAt(70).data);
    EXPECT_EQ("       6  > ICapeUtilities::Initialize  A & <B>\n            result: ok\n", ShowAt(7).data);
    // The declaration and the root.
    EXPECT_EQ("", ShowAt(1).data);
    EXPECT_EQ("", ShowAt(2).data);
}

TEST(LogShowAt, TakesAnEmptyLineForThatOfTheCallAroundIt)
{
    const TemporaryLog log(
        InLog("<func name=\"A::B\" direc=\"in\" object=\"o\">\r\n\r\n <info value=\"inside\"/>\r\n</func>\r\n\r\n\r\n"
              "<info value=\"after\"/>\r\n"));
    // Lines 1 and 2 are the declaration and the root.
    const Outcome inside = RunCommand({"log", "show", "--at", "4", log.Path()});
    EXPECT_EQ(0, inside.code) << inside.messages;
    EXPECT_TRUE(inside.data.starts_with("       3  > A::B  o\n")) << inside.data;
    const Outcome outside = RunCommand({"log", "show", "--at", "8", log.Path()});
    EXPECT_EQ(0, outside.code) << outside.messages;
    EXPECT_EQ(2, RunCommand({"log", "show", "--at", "10", log.Path()}).code);
}

TEST(LogShowAt, RefusesALineThatTheLogDoesNotHave)
{
    const Outcome outcome = ShowAt(71);
    EXPECT_EQ(2, outcome.code);
    EXPECT_EQ("zeltctl: " + kConversation + ": the log has no line 71; its last is 70\n", outcome.messages);
    for (const char* line : {"0", "-1", "1.5", "x", "1e12"}) {
        EXPECT_EQ(2, RunCommand({"log", "show", "--at", line, kConversation}).code) << line;
    }
    const Outcome filtered = ShowAt(15, {"--object", "Feed"});
    EXPECT_EQ(2, filtered.code);
    EXPECT_NE(std::string::npos, filtered.messages.find("--at and --object do not go together")) << filtered.messages;
    const Outcome two = RunCommand({"log", "show", "--at", "15", kConversation, kConversation});
    EXPECT_EQ(2, two.code);
    EXPECT_NE(std::string::npos, two.messages.find("--at is for one log")) << two.messages;
}

TEST(LogShowAt, SaysOfACallThatItWasCutOff)
{
    const std::string whole = ReadBytes(kConversation);
    const TemporaryLog log(whole.substr(0, whole.find(" <func name=\"ICapeThermoMaterial::CreateMaterial\"")));
    const Outcome outcome = RunCommand({"log", "show", "--at", "16", log.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        kCalc.substr(0, kCalc.find("      42")) + "            result: none; the log is cut off during this call\n",
        outcome.data);
    EXPECT_NE(std::string::npos, outcome.messages.find("cut off or damaged")) << outcome.messages;
    // A call that ended before the cut is not affected.
    EXPECT_EQ(kGet, RunCommand({"log", "show", "--at", "26", log.Path()}).data);
}

TEST(LogShowAt, DistinguishesCallsThatBeginInOneLine)
{
    const TemporaryLog log(
        InLog("<func name=\"A::Outer\" direc=\"in\" object=\"P\"><func name=\"A::Inner\" direc=\"out\" object=\"F\">"
              "<error value=\"no\"/></func></func>\n<func name=\"A::Next\" direc=\"in\" object=\"P\"/>\n"));
    // A line in which several calls begin stands for the outermost of them.
    EXPECT_EQ("       3  > A::Outer  P\n       3    < A::Inner  F\n       3      error: no\n            result: ok\n",
              RunCommand({"log", "show", "--at", "3", log.Path()}).data);
    EXPECT_EQ("       4  > A::Next  P\n            result: ok\n",
              RunCommand({"log", "show", "--at", "4", log.Path()}).data);
}

TEST(LogShow, ShowsWhatHappensDuringTheCallsWhenAsked)
{
    const std::string calls =
        RunCommand({"log", "show", "--calls", "--nested", "--method", "Calc*", kConversation}).data;
    EXPECT_EQ(
        "      15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
        "      25    error: Phase label cannot be empty\n"
        "      26    < ICapeThermoMaterial::GetOverallProp  Feed (2)\n"
        "      38        warning: Old value for CapeDoubleEmpty used: should be NaN\n"
        "      42    < ICapeThermoMaterial::CreateMaterial  Feed (2)\n"
        "      47    error: ECapeInvalidArgumentHR: The property \"a, \"b\"\" is not calculated\n",
        calls);
    EXPECT_EQ(RunCommand({"log", "show", kConversation}).data,
              RunCommand({"log", "show", "--nested", kConversation}).data);
}

TEST(LogShow, ReadsStandardInputAsOftenAsItMust)
{
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, {"--result", "failed"}, {"--at", "47"}, {"--at", "47", "--nested"}}) {
        std::vector<std::string> words = {"log", "show"};
        words.insert(words.end(), options.begin(), options.end());
        std::vector<std::string> fromFile = words;
        fromFile.push_back(kConversation);
        words.push_back("-");
        const StandardInput input(kConversation);
        const Outcome outcome = RunCommand(words);
        EXPECT_EQ(RunCommand(fromFile).data, outcome.data);
        EXPECT_EQ("", outcome.messages);
    }
}

}  // namespace
}  // namespace zelt::test
