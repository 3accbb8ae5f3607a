// Recordings of real packages in real simulators: they are small, and can be replayed to the bit. After every test of this
// program, the fixture also renders each recording and compares the result with the log that was written.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "samples/units/classes.h"
#include "system/edition.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

// The size that a recording may have, as a part of its log's. Addresses of 64-bit processes take more room.
constexpr double kMostOfLog = kThisEdition.width == 32 ? 0.25 : 0.3;

class Recordings : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
    }
    // Runs the simulator, and checks that each recording is small compared with its log.
    std::vector<fs::path> Record(const std::wstring& command) const
    {
        EXPECT_EQ(0u, RunSimulator(command).exitCode);
        EXPECT_TRUE(WaitUntilGone(kServerFile));
        std::vector<fs::path> recordings;
        for (const fs::path& log : Logs()) {
            recordings.push_back(RecordingOf(log));
            EXPECT_LE(static_cast<double>(fs::file_size(recordings.back())),
                      kMostOfLog * static_cast<double>(fs::file_size(log)))
                << log;
        }
        EXPECT_FALSE(recordings.empty());
        return recordings;
    }
    static SimulatorResult ReplayOf(const fs::path& recording, const std::wstring& options = {})
    {
        return RunTool(L"recording replay \"" + recording.wstring() + L"\" " + options);
    }
    // Checks that the simulator gets the results of a package from its recording.
    void ExpectToBeServed(const Exported& package, const std::wstring& command)
    {
        Export({package});
        const SimulatorResult run = RunSimulator(command);
        EXPECT_EQ(0u, run.exitCode) << run.output;
        ASSERT_TRUE(WaitUntilGone(kServerFile));
        ASSERT_EQ(1u, Logs().size());
        const fs::path recording = RecordingOf(Logs().front());
        Export({});
        const SimulatorResult added = RunTool(L"add --width " + std::to_wstring(kThisEdition.width) +
                                              L" --recording \"" + recording.wstring() + L"\"");
        ASSERT_EQ(0u, added.exitCode) << added.output;
        const SimulatorResult served = RunSimulator(command);
        EXPECT_EQ(0u, served.exitCode);
        EXPECT_EQ(run.output, served.output);
    }
    void ExpectNoDifference(const std::wstring& command, const std::wstring& options = {}) const
    {
        for (const fs::path& recording : Record(command)) ExpectReplayed(recording, options);
    }
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, Recordings, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(Recordings, OfAPackageOf11AreReplayedToTheBit)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    ExpectNoDifference(SimulatorCommand(GetParam(), L"Aromatics"));
}

// The recording renders the log that the package would have had.
TEST_P(Recordings, OfAPackageWithoutALogAreWhole)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics", false}});
    ASSERT_EQ(0u, RunTool(L"options --record off --record-all on").exitCode);
    EXPECT_EQ(0u, RunSimulator(SimulatorCommand(GetParam(), L"Aromatics")).exitCode);
    EXPECT_TRUE(WaitUntilGone(kServerFile));
    EXPECT_TRUE(Logs().empty());
    const std::vector<fs::path> recordings = Recorded();
    ASSERT_EQ(1u, recordings.size());
    EXPECT_EQ("", MatchGolden("sample_simulator_11.zlg", Comparable(RenderedLog(recordings.front()))));
    ExpectReplayed(recordings.front());
}

// Another program can read them while the server records, and after it has died.
TEST_P(Recordings, AreWholeUpToTheCallInProgress)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    SimulatorInMidCall simulator(GetParam(), L"Aromatics");
    ASSERT_TRUE(simulator.Reached());
    const std::string log = OnlyLog();
    ASSERT_LT(10'000u, log.size());
    const fs::path recording = RecordingOf(Logs().front());
    const auto expectWhole = [&] {
        const std::string rendered = RenderedLog(recording);
        EXPECT_EQ("", FirstDifference(log, rendered.substr(0, log.size())));
    };
    expectWhole();
    KillServer();
    expectWhole();
    EXPECT_EQ(1u, simulator.Continue().exitCode);
}

TEST_P(Recordings, OfAPackageOf10AreReplayedToTheBit)
{
    Export({{kSampleThermoSystem, 2, L"Alcohols", L"Alcohols"}});
    ExpectNoDifference(SimulatorCommand(GetParam(), L"Alcohols", {}, kThisEdition[OwnClass::ThermoSystem].progId),
                       L"--repeat 3");
}

TEST_P(Recordings, OfAReactionPackageAreReplayedToTheBit)
{
    Export({{kSampleReactionManager, 4, L"Hydrogen", L"Hydrogen"}});
    ExpectNoDifference(
        SimulatorCommand(GetParam(), L"Hydrogen", {}, kThisEdition[OwnClass::ReactionPackageManager].progId));
}

TEST_P(Recordings, OfAFlowsheetAreReplayedToTheBit)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    ChooseUnit(sample::kMixerHeaterClass);
    ExpectNoDifference(SimulatorCommand(
        GetParam(), L"Aromatics",
        L"--flowsheet " + std::wstring(kThisEdition[OwnClass::UnitOperation].progId) + L" --set \"Heat duty=150000\""));
}

TEST_P(Recordings, AnswerInThePlaceOfAPackageOf11)
{
    ExpectToBeServed({kSampleManager, 0, L"Aromatics", L"Aromatics"}, SimulatorCommand(GetParam(), L"Aromatics"));
}

TEST_P(Recordings, AnswerInThePlaceOfAPackageOf10)
{
    ExpectToBeServed({kSampleThermoSystem, 2, L"Alcohols", L"Alcohols"},
                     SimulatorCommand(GetParam(), L"Alcohols", {}, kThisEdition[OwnClass::ThermoSystem].progId));
}

TEST_P(Recordings, AnswerInThePlaceOfAReactionPackage)
{
    ExpectToBeServed(
        {kSampleReactionManager, 4, L"Hydrogen", L"Hydrogen"},
        SimulatorCommand(GetParam(), L"Hydrogen", {}, kThisEdition[OwnClass::ReactionPackageManager].progId));
}

// A simulator asks what was never asked while the package was recorded.
TEST_P(Recordings, SayWhatTheyHaveNoAnswerTo)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const fs::path recording = Record(SimulatorCommand(GetParam(), L"Aromatics")).front();
    Export({});
    const SimulatorResult added = RunTool(L"add --log --width " + std::to_wstring(kThisEdition.width) +
                                          L" --recording \"" + recording.wstring() + L"\"");
    ASSERT_EQ(0u, added.exitCode) << added.output;
    const std::vector<fs::path> before = Logs();
    ChooseUnit(sample::kMixerHeaterClass);
    const SimulatorResult run = RunSimulator(SimulatorCommand(
        GetParam(), L"Aromatics", L"--flowsheet " + std::wstring(kThisEdition[OwnClass::UnitOperation].progId)));
    EXPECT_NE(0u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("The recording has no answer to ")) << run.output;
    ASSERT_TRUE(WaitUntilGone(kServerFile));
    std::string log;
    for (const fs::path& one : Logs()) {
        if (std::find(before.begin(), before.end(), one) == before.end()) log += ReadLog(one);
    }
    EXPECT_NE(std::string::npos, log.find("<error value=\"ECapeUnknownHR: The recording has no answer to ")) << log;
}

TEST_P(Recordings, ShowInWhatARevisionOfThePackageDiffers)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const fs::path recording = Record(SimulatorCommand(GetParam(), L"Aromatics")).front();
    const SimulatorResult exact = ReplayOf(recording, L"--package \"Aromatics, revised\"");
    EXPECT_EQ(1u, exact.exitCode);
    // The revision first differs where the package is asked for the vapour pressures. The last digits depend on the
    // mathematical functions, which differ between the widths.
    const std::string first = exact.output.substr(0, exact.output.find('\n'));
    EXPECT_TRUE(
        first.starts_with("call 148  ICapeThermoCompounds::GetTDependentProperty  (Aromatics): output "
                          "\"propVals\": [2]: 2908.79772"))
        << first;
    EXPECT_NE(std::string::npos, first.find(" instead of 2908.79481")) << first;
    // The component can be named, too.
    const std::wstring named = L"--with ZeltSample.PropertyPackageManager ";
    EXPECT_EQ(exact.output, ReplayOf(recording, named + L"--package \"Aromatics, revised\"").output);
    EXPECT_EQ(0u, ReplayOf(recording, named).exitCode);
    EXPECT_EQ(2u, ReplayOf(recording, L"--with ZeltSample.NoSuchClass").exitCode);
    const SimulatorResult tolerant = ReplayOf(recording, L"--package \"Aromatics, revised\" --tolerance 1e-4");
    EXPECT_EQ(0u, tolerant.exitCode) << tolerant.output;
}

std::string LineOf(const std::string& text, std::string_view part)
{
    const std::size_t found = text.find(part);
    if (found == std::string::npos) return "no line with " + std::string(part);
    const std::size_t begin = text.rfind('\n', found) + 1;
    return text.substr(begin, text.find('\n', found) - begin);
}

// What follows the number of the call in a line of a replay.
std::string AfterNumber(const std::string& line) { return line.substr(line.find("  ") + 1); }

TEST_P(Recordings, InPartReachTheSameCallWithTheSameDifference)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const fs::path whole = Record(SimulatorCommand(GetParam(), L"Aromatics")).front();
    const fs::path part = fs::path(whole).replace_filename("part.zlr");
    // The part keeps the flash and the calls that it needs, such as the one that sets its material, and nothing else.
    const SimulatorResult trimmed =
        RunTool(L"recording trim --calls 193..195 \"" + whole.wstring() + L"\" -o \"" + part.wstring() + L"\"");
    ASSERT_EQ(0u, trimmed.exitCode) << trimmed.output;
    EXPECT_LT(fs::file_size(part), fs::file_size(whole) / 3);
    const std::wstring revised = L"--package \"Aromatics, revised\" --limit 1000";
    const SimulatorResult replay = ReplayOf(part, revised);
    EXPECT_EQ(1u, replay.exitCode);
    for (const char* call : {"ICapeThermoMaterial::SetSinglePhaseProp  (Feed): input \"values\": [0]: 0.51",
                             "ICapeThermoMaterial::SetSinglePhaseProp  (Feed): input \"values\": [0]: 0.46"}) {
        EXPECT_EQ(AfterNumber(LineOf(ReplayOf(whole, revised).output, call)), AfterNumber(LineOf(replay.output, call)));
    }
    const SimulatorResult same = ReplayOf(part);
    EXPECT_TRUE(same.output.ends_with(" answered: no difference\n")) << same.output;
    fs::remove(part);
}

TEST_P(Recordings, InPartReachTheSameFailure)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const fs::path whole = Record(SimulatorCommand(GetParam(), L"Aromatics")).front();
    const fs::path part = fs::path(whole).replace_filename("part.zlr");
    const SimulatorResult trimmed =
        RunTool(L"recording trim --failure 1 \"" + whole.wstring() + L"\" -o \"" + part.wstring() + L"\"");
    ASSERT_EQ(0u, trimmed.exitCode) << trimmed.output;
    const SimulatorResult info = RunTool(L"recording info \"" + part.wstring() + L"\"");
    EXPECT_EQ(0u, info.exitCode);
    EXPECT_NE(std::string::npos, info.output.find(", of which 1 failed")) << info.output;
    // The failure is a result like any other.
    const SimulatorResult same = ReplayOf(part);
    EXPECT_TRUE(same.output.ends_with(" answered: no difference\n")) << same.output;
    fs::remove(part);
}

TEST_P(Recordings, OfAFlowsheetAreReplayedInPart)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    ChooseUnit(sample::kMixerHeaterClass);
    const auto recordings = Record(SimulatorCommand(
        GetParam(), L"Aromatics",
        L"--flowsheet " + std::wstring(kThisEdition[OwnClass::UnitOperation].progId) + L" --set \"Heat duty=150000\""));
    for (const fs::path& whole : recordings) {
        const SimulatorResult info = RunTool(L"recording info --json \"" + whole.wstring() + L"\"");
        const std::size_t calls = info.output.find("\"calls\":");
        ASSERT_NE(std::string::npos, calls) << info.output;
        const int count = std::stoi(info.output.substr(calls + 8));
        for (const int call : {count / 2, count - 2}) {
            const fs::path part = fs::path(whole).replace_filename("part.zlr");
            const SimulatorResult trimmed = RunTool(L"recording trim --calls " + std::to_wstring(call) + L" \"" +
                                                    whole.wstring() + L"\" -o \"" + part.wstring() + L"\"");
            ASSERT_EQ(0u, trimmed.exitCode) << trimmed.output;
            const SimulatorResult same = ReplayOf(part);
            EXPECT_TRUE(same.output.ends_with(" answered: no difference\n")) << same.output;
            fs::remove(part);
        }
    }
}

}  // namespace
}  // namespace zelt::test
