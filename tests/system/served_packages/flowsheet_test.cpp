// A flowsheet whose unit operation is wrapped by PRAVIK and whose property package is served by ZELT. One process calculates
// and saves it, another one loads it. The results are those of the same unit and package in process.
#include <gtest/gtest.h>

#include "samples/units/classes.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kSettings[] = L" --set \"Heat duty=150000\" --set \"Pressure drop=20000\"";

class Flowsheets : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
        Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
        file = fs::temp_directory_path() / (L"ZELT flowsheet " + std::to_wstring(GetCurrentProcessId()));
    }
    void TearDown() override
    {
        std::error_code ignored;
        fs::remove(file, ignored);
        ServedPackages::TearDown();
    }

    std::wstring Saving() const { return L"--save \"" + file.wstring() + L'"'; }
    static SimulatorResult Run(const std::wstring& unit, const std::wstring& options)
    {
        return RunSimulator(SimulatorCommand(GetParam(), L"Aromatics", L"--flowsheet " + unit + L' ' + options));
    }
    static SimulatorResult RunInProcess(const std::wstring& unit, const std::wstring& options)
    {
        return RunSimulator(SimulatorCommand(kOwnWidth, L"Aromatics",
                                             L"--in-process --flowsheet " + unit + L' ' + options, kSampleManager));
    }
    SimulatorResult Load() const
    {
        return RunSimulator(SimulatorProgram(GetParam()) + L" --bits --load \"" + file.wstring() + L'"');
    }
    // The lines with the bits of the numbers.
    static std::string Bits(const std::string& output)
    {
        std::string bits;
        for (std::size_t at = output.find("\nbits "); at != std::string::npos; at = output.find("\nbits ", at + 1)) {
            bits += output.substr(at + 1, output.find('\n', at + 1) - at);
        }
        return bits;
    }
    // The log of the unit or of the package: a run writes one of each.
    std::string LogOf(bool unit) const
    {
        std::string found;
        for (const fs::path& path : Logs()) {
            const std::string log = ReadLog(path);
            const bool isUnit = log.find("PRAVIK Logged Unit Operation") != std::string::npos;
            if (isUnit != unit) continue;
            EXPECT_EQ("", found) << "two logs of a kind";
            found = log;
        }
        return found;
    }

    fs::path file;
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, Flowsheets, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(Flowsheets, GiveTheResultsOfTheUnitInProcessAndTheGoldenLogs)
{
    ChooseUnit(sample::kMixerHeaterClass);
    const SimulatorResult run = Run(kThisEdition[OwnClass::UnitOperation].progId, kSettings);
    ASSERT_EQ(0u, run.exitCode) << run.output;
    const SimulatorResult direct = RunInProcess(L"ZeltSample.MixerHeater", kSettings);
    ASSERT_EQ(0u, direct.exitCode) << direct.output;
    EXPECT_NE("", Bits(direct.output));
    EXPECT_EQ(Bits(direct.output), Bits(run.output));
    EXPECT_EQ("", MatchGolden("sample_flowsheet_unit.zlg", Comparable(LogOf(true), Addresses::Alike)));
    EXPECT_EQ("", MatchGolden("sample_flowsheet_package.zlg", Comparable(LogOf(false), Addresses::Alike)));
}

// One unit for each persistence interface, and one without persistence.
TEST_P(Flowsheets, AreSavedByOneProcessAndLoadedByAnother)
{
    const struct {
        const wchar_t* name;
        const CLSID& unit;
        const wchar_t* settings;
    } kUnits[] = {{L"ZeltSample.MixerHeater", sample::kMixerHeaterClass, kSettings},
                  {L"ZeltSample.Valve", sample::kValveClass, L""},
                  {L"ZeltSample.Splitter", sample::kSplitterClass, L""}};
    for (const auto& row : kUnits) {
        SCOPED_TRACE(testing::PrintToString(row.name));
        ChooseUnit(row.unit);
        const SimulatorResult saved =
            Run(kThisEdition[OwnClass::UnitOperation].progId, row.settings + (L' ' + Saving()));
        ASSERT_EQ(0u, saved.exitCode) << saved.output;
        const SimulatorResult direct = RunInProcess(row.name, row.settings);
        EXPECT_EQ(Bits(direct.output), Bits(saved.output));
        // The saved flowsheet names the unit: the unit that PRAVIK is now set to does not matter.
        ChooseUnit(CLSID_NULL);
        const SimulatorResult loaded = Load();
        EXPECT_EQ(0u, loaded.exitCode) << loaded.output;
        EXPECT_NE("", Bits(loaded.output));
        EXPECT_EQ(Bits(saved.output), Bits(loaded.output));
    }
    ASSERT_TRUE(WaitUntilGone(kServerFile));
    for (const fs::path& recording : Recorded()) ExpectReplayed(recording);
}

}  // namespace
}  // namespace zelt::test
