// log diff: what a comparison ignores, and what it finds.
#include <gtest/gtest.h>

#include "command_runner.h"

namespace zelt::test {
namespace {

std::string CallOfDiff(const std::string& object, const std::string& type, const std::string& value,
                       const std::string& method = "M")
{
    return "<func name=\"ICapeX::" + method + "\" direc=\"out\" object=\"" + object +
           "\"><arg name=\"a\" direc=\"out\" type=\"" + type + "\"><argval value=\"" + value + "\"/></arg></func>\n";
}

Outcome Compare(const std::string& a, const std::string& b, const std::vector<std::string>& options = {})
{
    const TemporaryLog first(InLog(a)), second(InLog(b));
    std::vector<std::string> words = {"log", "diff", first.Path(), second.Path()};
    words.insert(words.end(), options.begin(), options.end());
    return RunCommand(words);
}

struct AlikeCase {
    const char* name;
    std::string a, b;
};

const AlikeCase kAlike[] = {
    {"times", "<info value=\"ZELT Logging started at May 1, 2026, 08:00\"/>",
     "<info value=\"ZELT Logging started at May 2, 2026, 09:00\"/>"},
    {"addresses", CallOfDiff("F", "interface", "interface pointer 0x00000001"),
     CallOfDiff("F", "interface", "interface pointer 0x00000002")},
    {"addresses of objects", CallOfDiff("F", "interface", "interface to object &quot;G&quot; (address 0x00000001)"),
     CallOfDiff("F", "interface", "interface to object &quot;G&quot; (address 0x0000000000000002)")},
    {"numbers of objects", CallOfDiff("Stream 1", "long", "5"), CallOfDiff("Stream 12", "long", "5")},
    {"numbers in brackets", CallOfDiff("Stream (1)", "long", "5"), CallOfDiff("Stream (2)", "long", "5")},
    {"numbers of objects in values",
     CallOfDiff("F", "interface", "interface to object &quot;G1&quot; (address 0x00000001)"),
     CallOfDiff("F", "interface", "interface to object &quot;G22&quot; (address 0x00000001)")},
    {"queries of the system",
     "<warning value=\"P: QueryInterface for unsupported interface {00000003-0000-0000-C000-000000000046}\"/>", ""},
    {"numbers written otherwise", CallOfDiff("F", "double", "1e3"), CallOfDiff("F", "double", "1000")},
};

TEST(LogDiff, LeavesOutWhatDiffersBetweenRuns)
{
    for (const AlikeCase& one : kAlike) {
        const Outcome outcome = Compare(one.a, one.b);
        EXPECT_EQ(0, outcome.code) << one.name;
        EXPECT_EQ("", outcome.data) << one.name;
    }
    for (const std::string& log : kGoldenLogs) {
        EXPECT_EQ("", RunCommand({"log", "diff", GoldenLog(log), GoldenLog(log)}).data);
    }
}

struct DifferenceCase {
    const char* name;
    std::string a, b;
    const char* first;  // first line of the output
};

const DifferenceCase kDifferences[] = {
    {"a value", CallOfDiff("F", "double", "1"), CallOfDiff("F", "double", "2"),
     "~ 3 3  ICapeX::M (F) out a[1]: 1 -> 2"},
    {"a type", CallOfDiff("F", "double", "1"), CallOfDiff("F", "long", "1"),
     "~ 3 3  ICapeX::M (F) out a: of type double -> of type long"},
    {"a text", CallOfDiff("F", "string", "&quot;1&quot;"), CallOfDiff("F", "string", "&quot;2&quot;"),
     "~ 3 3  ICapeX::M (F) out a[1]: \"1\" -> \"2\""},
    {"a call more", "", CallOfDiff("F", "long", "1"), "+ 3  ICapeX::M (F)"},
    {"a call less", CallOfDiff("F", "long", "1") + CallOfDiff("F", "long", "1", "N"), CallOfDiff("F", "long", "1", "N"),
     "- 3  ICapeX::M (F)"},
    {"another object", CallOfDiff("F", "long", "1"), CallOfDiff("G", "long", "1"), "- 3  ICapeX::M (F)"},
    {"a message", "<warning value=\"w\"/>", "", "- 3  warning: w"},
    {"an error in a call", "<func name=\"A::B\" direc=\"in\" object=\"P\"></func>",
     "<func name=\"A::B\" direc=\"in\" object=\"P\"><error value=\"E_FAIL: x\"/></func>",
     "~ 3 3  A::B (P) error: (nothing) -> E_FAIL: x"},
    {"a number with more behind it", CallOfDiff("F", "string", "1 K"), CallOfDiff("F", "string", "1 L"),
     "~ 3 3  ICapeX::M (F) out a[1]: 1 K -> 1 L"},
    {"numbers beyond all bounds", CallOfDiff("F", "double", "1e999"), CallOfDiff("F", "double", "2e999"),
     "~ 3 3  ICapeX::M (F) out a[1]: 1e999 -> 2e999"},
    {"a number at the end of a message", "<warning value=\"w 1\"/>", "<warning value=\"w 2\"/>", "- 3  warning: w 1"},
    {"NaN", CallOfDiff("F", "double", "1"), CallOfDiff("F", "double", "N/A"),
     "~ 3 3  ICapeX::M (F) out a[1]: 1 -> N/A"},
    {"addresses without an object's name", CallOfDiff("F", "interface", "interface to object &quot; (address 0x1)"),
     CallOfDiff("F", "interface", "interface to object &quot; (address 0x2)"),
     "~ 3 3  ICapeX::M (F) out a[1]: interface to object \" (address 0x1) -> interface to object \" (address 0x2)"},
};

TEST(LogDiff, SaysWhatDiffers)
{
    for (const DifferenceCase& one : kDifferences) {
        const Outcome outcome = Compare(one.a, one.b);
        EXPECT_EQ(1, outcome.code) << one.name;
        ASSERT_FALSE(outcome.data.empty()) << one.name;
        EXPECT_EQ(one.first, LinesOf(outcome.data)[0]);
        EXPECT_EQ(1, Compare(one.b, one.a).code) << one.name;
        EXPECT_NE(std::string::npos, Compare(one.a, one.b, {"--json"}).data.find("\"differences\":[\n{")) << one.name;
    }
}

// The log of a repeated run: another time, other addresses, and another number in the name of an object. The golden logs have
// placeholders for the time and the addresses.
std::string Repeated(std::string log)
{
    const auto replace = [&](const std::string& from, const std::string& to) {
        for (std::size_t at = log.find(from); at != std::string::npos; at = log.find(from, at + to.size())) {
            log.replace(at, from.size(), to);
        }
    };
    replace("at DATE", "at November 22, 2026, 23:59");
    replace("0xADDRESS", "0x0F0F");
    replace("object=\"feed 1\"", "object=\"feed 7\"");
    return log;
}

TEST(LogDiff, FindsNothingInARepeatedRunAndTheCallThatItLacks)
{
    for (const std::string& name : kGoldenLogs) {
        const std::string log = ReadBytes(GoldenLog(name));
        const TemporaryLog repeated(Repeated(log));
        const Outcome outcome = RunCommand({"log", "diff", GoldenLog(name), repeated.Path()});
        EXPECT_EQ(0, outcome.code) << name;
        EXPECT_EQ("", outcome.data) << name;

        // The repeated run lacks the last call but one.
        const std::size_t last = log.rfind("\n<func "), start = log.rfind("\n<func ", last - 1) + 1;
        const TemporaryLog shorter(Repeated(log.substr(0, start) + log.substr(log.find("\n</func>", start) + 10)));
        const auto lines = LinesOf(RunCommand({"log", "diff", GoldenLog(name), shorter.Path()}).data);
        ASSERT_LE(2u, lines.size()) << name;
        EXPECT_TRUE(lines[0].starts_with("- " + std::to_string(LinesOf(log.substr(0, start)).size() + 1) + "  "))
            << lines[0];
        EXPECT_EQ(std::string::npos, lines[0].find("(nothing)"));
    }
}

TEST(LogDiff, FindsTheOneValueThatWasChanged)
{
    std::string log = ReadBytes(GoldenLog("sample_simulator_11"));
    const std::size_t at = log.find("value=\"353.2\"", log.find("::GetOverallProp"));
    log.replace(at, 13, "value=\"353.3\"");
    const TemporaryLog changed(log);
    const Outcome outcome = RunCommand({"log", "diff", GoldenLog("sample_simulator_11"), changed.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        "~ 1499 1499  ICapeThermoMaterial::GetOverallProp (Feed) out results[1]: 353.2 -> 353.3\n"
        "Values that differ: 1; calls and messages of the first log alone: 0, of the second alone: 0; the first "
        "difference "
        "is in line 1499 of the first\n",
        outcome.data);
}

std::string LastLine(const Outcome& outcome) { return LinesOf(outcome.data).back(); }

TEST(LogDiff, NamesTheFirstDifferenceWhicheverLogHasIt)
{
    const std::string call = CallOfDiff("F", "long", "1"), other = CallOfDiff("F", "long", "2"),
                      more = CallOfDiff("G", "long", "1");
    EXPECT_EQ(
        "Values that differ: 1; calls and messages of the first log alone: 1, of the second alone: 0; the first "
        "difference is in line 3 of the first",
        LastLine(Compare(more + call, other)));
    EXPECT_EQ(
        "Values that differ: 1; calls and messages of the first log alone: 0, of the second alone: 1; the first "
        "difference is in line 3 of the second",
        LastLine(Compare(call, more + other)));
    EXPECT_EQ(
        "Values that differ: 1; calls and messages of the first log alone: 0, of the second alone: 1; the first "
        "difference is in line 3 of the first",
        LastLine(Compare(call, other + more)));
}

TEST(LogDiff, GivesWhatFollowsAnInnerCallToTheOuterOne)
{
    const auto nested = [](const char* value, const char* message) {
        return "<func name=\"A::Outer\" direc=\"in\" object=\"P\">\n" + CallOfDiff("F", "long", "1") +
               "<arg name=\"b\" direc=\"out\" type=\"long\"><argval value=\"" + value +
               "\"/></arg></func>\n<info value=\"" + message + "\"/>\n";
    };
    EXPECT_EQ("~ 5 5  A::Outer (P) out b[1]: 7 -> 8", LinesOf(Compare(nested("7", "m"), nested("8", "m")).data)[0]);
    // A message after all calls belongs to none.
    EXPECT_EQ("- 6  info: m", LinesOf(Compare(nested("7", "m"), nested("7", "n")).data)[0]);
}

TEST(LogDiff, TakesNumbersAsEqualWithinTheTolerance)
{
    const auto code = [](const char* a, const char* b, const char* tolerance) {
        return Compare(CallOfDiff("F", "double", a), CallOfDiff("F", "double", b), {"--tolerance", tolerance}).code;
    };
    EXPECT_EQ(0, code("100", "101", "0.01"));
    EXPECT_EQ(1, code("100", "102", "0.01"));
    // Relative to the larger of the two, whichever comes first.
    EXPECT_EQ(0, code("1", "2", "0.5"));
    EXPECT_EQ(0, code("2", "1", "0.5"));
    EXPECT_EQ(1, code("1", "2.1", "0.5"));
    EXPECT_EQ(1, code("2.1", "1", "0.5"));
    EXPECT_EQ(0, code("-100", "-101", "0.01"));
    EXPECT_EQ(1, code("0", "1e-300", "0.5"));
    EXPECT_EQ(1, code("1", "inf", "0.5"));
    EXPECT_EQ(1, code("1", "N/A", "1"));
}

}  // namespace
}  // namespace zelt::test
