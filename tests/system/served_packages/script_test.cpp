#include <gtest/gtest.h>

#include "samples/units/classes.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/harness/under_wine.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"
#include "tests/trees.h"

// Script hosts reach the packages only through IDispatch.
namespace zelt::test {
namespace {

class Scripts : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    // To a 32-bit program such as this one, Windows shows the 32-bit system folder as system32, and the 64-bit one as
    // sysnative.
    static std::filesystem::path SystemFile(const wchar_t* name)
    {
        wchar_t windows[MAX_PATH];
        GetWindowsDirectoryW(windows, MAX_PATH);
        return std::filesystem::path(windows) / (GetParam() == Width::Bits32 ? L"system32" : L"sysnative") / name;
    }
    static std::filesystem::path ScriptHost() { return SystemFile(L"cscript.exe"); }
    static SimulatorResult RunScript(const wchar_t* name, const std::wstring& arguments)
    {
        const auto script = (std::filesystem::path(SourceFile("tests/system/served_packages")) / name).make_preferred();
        return RunSimulator(L'"' + ScriptHost().wstring() + L"\" //nologo \"" + script.wstring() + L"\" " + arguments);
    }
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, Scripts, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(Scripts, ListAndGetPackagesAndSeeErrors)
{
    if (!std::filesystem::exists(ScriptHost())) GTEST_SKIP() << "there is no script host of this width";
    Export({{kSampleManager, 0, L"Aromatics", L"First"}, {kSampleManager, 0, L"Alcohols", L"Second", false}});
    const SimulatorResult run = RunScript(L"client.vbs", L"Second \"No such package\"");
    EXPECT_EQ(
        "list: 8200\n"
        "name: Second\n"
        "name: Renamed\n"
        "error: 80040506\n"
        "description: Package with name \"No such package\" is not available\n"
        "source: ICapeThermoPropertyPackageManager::GetPropertyPackage\n"
        "end of the script\n",
        run.output);
}

// A script uses a whole flowsheet by name alone: it reaches all members of an object, not only those of one interface.
TEST_P(Scripts, UsePackagesOfBothGenerationsAndAUnitOperation)
{
    if (!std::filesystem::exists(ScriptHost())) GTEST_SKIP() << "there is no script host of this width";
    Export({{kSampleManager, 0, L"Aromatics", L"First"}, {kSampleThermoSystem, 2, L"Alcohols", L"Second"}});
    ChooseUnit(sample::kValveClass);
    const SimulatorResult run = RunScript(L"flowsheet.vbs", L"First Second");
    EXPECT_EQ(
        "compounds: 3\n"
        "phase: Vapor\n"
        "name: Renamed\n"
        "error: 80040506\n"
        "description: There is no phase \"Plasma\"\n"
        "error: 438\n"
        "phases: 8200\n"
        "name: Second\n"
        "ports: 2\n"
        "parameters: 1\n"
        "Outlet pressure: type 0, mode 0\n"
        "value: 2500.5\n"
        "default: 101325\n"
        "end of the script\n",
        run.output);
    std::string logs;
    for (const char* object : {"1.1 Physical", "1.0 Physical", "PRAVIK"}) {
        for (const std::filesystem::path& path : Logs()) {
            const std::string log = ReadLog(path);
            if (log.find(std::string("version ") + object) != log.npos ||
                log.find(std::string(": ") + object) != log.npos)
                logs += Comparable(log, Addresses::Alike);
        }
    }
    EXPECT_EQ("", MatchGolden("script_flowsheet.zlg", logs));
}

TEST_P(Scripts, OfPowerShellUseTwoPackagesInTurn)
{
    const auto host = SystemFile(L"WindowsPowerShell\\v1.0\\powershell.exe");
    if (UnderWine() || !std::filesystem::exists(host)) GTEST_SKIP() << "there is no PowerShell";
    Export({{kSampleManager, 0, L"Aromatics", L"First"}, {kSampleManager, 0, L"Alcohols", L"Second"}});
    const std::string script = SourceFile("tests/system/served_packages/packages.ps1");
    const SimulatorResult run =
        RunSimulator(L'"' + host.wstring() + L"\" -NoProfile -NonInteractive -ExecutionPolicy Bypass -File \"" +
                     std::filesystem::path(script).make_preferred().wstring() + L"\" First Second");
    const std::string round = "name: First\ncompounds: 3\nname: Second\ncompounds: 3\n";
    EXPECT_EQ(round + round + "end of the script\n", run.output);
}

}  // namespace
}  // namespace zelt::test
