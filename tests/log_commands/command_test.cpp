// The command line: help, versions, refused arguments; and what commands share: similar words, patterns, JSON, alignments.
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "command_runner.h"
#include "ctl/command.h"
#include "ctl/json_writer.h"
#include "ctl/log/call_filter.h"
#include "ctl/log/comparison/log_alignment.h"
#include "ctl/similar.h"

namespace zelt::test {
namespace {

struct RefusedCase {
    std::vector<std::string> words;
    const char* message;
};

const RefusedCase kRefused[] = {
    {{}, "a command is missing"},
    {{"lgo"}, "zeltctl: there is no command \"lgo\", did you mean \"log\"? see zeltctl --help\n"},
    {{"lgo", "show", "a"}, "there is no command \"lgo show\", did you mean \"log show\"?"},
    {{"log", "sohw"}, "there is no command \"log sohw\", did you mean \"log show\"?"},
    {{"log", "eror", "a"}, "there is no command \"log eror\", did you mean \"log errors\"?"},
    {{"errors", "a"}, "there is no command \"errors\", did you mean \"log errors\"?"},
    {{"frobnicate"}, "zeltctl: there is no command \"frobnicate\"; see zeltctl --help\n"},
    {{"doctor"}, "zeltctl: \"doctor\" is about ZELT on this computer and needs Windows\n"},
    {{"doctor", "--fix"}, "\"doctor\" is about ZELT on this computer and needs Windows"},
    {{"log", "on", "P"}, "\"log on\" is about ZELT on this computer and needs Windows"},
    {{"completion"}, "\"completion\" takes bash or powershell"},
    {{"completion", "fish"}, "\"completion\" takes bash or powershell"},
    {{"log", "show"}, "\"log show\" takes LOG"},
    {{"log", "follow", "a", "b"}, "\"log follow\" takes LOG"},
    {{"log", "show", "--colour", "a"}, "zeltctl: \"log show\" has no option \"--colour\"; see zeltctl --help"},
    {{"log", "show", "--obejct", "a"},
     "zeltctl: \"log show\" has no option \"--obejct\", did you mean \"--object\"? see zeltctl --help"},
    {{"log", "show", "a", "--object"}, "--object lacks its value"},
    {{"log", "show", "a", "--calls=1"}, "--calls takes no value"},
    {{"log", "show", "a", "--calls", "--calls"}, "--calls is given twice"},
    {{"log", "show", "a", "--direction", "up"}, "--direction is in or out"},
    {{"log", "show", "a", "--result", "good"}, "--result is ok, failed, violation or warning"},
    {{"log", "diff", "a", "b", "--tolerance", "x"}, "--tolerance wants a number, not \"x\""},
    {{"log", "diff", "a", "b", "--tolerance", "-1"}, "--tolerance wants a number"},
    {{"log", "diff", "a", "b", "--tolerance", "inf"}, "--tolerance wants a number, not \"inf\""},
    {{"log", "stats", "a", "--top", "0"}, "--top wants a whole number from 1 to 1000000, not \"0\""},
    {{"log", "stats", "a", "--top", "2.5"}, "--top wants a whole number from 1 to 1000000, not \"2.5\""},
    {{"recording", "profile", "a", "--slowest", "inf"},
     "--slowest wants a whole number from 0 to 1000000, not \"inf\""},
    {{"recording", "profile", "a", "--slowest", "1000001"}, "--slowest wants a whole number from 0 to 1000000"},
    {{"log", "check", "--ignore", "fraction", "a"}, "--ignore has no rule \"fraction\", did you mean \"fractions\"?"},
    {{"log", "check", "--ignore", "colour", "a"},
     "--ignore has no rule \"colour\"; the rules are damaged, open-call, "},
    {{"log", "check", "--ignore", "fractions,", "a"}, "--ignore has no rule \"\""},
    {{"log", "check", "--ignore=fractions, initialize", "a"}, "--ignore has no rule \" initialize\""},
    {{"log", "export", "a"}, "one of --html, --json, --csv and --sqlite is needed"},
    {{"log", "export", "a", "--csv", "--json"}, "one of --html, --json, --csv and --sqlite"},
};

TEST(CommandLine, IsRefusedWithOneSentenceAndItsCode)
{
    for (const RefusedCase& refused : kRefused) {
        const Outcome outcome = RunCommand(refused.words);
        EXPECT_EQ(2, outcome.code) << refused.message;
        EXPECT_EQ("", outcome.data);
        EXPECT_NE(std::string::npos, outcome.messages.find(refused.message)) << outcome.messages;
    }
}

TEST(CommandLine, HelpsEverywhere)
{
    const std::vector<std::string> all[] = {{"--help"}, {"help"}, {"-h"}};
    for (const auto& words : all) {
        const Outcome outcome = RunCommand(words);
        EXPECT_EQ(0, outcome.code);
        EXPECT_NE(std::string::npos, outcome.data.find("log check LOG")) << outcome.data;
    }
    const std::vector<std::string> group[] = {{"log"}, {"log", "--help"}, {"help", "log"}, {"log", "-h"}};
    for (const auto& words : group) EXPECT_EQ(0, RunCommand(words).code);
    std::string help;
    for (const char* command :
         {"show", "errors", "list", "why", "stats", "check", "export", "diff", "redact", "follow"}) {
        const Outcome outcome = RunCommand({"log", command, "--help"});
        EXPECT_EQ(0, outcome.code);
        EXPECT_TRUE(outcome.data.starts_with(std::string("zeltctl log ") + command)) << outcome.data;
        help += outcome.data + '\n';
        EXPECT_EQ(outcome.data, RunCommand({"help", "log", command}).data);
        EXPECT_EQ(outcome.data, RunCommand({"log", command, "-h"}).data);
        EXPECT_EQ("zeltctl 1.0.0\n", RunCommand({"log", command, "--version"}).data);
    }
    ExpectKept("help.txt", help);
    EXPECT_EQ("zeltctl 1.0.0\n", RunCommand({"--version"}).data);
}

TEST(CommandLine, IsDescribedForOtherPrograms)
{
    ExpectKept("command_line/completion.bash", RunCommand({"completion", "bash"}).data);
    ExpectKept("command_line/completion.ps1", RunCommand({"completion", "powershell"}).data);
    ExpectKept("command_line/manual.1", RunCommand({"manual"}).data);
}

struct EditsCase {
    const char *a, *b;
    std::size_t edits;
};

TEST(Similar, CountsEdits)
{
    const EditsCase cases[] = {{"", "", 0},         {"", "abc", 3},       {"abc", "", 3},       {"show", "show", 0},
                               {"sohw", "show", 1}, {"shw", "show", 1},   {"shoow", "show", 1}, {"shew", "show", 1},
                               {"hosw", "show", 2}, {"errors", "eror", 2}};
    for (const EditsCase& one : cases) EXPECT_EQ(one.edits, ctl::EditsBetween(one.a, one.b)) << one.a << ' ' << one.b;
    EXPECT_EQ("show", ctl::MostSimilar("sohw", {"stats", "show", "slow"}));
    EXPECT_EQ("", ctl::MostSimilar("x", {"stats", "show"}));
    EXPECT_EQ("", ctl::MostSimilar(std::string(1000, 's'), {"stats"}));
}

TEST(CommandLine, TakesWhatFollowsTwoDashesAsItIs)
{
    const Outcome outcome = RunCommand({"log", "show", "--", "--help"});
    EXPECT_EQ(3, outcome.code);
    EXPECT_NE(std::string::npos, outcome.messages.find("--help: ")) << outcome.messages;
}

struct ThrowingCase {
    int (*run)(const ctl::Arguments&, ctl::Streams&);
    int code;
    const char* message;
};

struct Unrelated {};

// Whatever a command throws, the user gets a message and the script an exit code.
const ThrowingCase kThrowing[] = {
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw ctl::UsageError("no"); }, 2,
     "zeltctl: no; see zeltctl --help\n"},
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw ctl::Refusal("not now"); }, 2, "zeltctl: not now\n"},
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw ctl::InputError("no file"); }, 3, "zeltctl: no file\n"},
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw std::bad_alloc(); }, 3, "zeltctl: out of memory\n"},
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw std::logic_error("odd"); }, 3, "zeltctl: odd\n"},
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw Unrelated(); }, 3, "zeltctl: an unexpected error\n"},
    {[](const ctl::Arguments&, ctl::Streams&) -> int { throw "text"; }, 3, "zeltctl: an unexpected error\n"},
};

TEST(CommandLine, AnswersWhateverACommandThrows)
{
    for (const ThrowingCase& one : kThrowing) {
        const ctl::Command commands[] = {{"go", "", 0, 0, {}, "Throws", "", one.run}};
        ctl::Output data, messages;
        ctl::Streams streams = {data, messages};
        EXPECT_EQ(one.code, ctl::Run(commands, {"go"}, streams));
        EXPECT_EQ(one.message, messages.Text());
    }
}

struct PatternCase {
    const char *text, *pattern;
    bool matches;
};

TEST(Pattern, MatchesWithStarsAndQuestionMarks)
{
    const PatternCase cases[] = {{"Feed", "feed", true},   {"Feed", "Fee", false}, {"Feed", "*", true},
                                 {"", "*", true},          {"", "", true},         {"", "?", false},
                                 {"Feed", "F??d", true},   {"Feed", "F?d", false}, {"aXbXc", "a*X*c", true},
                                 {"aaab", "*aab", true},   {"abc", "*b", false},   {"a*b", "a*b", true},
                                 {"Feed 12", "*12", true}, {"Feed", "**d", true}};
    for (const PatternCase& one : cases) {
        EXPECT_EQ(one.matches, ctl::MatchesPattern(one.text, one.pattern)) << one.text << ' ' << one.pattern;
    }
}

TEST(Json, IsEscapedAndSeparated)
{
    ctl::Output out;
    ctl::JsonWriter json(out);
    json.BeginObject()
        .Member("a", "\"\\\n\x01é")
        .Member("b", -3)
        .Key("c")
        .BeginArray()
        .EndArray()
        .Key("d")
        .BeginArray();
    json.Bool(true).BeginObject().EndObject().String("").EndArray().EndObject();
    EXPECT_EQ("{\"a\":\"\\\"\\\\\\u000a\\u0001é\",\"b\":-3,\"c\":[],\"d\":[true,{},\"\"]}", out.Text());
}

std::string Pairs(const ctl::Alignment& alignment)
{
    std::string text;
    for (const ctl::AlignedPair& pair : alignment.pairs) text += pair.a && pair.b ? '=' : pair.a ? '-' : '+';
    return text;
}

TEST(Alignment, LeavesAsFewOverAsCanBe)
{
    EXPECT_EQ("", Pairs(ctl::Align({}, {})));
    EXPECT_EQ("===", Pairs(ctl::Align({1, 2, 3}, {1, 2, 3})));
    EXPECT_EQ("++", Pairs(ctl::Align({}, {1, 2})));
    EXPECT_EQ("--", Pairs(ctl::Align({1, 2}, {})));
    EXPECT_EQ("=-=", Pairs(ctl::Align({1, 2, 3}, {1, 3})));
    EXPECT_EQ("=+=", Pairs(ctl::Align({1, 3}, {1, 2, 3})));
    EXPECT_EQ("=-+=", Pairs(ctl::Align({1, 2, 3}, {1, 4, 3})));
    const ctl::Alignment moved = ctl::Align({1, 2, 3, 1, 2, 2, 1}, {3, 2, 1, 2, 1, 3});
    EXPECT_EQ(9u, moved.pairs.size());  // four match, five are left over
    // Both sequences are complete and in order, whatever is matched.
    std::size_t a = 0, b = 0;
    for (const ctl::AlignedPair& pair : moved.pairs) {
        EXPECT_EQ(pair.a ? a++ : 0, pair.a.value_or(0));
        EXPECT_EQ(pair.b ? b++ : 0, pair.b.value_or(0));
    }
    EXPECT_EQ(7u, a);
    EXPECT_EQ(6u, b);
}

TEST(Alignment, SortsOutThreeThousandLeftOver)
{
    const std::vector<int> a(1500, 1);
    const ctl::Alignment most = ctl::Align(a, std::vector<int>(1500, 2));
    EXPECT_TRUE(most.complete);
    EXPECT_EQ(3000u, most.pairs.size());
    EXPECT_FALSE(ctl::Align(a, std::vector<int>(1501, 2)).complete);
}

TEST(Alignment, GivesUpWhereNothingIsAlike)
{
    const std::vector<int> a(4000, 1), b(4000, 2);
    const ctl::Alignment alignment = ctl::Align(a, b);
    EXPECT_FALSE(alignment.complete);
    EXPECT_EQ(8000u, alignment.pairs.size());
}

}  // namespace
}  // namespace zelt::test
