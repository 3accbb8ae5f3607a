// log show, log errors, log stats: filters, results, cut-off logs, files that are not logs.
#include <gtest/gtest.h>

#include "command_runner.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

const std::string kMissing = SourceFile("tests/missing.zlg");

struct KeptCase {
    const char* name;
    std::vector<std::string> words;
    int code;
};

// Each form of output, completely, for a short log with each kind of element.
const KeptCase kKept[] = {
    {"show.txt", {"log", "show"}, 0},
    {"show_calls.txt", {"log", "show", "--calls"}, 0},
    {"errors.txt", {"log", "errors"}, 1},
    {"errors.json", {"log", "errors", "--json"}, 1},
    {"stats.txt", {"log", "stats"}, 0},
    {"stats.json", {"log", "stats", "--json"}, 0},
    {"check.txt", {"log", "check"}, 1},
    {"check.json", {"log", "check", "--json"}, 1},
    {"why.txt", {"log", "why"}, 1},
    {"export.csv", {"log", "export", "--csv"}, 0},
    {"export.json", {"log", "export", "--json"}, 0},
    {"export.html", {"log", "export", "--html"}, 0},
};

TEST(LogCommands, WriteTheKeptOutputs)
{
    for (const KeptCase& kept : kKept) {
        SCOPED_TRACE(kept.name);
        std::vector<std::string> words = kept.words;
        words.push_back(kConversation);
        const Outcome outcome = RunCommand(words);
        EXPECT_EQ(kept.code, outcome.code);
        EXPECT_EQ("", outcome.messages);
        ExpectKept(kept.name, outcome.data);
    }
}

TEST(LogCommands, WriteTheKeptOutputsOfTheGoldenLogs)
{
    for (const std::string& log : kGoldenLogs) {
        for (const char* command : {"errors", "stats", "check", "why"}) {
            SCOPED_TRACE(log + ' ' + command);
            ExpectKept(log + '_' + command + ".txt", RunCommand({"log", command, GoldenLog(log)}).data);
        }
        const Outcome calls = RunCommand({"log", "show", "--calls", "--direction", "out", GoldenLog(log)});
        ExpectKept(log + "_show.txt", calls.data);
    }
}

struct FilterCase {
    std::vector<std::string> options;
    std::vector<int> lines;  // of the calls that are shown
};

const FilterCase kFilters[] = {
    {{}, {6, 9, 15, 26, 42, 49, 66}},
    {{"--object", "feed (2)"}, {26, 42}},
    {{"--object", "F*d (?)"}, {26, 42}},
    {{"--object", "Feed"}, {}},
    {{"--interface", "ICapeUtilities"}, {6, 66}},
    {{"--method", "Get*"}, {26, 49}},
    {{"--direction", "out"}, {26, 42}},
    {{"--direction=in", "--method=Get*"}, {49}},
    {{"--result", "failed"}, {15, 66}},
    {{"--result", "ok"}, {6, 9, 26, 42, 49}},
    {{"--result", "violation"}, {15}},
    {{"--result", "warning"}, {9, 26}},
    {{"--result", "ok", "--direction", "out"}, {26, 42}},
};

TEST(LogShow, ShowsTheCallsThatPassTheFilter)
{
    for (const FilterCase& filter : kFilters) {
        std::vector<std::string> words = {"log", "show", kConversation, "--calls"};
        words.insert(words.end(), filter.options.begin(), filter.options.end());
        const Outcome outcome = RunCommand(words);
        EXPECT_EQ(0, outcome.code);
        std::vector<int> lines;
        for (const std::string& line : LinesOf(outcome.data)) {
            const std::size_t mark = line.find_first_not_of(' ', 8);
            if (line[mark] == '>' || line[mark] == '<') lines.push_back(std::stoi(line));
        }
        EXPECT_EQ(filter.lines, lines) << (filter.options.empty() ? "" : filter.options[0] + filter.options.back());
    }
}

TEST(LogShow, CountsLinesBeyondSixteenBits)
{
    std::string entries;
    for (int i = 0; i < 70'000; ++i) entries += "<info value=\"x\"/>\r\n";
    const TemporaryLog log(InLog(entries + "<error value=\"last\"/>\r\n"));
    EXPECT_EQ("70003: violation: last\n", RunCommand({"log", "errors", log.Path()}).data);
}

TEST(LogErrors, ShowWhatTheCalleeSaidWithItsFailure)
{
    const TemporaryLog log(InLog(
        "<func name=\"ICapeUtilities::Initialize\" direc=\"in\" object=\"A\">\r\n"
        " <info value=\"Error information: &quot;no licence&quot; (source: B)\"/>\r\n"
        " <error value=\"E_FAIL: Unspecified error\"/>\r\n</func>\r\n"
        "<func name=\"ICapeUtilities::Edit\" direc=\"in\" object=\"A\">\r\n"
        " <info value=\"Description by the object&apos;s ECapeUser: &quot;no window&quot;\"/>\r\n"
        "<warning value=\"One or more non-printable characters suppressed in above info string (these cannot be stored "
        "in XML)\"/>\r\n"
        " <error value=\"E_NOTIMPL: Not implemented\"/>\r\n</func>\r\n"
        "<func name=\"ICapeUtilities::Terminate\" direc=\"in\" object=\"A\">\r\n"
        " <info value=\"Returning S_OK\"/>\r\n <error value=\"object not created\"/>\r\n</func>\r\n"));
    EXPECT_EQ(
        "5: failure in ICapeUtilities::Initialize (A): E_FAIL: Unspecified error\n"
        "    Error information: \"no licence\" (source: B)\n"
        "10: failure in ICapeUtilities::Edit (A): E_NOTIMPL: Not implemented\n"
        "    Description by the object's ECapeUser: \"no window\"\n"
        "14: failure in ICapeUtilities::Terminate (A): object not created\n",
        RunCommand({"log", "errors", "--no-warnings", log.Path()}).data);
    const std::string json = RunCommand({"log", "errors", "--json", log.Path()}).data;
    EXPECT_NE(std::string::npos,
              json.find("\"text\":\"E_FAIL: Unspecified error\",\"detail\":\"Error information: \\\"no licence\\\" "
                        "(source: B)\",\"calls\":"))
        << json;
    EXPECT_NE(std::string::npos, json.find("\"text\":\"object not created\",\"calls\":")) << json;
}

TEST(LogShow, ShowsWhatStandsBeforeTheCut)
{
    const std::string whole = ReadBytes(kConversation);
    const std::string shown = RunCommand({"log", "show", kConversation}).data;
    const std::size_t end = whole.find("</zeltlogdocument>");
    for (std::size_t cut = whole.find("/>") + 2; cut < end; cut += 7) {
        const TemporaryLog log(whole.substr(0, cut));
        const Outcome outcome = RunCommand({"log", "show", log.Path()});
        ASSERT_EQ(1, outcome.code) << cut;
        ASSERT_NE(std::string::npos, outcome.messages.find("cut off or damaged")) << cut;
        // The last line may lack values that the whole log has.
        const std::size_t last = outcome.data.rfind('\n', outcome.data.size() - 2) + 1;
        ASSERT_EQ(shown.substr(0, last), outcome.data.substr(0, last)) << cut;
    }
}

TEST(LogShow, ShowsValuesOutsideOfArgumentsInOneLine)
{
    const TemporaryLog log(
        InLog("<func name=\"A::B\" direc=\"in\" object=\"P\">\r\n<arg name=\"a\" direc=\"in\" type=\"long\"/>\r\n"
              "<argval value=\"1\"/>\r\n<argval value=\"2\"/>\r\n</func>\r\n"));
    for (const char* command : {"show", "follow"}) {
        EXPECT_EQ("       3  > A::B  P\n       4    in a (long) =\n       5    = 1, 2\n",
                  RunCommand({"log", command, log.Path()}).data);
    }
}

// An element that ZELT does not know is shown as a value.
TEST(LogShow, ClosesTheBracketOfAnUnknownElement)
{
    const TemporaryLog log(
        InLog("<func name=\"A::B\" direc=\"in\" object=\"P\">\r\n<arg name=\"a\" direc=\"in\" type=\"long\">\r\n"
              "<unit value=\"K\">\r\n<argval value=\"1\"/>\r\n</unit>\r\n<argval value=\"2\"/>\r\n</arg>\r\n"
              "</func>\r\n"));
    const std::string shown = RunCommand({"log", "show", log.Path()}).data;
    EXPECT_NE(std::string::npos, shown.find("(1), 2\n")) << shown;
    const std::string page = RunCommand({"log", "export", "--html", log.Path()}).data;
    EXPECT_NE(std::string::npos, page.find("(<q>1</q>), <q>2</q></p>")) << page.substr(page.find("<main"));
}

struct DamageCase {
    const char *name, *entry, *shown;
};

TEST(LogShow, ShowsWhatFollowsDamageThatItCanReadOver)
{
    const DamageCase cases[] = {
        {"an unknown entity", "<info value=\"a&unknown;b\"/>\r\n", "       4  info: ab\n"},
        {"a character that no text may have", "<info value=\"a&#1;b\"/>\r\n", "       4  info: ab\n"},
        {"an attribute twice", "<info value=\"a\" value=\"b\"/>\r\n", "       4  info: a\n"},
        {"a stray end", "]]>\r\n", ""},
    };
    for (const DamageCase& one : cases) {
        SCOPED_TRACE(one.name);
        const TemporaryLog log(
            InLog("<info value=\"before\"/>\r\n" + std::string(one.entry) + "<info value=\"behind\"/>\r\n"));
        const Outcome outcome = RunCommand({"log", "show", log.Path()});
        EXPECT_EQ(1, outcome.code);
        EXPECT_EQ("       3  info: before\n" + std::string(one.shown) + "       5  info: behind\n", outcome.data);
        EXPECT_NE(std::string::npos, outcome.messages.find(": line 4: the log is cut off or damaged here"))
            << outcome.messages;
    }
}

TEST(LogCommands, SayOfACutOffLogThatTheAnswerIsNotWhole)
{
    const std::vector<std::string> commands[] = {
        {"show"},
        {"show", "--calls"},
        {"show", "--result", "ok"},
        {"errors"},
        {"errors", "--json"},
        {"stats"},
        {"stats", "--json"},
        {"export", "--csv"},
        {"export", "--json"},
        {"export", "--html"},
        {"redact"},
        {"why"},
        {"show", "--at", "6"},
    };
    const std::string whole = ReadBytes(kConversation);
    // With something to find before the cut, and without.
    for (const char* mark : {"Terminate", "<warning"}) {
        const TemporaryLog log(whole.substr(0, whole.find(mark)));
        const std::string message = log.Path() + ": line ";
        for (std::vector<std::string> words : commands) {
            SCOPED_TRACE(words[0] + ' ' + words.back());
            words.insert(words.begin(), "log");
            words.push_back(log.Path());
            const Outcome outcome = RunCommand(words);
            EXPECT_EQ(1, outcome.code);
            EXPECT_TRUE(outcome.messages.starts_with(message)) << outcome.messages;
            EXPECT_EQ(1u, LinesOf(outcome.messages).size()) << outcome.messages;
        }
        // Equal logs, and different logs with the cut on either side.
        for (const auto& [a, b] : {std::pair(log.Path(), log.Path()), std::pair(log.Path(), kConversation),
                                   std::pair(kConversation, log.Path())}) {
            const Outcome outcome = RunCommand({"log", "diff", a, b});
            EXPECT_EQ(1, outcome.code);
            EXPECT_TRUE(outcome.messages.starts_with(message)) << outcome.messages;
        }
        // For check, the cut is a finding.
        EXPECT_EQ(1, RunCommand({"log", "check", log.Path()}).code);
    }
}

TEST(LogCommands, RefuseWhatIsNoLog)
{
    const std::string contents[] = {"", "text", "<?xml version=\"1.0\"?><page><info value=\"x\"/></page>",
                                    "\x89PNG\r\n"};
    for (const std::string& content : contents) {
        const TemporaryLog log(content);
        for (const char* command : {"show", "errors", "stats", "check", "redact", "why"}) {
            const Outcome outcome = RunCommand({"log", command, log.Path()});
            EXPECT_EQ(3, outcome.code) << command << ' ' << content;
            EXPECT_NE(std::string::npos, outcome.messages.find("not a log of ZELT")) << outcome.messages;
        }
    }
    const Outcome missing = RunCommand({"log", "show", kMissing});
    EXPECT_EQ(3, missing.code);
    EXPECT_NE(std::string::npos, missing.messages.find("No such file")) << missing.messages;
}

TEST(LogCommands, SayWhenAFileCannotBeReadOrIsAFolder)
{
    for (const char* command : {"show", "errors", "stats", "check", "redact", "why"}) {
        const Outcome outcome = RunCommand({"log", command, SourceFile("tests")});
        EXPECT_EQ(3, outcome.code) << command;
        EXPECT_EQ("zeltctl: " + SourceFile("tests") + ": this is a folder, not a log\n", outcome.messages) << command;
    }
    for (const char* form : {"--html", "--json", "--csv"}) {
        EXPECT_EQ(3, RunCommand({"log", "export", form, kMissing}).code) << form;
    }
    EXPECT_EQ(3, RunCommand({"log", "diff", kMissing, kConversation}).code);
    EXPECT_EQ(3, RunCommand({"log", "diff", kConversation, kMissing}).code);
    EXPECT_EQ(3, RunCommand({"log", "follow", "--idle", "0", kMissing}).code);
}

TEST(LogCommands, AnswerInUtf8WhateverTheNames)
{
    const TemporaryLog log(
        InLog("<func name=\"A::B\" direc=\"in\" object=\"Sch\u00fctt \u6c34\"/>\n<error value=\"\u00e9\"/>\n"),
        "Pr\u00fcfung \u6c34");
    EXPECT_EQ("       3  > A::B  Sch\u00fctt \u6c34\n       4  error: \u00e9\n",
              RunCommand({"log", "show", log.Path()}).data);
    EXPECT_EQ(LinesOf(RunCommand({"log", "stats", log.Path()}).data)[4], "         1  Sch\u00fctt \u6c34");
    EXPECT_NE(std::string::npos,
              RunCommand({"log", "export", "--json", log.Path()}).data.find("\"object\":\"Sch\u00fctt \u6c34\""));
    EXPECT_NE(std::string::npos, RunCommand({"log", "export", "--html", log.Path()}).data.find("Pr\u00fcfung \u6c34"));
    EXPECT_NE("", RunCommand({"log", "show", "--object", "sch\u00fctt*", log.Path()}).data);
    const TemporaryLog latin(
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><zeltlogdocument><info value=\"\xe9\"/></zeltlogdocument>");
    EXPECT_EQ("       1  info: \u00e9\n", RunCommand({"log", "show", latin.Path()}).data);
}

TEST(LogStats, SortsByTheColumnThatIsAskedFor)
{
    const auto first = [](const std::string& column) {
        return LinesOf(RunCommand({"log", "stats", "--sort", column, kConversation}).data)[1];
    };
    EXPECT_NE(std::string::npos, first("name").find("ICapeThermoCompounds::GetCompoundConstant"));
    EXPECT_NE(std::string::npos, first("failures").find("ICapeThermoPropertyRoutine::CalcSinglePhaseProp"));
    EXPECT_NE(std::string::npos, first("violations").find("ICapeThermoPropertyRoutine::CalcSinglePhaseProp"));
    EXPECT_EQ(2, RunCommand({"log", "stats", "--sort", "colour", kConversation}).code);
}

TEST(LogStats, ShowTheTopRows)
{
    EXPECT_EQ(
        "     calls   failures violations  method\n"
        "         1          1          1  ICapeThermoPropertyRoutine::CalcSinglePhaseProp\n"
        "         1          1          0  ICapeUtilities::Terminate\n"
        "                                  and 5 more\n"
        "\n"
        "     calls   failures   warnings violations  object\n"
        "         5          2          1          1  A & <B>\n"
        "         2          0          1          0  Feed (2)\n"
        "\n"
        "     calls   failures   warnings violations  all\n"
        "         7          2          3          1  including what is outside of calls\n"
        "\n"
        "1 system query hidden\n",
        RunCommand({"log", "stats", "--top", "2", "--sort", "failures", kConversation}).data);
    // A column with only zeros in the rows shown is left out.
    const TemporaryLog log(
        InLog("<func name=\"A::Often\" direc=\"in\" object=\"o\"></func>"
              "<func name=\"A::Often\" direc=\"in\" object=\"o\"></func>"
              "<func name=\"A::Once\" direc=\"in\" object=\"p\"><error value=\"E_FAIL\"/></func>"));
    const std::string often = RunCommand({"log", "stats", "--top", "1", log.Path()}).data;
    EXPECT_TRUE(often.starts_with("     calls  method\n         2  A::Often\n            and 1 more\n")) << often;
    const std::string json = RunCommand({"log", "stats", "--top", "1", "--json", kConversation}).data;
    EXPECT_EQ(3u, LinesOf(json).size()) << json;
    for (const char* number : {"0", "1.5", "-1", "x", "1e9"}) {
        EXPECT_EQ(2, RunCommand({"log", "stats", "--top", number, kConversation}).code) << number;
    }
}

}  // namespace
}  // namespace zelt::test
