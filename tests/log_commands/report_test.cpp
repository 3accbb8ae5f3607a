// zeltctl report, with made-up texts about the computer: what it shows, what it asks, and the zip file that it writes.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "ctl/report/report.h"
#include "ctl/report/zip_writer.h"
#include "tests/log_commands/command_runner.h"
#include "tests/log_commands/standard_input.h"
#include "tests/log_commands/temporary_folder.h"
#include "tests/log_commands/zip_contents.h"

namespace zelt::test {
namespace {

constexpr ctl::Option kOptions[] = {{"-o", "FILE", ""}, {"--yes", nullptr, ""}, {"--keep-errors", nullptr, ""}};

int Report(const ctl::Arguments& arguments, ctl::Streams& streams)
{
    const ctl::ReportText texts[] = {{"versions.txt", "of this test", "zeltctl 1\n"},
                                     {"doctor.txt", "healthy", "fine\nfine\n"}};
    return ctl::WriteReport(arguments, texts, streams);
}

Outcome RunReport(std::vector<std::string> words)
{
    const ctl::Command commands[] = {{"report", "[LOG...]", 0, 9, kOptions, "", "", Report}};
    words.insert(words.begin(), "report");
    ctl::Output data, messages;
    ctl::Streams streams = {data, messages};
    const int code = ctl::Run(commands, words, streams);
    return {code, data.Text(), messages.Text()};
}

class ReportTest : public testing::Test {
protected:
    // What the user types.
    void Answer(const std::string& text)
    {
        input.reset();
        input = std::make_unique<StandardInput>(folder.Write("answer", text));
    }
    std::map<std::string, std::string> Contents() const
    {
        const std::string bytes = ReadBytes(zip);
        return ZipContents(bytes).Files();
    }
    // The folder that the question names.
    static std::string TextsIn(const std::string& data)
    {
        const std::string before = "\nThe texts are in ", after = " until you answer, so that you can read them.\n";
        const std::size_t begin = data.find(before) + before.size(), end = data.find(after);
        return end == std::string::npos ? "(none)" : data.substr(begin, end - begin);
    }

    TemporaryFolder folder;
    const std::string zip = folder.Of("report.zip");

private:
    std::unique_ptr<StandardInput> input;
};

constexpr char kShown[] =
    "The report contains:\n"
    "  versions.txt          10 bytes  of this test\n"
    "  doctor.txt            10 bytes  healthy\n"
    "\n"
    "versions.txt:\n"
    "zeltctl 1\n"
    "\n"
    "doctor.txt:\n"
    "fine\n"
    "fine\n";

TEST_F(ReportTest, ShowsWhatItContainsAndWritesItAfterAYes)
{
    for (const char* answer : {"y\n", "Y\r\n", "yes", "Yes \n"}) {
        Answer(answer);
        const Outcome outcome = RunReport({"-o", zip});
        EXPECT_EQ(0, outcome.code);
        EXPECT_EQ(std::string(kShown) + "\nThe texts are in " + TextsIn(outcome.data) +
                      " until you answer, so that you can read them.\nNothing is sent. Write " + zip +
                      "? [y/N] \nWritten: " + zip + '\n',
                  outcome.data);
        EXPECT_EQ("", outcome.messages);
        EXPECT_FALSE(std::filesystem::exists(TextsIn(outcome.data))) << "the texts are left behind";
        EXPECT_EQ((std::map<std::string, std::string>{{"versions.txt", "zeltctl 1\n"}, {"doctor.txt", "fine\nfine\n"}}),
                  Contents());
        std::filesystem::remove(zip);
    }
}

TEST_F(ReportTest, WritesNothingWithoutAYes)
{
    for (const char* answer : {"n\n", "\n", "", "yesterday\n", " y\n", "\ny\n"}) {
        Answer(answer);
        const Outcome outcome = RunReport({"-o", zip});
        EXPECT_EQ(2, outcome.code) << answer;
        EXPECT_TRUE(outcome.data.starts_with(kShown)) << outcome.data;
        EXPECT_TRUE(outcome.data.ends_with("? [y/N] ")) << outcome.data;
        EXPECT_EQ("zeltctl: nothing is written without a yes; --yes answers beforehand\n", outcome.messages);
        EXPECT_EQ(std::vector<std::string>{"answer"}, folder.Names()) << answer;
        EXPECT_FALSE(std::filesystem::exists(TextsIn(outcome.data)));
    }
}

TEST_F(ReportTest, AsksNothingWhenTheAnswerIsGiven)
{
    Answer("");
    const Outcome outcome = RunReport({"--yes", "-o", zip});
    EXPECT_EQ(0, outcome.code) << outcome.messages;
    EXPECT_EQ(std::string(kShown) + "\nWritten: " + zip + '\n', outcome.data);
    EXPECT_EQ(2u, Contents().size());
}

TEST_F(ReportTest, ContainsEachLogRedactedAndWithoutItsName)
{
    const std::string first = folder.Write("Secret package.zlg", ReadBytes(GoldenLog("sample_simulator_11")));
    const std::string second = folder.Write("Secret unit.zlg", ReadBytes(GoldenLog("sample_flowsheet_unit")));
    const Outcome outcome = RunReport({first, second, "--yes", "-o", zip});
    EXPECT_EQ(0, outcome.code) << outcome.messages;
    const auto contents = Contents();
    ASSERT_EQ(4u, contents.size());
    const struct {
        const char* name;
        const std::string &log, word;
    } rows[] = {{"log-1.zlg", first, "Aromatics"}, {"log-2.zlg", second, "Heat duty"}};
    for (const auto& row : rows) {
        ASSERT_TRUE(contents.contains(row.name)) << row.name;
        const std::string& text = contents.at(row.name);
        EXPECT_NE(std::string::npos,
                  outcome.data.find(std::to_string(text.size()) + " bytes  redacted from " + row.log))
            << outcome.data;
        // Redacting keeps the number of lines, but no names.
        EXPECT_EQ(LinesOf(ReadBytes(row.log)).size(), LinesOf(text).size());
        EXPECT_TRUE(text.ends_with("</zeltlogdocument>\r\n"));
        EXPECT_NE(std::string::npos, ReadBytes(row.log).find(row.word));
        EXPECT_EQ(std::string::npos, text.find(row.word));
    }
    EXPECT_EQ(std::string::npos, ReadBytes(zip).find("Secret"));
}

TEST_F(ReportTest, OfOneLogCallsItLog)
{
    const std::string log = GoldenLog("sample_simulator_10");
    const Outcome outcome = RunReport({log, "-o", zip, "--yes"});
    EXPECT_EQ(0, outcome.code) << outcome.messages;
    EXPECT_TRUE(Contents().contains("log.zlg"));
    EXPECT_FALSE(Contents().contains("log-1.zlg"));
}

TEST_F(ReportTest, KeepsTheWordsOfFailuresOnlyWhenAsked)
{
    const std::string log =
        folder.Write("a.zlg", InLog("<func name=\"ICapeUtilities::Initialize\" direc=\"in\" object=\"P\">\r\n"
                                    " <error value=\"ECapeUnknownHR: The pump is dry\"/>\r\n"
                                    "</func>\r\n"));
    RunReport({log, "-o", zip, "--yes"});
    EXPECT_EQ(std::string::npos, Contents()["log.zlg"].find("The pump is dry"));
    RunReport({log, "-o", zip, "--yes", "--keep-errors"});
    EXPECT_NE(std::string::npos, Contents()["log.zlg"].find("The pump is dry"));
}

TEST_F(ReportTest, ContainsALogThatIsCutOffAsFarAsItGoes)
{
    const std::string whole = ReadBytes(GoldenLog("sample_simulator_11"));
    const std::string log = folder.Write("cut.zlg", whole.substr(0, whole.size() / 2));
    const Outcome outcome = RunReport({log, "-o", zip, "--yes"});
    EXPECT_EQ(1, outcome.code);
    EXPECT_NE("", outcome.messages);
    EXPECT_GT(LinesOf(Contents()["log.zlg"]).size(), LinesOf(whole).size() / 3);
}

TEST_F(ReportTest, IsRefusedWhenAnythingIsMissing)
{
    const std::string log = GoldenLog("sample_simulator_11"), missing = folder.Of("missing.zlg");
    const struct {
        std::vector<std::string> words;
        int code;
        std::string messages;
    } rows[] = {
        {{log}, 2, "zeltctl: \"report\" needs a file for the report, -o FILE; see zeltctl --help\n"},
        {{"-", "-o", zip},
         2,
         "zeltctl: a log from standard input leaves no place for an answer, so it needs --yes; see zeltctl "
         "--help\n"},
        {{"-o", folder.Path(), "--yes"}, 2, "zeltctl: " + folder.Path() + ": this is a folder\n"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = RunReport(row.words);
        EXPECT_EQ(row.code, outcome.code);
        EXPECT_EQ(row.messages, outcome.messages);
        EXPECT_EQ("", outcome.data);
    }
    const Outcome outcome = RunReport({log, missing, "-o", zip, "--yes"});
    EXPECT_EQ(3, outcome.code);
    EXPECT_TRUE(outcome.messages.starts_with("zeltctl: " + missing)) << outcome.messages;
    EXPECT_EQ(std::vector<std::string>{}, folder.Names());
}

TEST(ZipWriter, KeepsContentsOfEachSort)
{
    std::string random;
    for (unsigned i = 0, state = 1; i < 300'000; ++i)
        random += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    const std::map<std::string, std::string> files = {{"empty", ""},
                                                      {"one", "\x1b"},
                                                      {"long", std::string(1'000'000, 'a')},
                                                      {"random", random},
                                                      {"piece", random.substr(0, 1 << 16)}};
    ctl::Output out;
    out << "before";
    ctl::ZipWriter zip(out);
    for (const auto& [name, content] : files) {
        std::istringstream stream(content);
        zip.Add(name, stream);
    }
    zip.Finish();
    const std::string bytes = out.Text().substr(6);
    EXPECT_EQ(files, ZipContents(bytes).Files());
    EXPECT_LT(bytes.size(), 400'000u) << "repetitions are compressed";
}

TEST(ZipWriter, RefusesContentThatCannotBeRead)
{
    const auto refusal = [](std::ios::iostate state) -> std::string {
        std::istringstream content("text");
        content.setstate(state);
        ctl::Output out;
        ctl::ZipWriter zip(out);
        try {
            zip.Add("one", content);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    };
    ASSERT_EQ("one cannot be read", refusal(std::ios::badbit | std::ios::eofbit)) << "the end excuses nothing";
    EXPECT_EQ("one cannot be read", refusal(std::ios::badbit));
    EXPECT_EQ("one cannot be read", refusal(std::ios::failbit));
}

TEST(ZipWriter, WritesNothingButAnEndWhenThereIsNothing)
{
    ctl::Output out;
    ctl::ZipWriter(out).Finish();
    EXPECT_EQ(std::string("PK\x05\x06", 4) + std::string(18, '\0'), out.Text());
}

}  // namespace
}  // namespace zelt::test
