// Several logs, folders, standard input and -o: what the commands for logs read and where they write.
#include <gtest/gtest.h>

#include <filesystem>

#include "command_runner.h"
#include "standard_input.h"
#include "temporary_folder.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

const std::string kNotFound = "No such file or directory";
const std::string kFailing =
    InLog("<func name=\"A::Fails\" direc=\"in\" object=\"P\">\r\n <error value=\"E_FAIL: no\"/>\r\n</func>\r\n");
const std::string kFine = InLog("<func name=\"A::Works\" direc=\"in\" object=\"P\">\r\n</func>\r\n");
const std::string kWarned = InLog("<warning value=\"P: QueryInterface for unsupported interface IMarshal\"/>\r\n");

TEST(SeveralLogs, AreAnsweredUnderAHeadingEach)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", kFailing), b = folder.Write("b.zlg", kFine);
    EXPECT_EQ(a + ":\n       3  > A::Fails  P\n       4    error: E_FAIL: no\n\n" + b + ":\n       3  > A::Works  P\n",
              RunCommand({"log", "show", a, b}).data);
    EXPECT_EQ(b + ":\n       3  > A::Works  P\n\n" + a + ":\n       3  > A::Fails  P\n       4    error: E_FAIL: no\n",
              RunCommand({"log", "show", b, a}).data);
}

TEST(SeveralLogs, HaveHeadingsOnlyWhereThereAreFindings)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", kFailing), b = folder.Write("b.zlg", kFine),
                      c = folder.Write("c.zlg", kWarned), d = folder.Write("d.zlg", kFailing),
                      e = folder.Write("e.zlg", kWarned);
    const Outcome outcome = RunCommand({"log", "errors", folder.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(a + ":\n4: failure in A::Fails (P): E_FAIL: no\n" + d +
                  ":\n4: failure in A::Fails (P): E_FAIL: no\n2 system queries hidden\n",
              outcome.data);
    EXPECT_EQ("2 system queries hidden\n", RunCommand({"log", "check", folder.Path()}).data);
    EXPECT_EQ(0, RunCommand({"log", "check", folder.Path()}).code);
}

TEST(SeveralLogs, BecomeAnArrayInJson)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", kFailing), b = folder.Write("b.zlg", kFine);
    const auto quoted = [](const std::string& path) {
        std::string out = "\"";
        for (const char c : path) out.append(c == '\\' ? 2 : 1, c);
        return out + '"';
    };
    EXPECT_EQ("[\n{\"log\":" + quoted(a) +
                  ",\"answer\":[\n{\"line\":4,\"kind\":\"failure\",\"text\":\"E_FAIL: no\",\"calls\":[{\"line\":3,"
                  "\"name\":\"A::Fails\",\"object\":\"P\"}]}]\n},\n{\"log\":" +
                  quoted(b) + ",\"answer\":[]\n}]\n",
              RunCommand({"log", "errors", "--json", a, b}).data);
    folder.Write("c.zlg", "nothing");
    const Outcome none = RunCommand({"log", "errors", "--json", folder.Of("c.zlg"), folder.Of("c.zlg")});
    EXPECT_EQ("[]\n", none.data);
    EXPECT_EQ(3, none.code);
}

// Only reading shows whether standard input is a log.
TEST(SeveralLogs, AreAnArrayInJsonAlthoughStandardInputIsNone)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", kFailing);
    const TemporaryLog none("");
    const StandardInput input(none.Path());
    const Outcome outcome = RunCommand({"log", "errors", "--json", "-", a});
    EXPECT_EQ(3, outcome.code);
    EXPECT_TRUE(outcome.data.starts_with("[\n{\"log\":\"standard input\",\"answer\":null},\n{\"log\":\""))
        << outcome.data;
    EXPECT_TRUE(outcome.data.ends_with("}]\n")) << outcome.data;
}

TEST(SeveralLogs, AreAnsweredAlthoughOneCannotBeRead)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", kFailing), b = folder.Write("b.zlg", "no log"),
                      c = folder.Of("missing.zlg");
    const Outcome outcome = RunCommand({"log", "errors", c, b, a});
    EXPECT_EQ(3, outcome.code);
    EXPECT_EQ(a + ":\n4: failure in A::Fails (P): E_FAIL: no\n", outcome.data);
    EXPECT_EQ("zeltctl: " + c + ": " + kNotFound + "\nzeltctl: " + b + ": this is not a log of ZELT, or it is empty\n",
              outcome.messages);
}

TEST(SeveralLogs, ReportTheOneThatIsCutOff)
{
    const TemporaryFolder folder;
    const std::string a = folder.Write("a.zlg", kFine), b = folder.Write("b.zlg", kFine.substr(0, kFine.size() - 30));
    for (const char* command : {"show", "errors", "stats", "why"}) {
        const Outcome outcome = RunCommand({"log", command, folder.Path()});
        EXPECT_EQ(1, outcome.code) << command;
        EXPECT_TRUE(outcome.messages.starts_with(b + ": line ")) << outcome.messages;
        EXPECT_EQ(1u, LinesOf(outcome.messages).size()) << outcome.messages;
    }
}

TEST(SeveralLogs, ComeFromFoldersAndPatterns)
{
    const TemporaryFolder folder;
    const std::string b = folder.Write("b.ZLG", kFine), a = folder.Write("a.zlg", kFine);
    folder.Write("c.txt", kFine);
    folder.Write("deeper/d.zlg", kFine);
    const std::string both = a + ":\n       3  > A::Works  P\n\n" + b + ":\n       3  > A::Works  P\n";
    EXPECT_EQ(both, RunCommand({"log", "show", folder.Path()}).data);
    EXPECT_EQ(both, RunCommand({"log", "show", folder.Of("*.zlg")}).data);
    EXPECT_EQ(both, RunCommand({"log", "show", folder.Of("?.zlg")}).data);
    EXPECT_EQ("       3  > A::Works  P\n", RunCommand({"log", "show", folder.Of("a*.zlg")}).data);
    const Outcome none = RunCommand({"log", "show", folder.Of("x*.zlg")});
    EXPECT_EQ(3, none.code);
    EXPECT_EQ("zeltctl: " + folder.Of("x*.zlg") + ": no file matches\n", none.messages);
}

TEST(StandardInputLog, IsReadByEveryCommand)
{
    const std::vector<std::string> commands[] = {
        {"errors"}, {"errors", "--context"}, {"stats"},           {"check"}, {"why"}, {"export", "--csv"},
        {"follow"}, {"show", "--calls"},     {"export", "--json"}};
    for (std::vector<std::string> words : commands) {
        SCOPED_TRACE(words[0]);
        words.insert(words.begin(), "log");
        std::vector<std::string> fromFile = words;
        fromFile.push_back(kConversation);
        words.push_back("-");
        const StandardInput input(kConversation);
        const Outcome outcome = RunCommand(words), expected = RunCommand(fromFile);
        EXPECT_EQ(expected.data, outcome.data);
        EXPECT_EQ(expected.code, outcome.code);
        EXPECT_EQ("", outcome.messages);
    }
    const StandardInput input(kConversation);
    EXPECT_NE(std::string::npos,
              RunCommand({"log", "export", "--html", "-"}).data.find("<title>standard input</title>"));
    const Outcome twice = RunCommand({"log", "show", "-", "-"});
    EXPECT_EQ(2, twice.code);
    EXPECT_NE(std::string::npos, twice.messages.find("standard input is named twice")) << twice.messages;
}

TEST(StandardInputLog, IsNamedInMessages)
{
    const TemporaryLog cut(kFine.substr(0, kFine.size() - 30)), none("");
    {
        const StandardInput input(cut.Path());
        const Outcome outcome = RunCommand({"log", "stats", "-"});
        EXPECT_EQ(1, outcome.code);
        EXPECT_TRUE(outcome.messages.starts_with("standard input: line 3: the log is cut off")) << outcome.messages;
    }
    const StandardInput input(none.Path());
    EXPECT_EQ("zeltctl: standard input: this is not a log of ZELT, or it is empty\n",
              RunCommand({"log", "show", "-"}).messages);
    // Nothing more comes from a pipe that has ended, so the command does not wait.
    const StandardInput again(cut.Path());
    EXPECT_EQ("standard input: the log has no end yet\n", RunCommand({"log", "follow", "-"}).messages);
}

TEST(OutputFile, HoldsWhatWouldHaveBeenShown)
{
    const TemporaryFolder folder;
    const std::vector<std::string> commands[] = {
        {"show"}, {"errors", "--json"}, {"stats"},  {"check"},
        {"why"},  {"export", "--csv"},  {"follow"}, {"diff", GoldenLog("sample_simulator_11")}};
    for (std::vector<std::string> words : commands) {
        SCOPED_TRACE(words[0]);
        words.insert(words.begin(), "log");
        words.push_back(kConversation);
        const Outcome shown = RunCommand(words);
        words.insert(words.end(), {"-o", folder.Of("out")});
        const Outcome written = RunCommand(words);
        EXPECT_EQ(shown.code, written.code);
        EXPECT_EQ("", written.data);
        EXPECT_EQ(shown.messages, written.messages);
        EXPECT_EQ(shown.data, ReadBytes(folder.Of("out")));
        EXPECT_EQ(std::vector<std::string>{"out"}, folder.Names());
    }
}

TEST(OutputFile, StaysAsItWasWhenTheCommandFails)
{
    const TemporaryFolder folder;
    const std::string out = folder.Write("out", "before");
    EXPECT_EQ(3, RunCommand({"log", "errors", "--json", "-o", out, folder.Of("missing.zlg")}).code);
    EXPECT_EQ(2, RunCommand({"log", "show", "--at", "1000", "-o", out, kConversation}).code);
    EXPECT_EQ("before", ReadBytes(out));
    EXPECT_EQ(std::vector<std::string>{"out"}, folder.Names());
    // A log may be replaced by what is made from it.
    const std::string log = folder.Write("a.zlg", kFine);
    EXPECT_EQ(0, RunCommand({"log", "show", "-o", log, log}).code);
    EXPECT_EQ("       3  > A::Works  P\n", ReadBytes(log));
}

TEST(OutputFile, IsRefusedWhereNoneCanBe)
{
    const TemporaryFolder folder;
    const Outcome inFolder = RunCommand({"log", "show", "-o", folder.Path(), kConversation});
    EXPECT_EQ(2, inFolder.code);
    EXPECT_EQ("zeltctl: " + folder.Path() + ": this is a folder\n", inFolder.messages);
    const Outcome nowhere = RunCommand({"log", "show", "-o", folder.Of("no/out"), kConversation});
    EXPECT_EQ(3, nowhere.code);
    EXPECT_EQ("zeltctl: " + folder.Of("no/out") + ": " + kNotFound + "\n", nowhere.messages);
}

TEST(OutputFolder, TakesAFileForEachLog)
{
    const TemporaryFolder logs, out;
    logs.Write("a.zlg", kFine);
    logs.Write("b.zlg", kFailing);
    logs.Write("more/a.zlg", kFailing);
    const Outcome outcome = RunCommand({"log", "export", "--csv", "-o", out.Path(), logs.Path(), logs.Of("more")});
    EXPECT_EQ(0, outcome.code) << outcome.messages;
    EXPECT_EQ((std::vector<std::string>{"a (2).csv", "a.csv", "b.csv"}), out.Names());
    EXPECT_EQ(RunCommand({"log", "export", "--csv", logs.Of("b.zlg")}).data, ReadBytes(out.Of("b.csv")));
    EXPECT_EQ(ReadBytes(out.Of("b.csv")), ReadBytes(out.Of("a (2).csv")));
    // For several logs, the folder is created if it does not exist; for one log, it must exist.
    EXPECT_EQ(0, RunCommand({"log", "redact", "-o", out.Of("new"), logs.Path()}).code);
    EXPECT_TRUE(fs::exists(out.Of("new/a redacted.zlg")));
    EXPECT_TRUE(fs::exists(out.Of("new/b redacted.zlg")));
    EXPECT_EQ(0, RunCommand({"log", "export", "--html", "-o", out.Of("new"), logs.Of("a.zlg")}).code);
    EXPECT_TRUE(fs::exists(out.Of("new/a.html")));
}

TEST(OutputFolder, TellsNamesApartThatDifferOnlyInCase)
{
    const TemporaryFolder logs, out;
    logs.Write("a.zlg", kFine);
    logs.Write("more/A.zlg", kFailing);
    EXPECT_EQ(0, RunCommand({"log", "export", "--csv", "-o", out.Path(), logs.Path(), logs.Of("more")}).code);
    EXPECT_EQ((std::vector<std::string>{"A (2).csv", "a.csv"}), out.Names());
}

TEST(OutputFolder, IsNeededForSeveralFiles)
{
    const TemporaryFolder logs;
    logs.Write("a.zlg", kFine);
    logs.Write("b.zlg", "no log");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"log", "export", "--html", logs.Path()}, {"log", "redact", logs.Path()}}) {
        const Outcome outcome = RunCommand(words);
        EXPECT_EQ(2, outcome.code);
        EXPECT_EQ("", outcome.data);
        EXPECT_NE(std::string::npos, outcome.messages.find("several logs need a folder for the files, -o FOLDER"));
    }
    const Outcome file = RunCommand({"log", "redact", "-o", logs.Of("a.zlg"), logs.Path()});
    EXPECT_EQ(2, file.code);
    EXPECT_EQ("zeltctl: " + logs.Of("a.zlg") + ": this is not a folder\n", file.messages);
    // The other logs are exported although one cannot be read.
    const TemporaryFolder out;
    EXPECT_EQ(3, RunCommand({"log", "export", "--csv", "-o", out.Path(), logs.Path()}).code);
    EXPECT_EQ(std::vector<std::string>{"a.csv"}, out.Names());
}

TEST(CallFilters, SayWhenNoCallPasses)
{
    for (const char* command : {"show", "errors", "stats", "follow"}) {
        const Outcome none = RunCommand({"log", command, "--object", "Fed", kConversation});
        EXPECT_EQ(0, none.code) << command;
        EXPECT_EQ(kConversation + ": no call passes the filter\n", none.messages) << command;
        EXPECT_EQ("", RunCommand({"log", command, "--object", "Feed*", kConversation}).messages) << command;
    }
    EXPECT_EQ(kConversation + ": no call passes the filter\n",
              RunCommand({"log", "show", "--result", "failed", "--object", "Feed*", kConversation}).messages);
    const TemporaryLog fine(kFine);
    EXPECT_EQ(fine.Path() + ": no call passes the filter\n",
              RunCommand({"log", "show", "--result", "failed", fine.Path()}).messages);
}

TEST(LogErrors, ListWarningsThatSayTheSameOnce)
{
    const auto released = [](const char* name) {
        return "<warning value=\"Object &quot;" + std::string(name) +
               "&quot; (type: Material Object) is not released at final release of &quot;P&quot; (reference count "
               "2)\"/>\r\n";
    };
    const std::string lacks = "<warning value=\"P: QueryInterface for unsupported interface ICapeUtilities\"/>\r\n";
    const TemporaryLog log(
        InLog(released("A") + lacks + released("B") +
              "<func name=\"A::M\" direc=\"in\" object=\"P\">\r\n<warning value=\"odd\"/>\r\n<warning "
              "value=\"odd\"/>\r\n<error value=\"E_FAIL: no\"/>\r\n<error value=\"E_FAIL: no\"/>\r\n</func>\r\n" +
              released("C") + "<warning value=\"odd\"/>\r\n" +
              "<warning value=\"P: QueryInterface for unsupported interface ICapeUnit\"/>\r\n"));
    const Outcome outcome = RunCommand({"log", "errors", log.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        "3: warning: Object \"A\" (type: Material Object) is not released at final release of \"P\" (reference count "
        "2)\n"
        "4: warning: P: QueryInterface for unsupported interface ICapeUtilities\n"
        "7: warning in A::M (P): odd\n"
        "9: failure in A::M (P): E_FAIL: no\n"
        "10: failure in A::M (P): E_FAIL: no\n"
        "13: warning: odd\n"
        "14: warning: P: QueryInterface for unsupported interface ICapeUnit\n"
        "3 more warnings like these; --all lists them\n",
        outcome.data);
    EXPECT_EQ(10u, LinesOf(RunCommand({"log", "errors", "--all", log.Path()}).data).size());
    EXPECT_EQ(11u, LinesOf(RunCommand({"log", "errors", "--json", log.Path()}).data).size());
}

TEST(LogErrors, ShowTheContextWhenAsked)
{
    EXPECT_EQ(
        "25: violation in ICapeThermoPropertyRoutine::CalcSinglePhaseProp (A & <B>): Phase label cannot be empty\n"
        "          15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
        "          16    props = \"enthalpy\", \"a, \"b\"\"\n"
        "          22    phaseLabel = \"\"\n"
        "38: warning in ICapeThermoMaterial::GetOverallProp (Feed (2)): Old value for CapeDoubleEmpty used: should be "
        "NaN\n"
        "          15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
        "          26    < ICapeThermoMaterial::GetOverallProp  Feed (2)\n"
        "          27      property = \"temperature\"\n"
        "          30      basis = <NULL>\n"
        "47: failure in ICapeThermoPropertyRoutine::CalcSinglePhaseProp (A & <B>): ECapeInvalidArgumentHR: The "
        "property \"a, \"b\"\" is not calculated\n"
        "          15  > ICapeThermoPropertyRoutine::CalcSinglePhaseProp  A & <B>\n"
        "          16    props = \"enthalpy\", \"a, \"b\"\"\n"
        "          22    phaseLabel = \"\"\n",
        RunCommand({"log", "errors", "--context", "--interface", "*Thermo*", "--method", "*Prop", kConversation}).data);
    EXPECT_EQ(
        "3: warning: odd\n",
        RunCommand({"log", "errors", "--context", TemporaryLog(InLog("<warning value=\"odd\"/>\r\n")).Path()}).data);
}

}  // namespace
}  // namespace zelt::test
