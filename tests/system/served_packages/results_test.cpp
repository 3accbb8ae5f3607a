#include <gtest/gtest.h>

#include "packages/exported_package_list.h"
#include "system/narrow.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/harness/text_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// A simulator gets the same results through the server as from the package in process, and the log records everything.
namespace zelt::test {
namespace {

class Simulations : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
    }

    // The package is a library of this test's width, so the process that loads it has this width, too.
    static std::string InProcess(const std::wstring& package, const std::wstring& manager)
    {
        const SimulatorResult run = RunSimulator(SimulatorCommand(kOwnWidth, package, L"--in-process", manager));
        EXPECT_EQ(0u, run.exitCode) << run.output;
        EXPECT_NE(std::string::npos, run.output.find("\nbits "));
        return Results(run.output);
    }
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, Simulations, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(Simulations, GiveTheResultsOfThePackageInProcessAndTheGoldenLog)
{
    Export({{kSampleManager, 0, L"Alcohols", L"Second"}, {kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"Aromatics"));
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ(InProcess(L"Aromatics", kSampleManager), Results(run.output));
    EXPECT_EQ(0u, run.output.find(ManagerLine() + "Packages: Second, Aromatics\n")) << run.output;
    EXPECT_EQ("", MatchGolden("sample_simulator_11.zlg", Comparable(OnlyLog())));
}

TEST_P(Simulations, GiveTheSameWithoutALog)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics", false}});
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"Aromatics"));
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ(InProcess(L"Aromatics", kSampleManager), Results(run.output));
    EXPECT_TRUE(Logs().empty());
}

TEST_P(Simulations, UseAStandAlonePackageUnderItsExportedName)
{
    Export({{kSamplePackage, 1, L"", L"On its own"}});
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"ON ITS own"));
    EXPECT_EQ(0u, run.exitCode);
    std::string expected = InProcess(L"Aromatics", kSampleManager);
    const std::string name = "Property package: Aromatics\n";
    ASSERT_NE(std::string::npos, expected.find(name)) << expected;
    expected.replace(expected.find(name), name.size(), "Property package: On its own\n");
    EXPECT_EQ(expected, Results(run.output));
    const std::string log = OnlyLog();
    EXPECT_NE(std::string::npos, log.find("<info value=\"Creating On its own\"/>\r\n"
                                          "<info value=\"Object type: CAPE-OPEN version 1.1 Physical Property "
                                          "Package\"/>\r\n"));
}

TEST_P(Simulations, FindAPackageByANameThatNoCodePageHas)
{
    const std::wstring name =
        L"Lee-Kesler-Pl\xF6"
        L"cker \x421\x43C\x435\x441\x44C \x6C34";
    Export({{kSampleManager, 0, L"Aromatics", L"plain"}});
    ExportedPackageList list;
    ASSERT_TRUE(list.Load());
    list.At(0).exportedName = name;
    ASSERT_TRUE(list.Save());

    std::wstring capitals = name;
    CharUpperW(capitals.data());
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), capitals));
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("Packages: " + Narrow(name, CP_UTF8) + '\n')) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("Property package: " + Narrow(name, CP_UTF8) + '\n')) << run.output;
    EXPECT_NE(std::string::npos, OnlyLog().find("<info value=\"Creating Lee-Kesler-Pl"));
}

// This test uses a package of the older generation, the next one a reaction package. Each comes from its own manager, and gets
// or returns all kinds of objects: the context, material templates, parameters, reaction objects.
TEST_P(Simulations, OfAnOlderPropertyPackageAreTheSameAndTheGoldenLog)
{
    Export({{kSampleThermoSystem, 2, L"Alcohols", L"Alcohols"}});
    const SimulatorResult run =
        RunSimulator(SimulatorCommand(GetParam(), L"Alcohols", {}, kThisEdition[OwnClass::ThermoSystem].progId));
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_EQ(InProcess(L"Alcohols", kSampleThermoSystem), Results(run.output));
    EXPECT_EQ("", MatchGolden("sample_simulator_10.zlg", Comparable(OnlyLog(), Addresses::Alike)));
}

TEST_P(Simulations, OfAReactionPackageAreTheSameAndTheGoldenLog)
{
    Export({{kSampleReactionManager, 4, L"Hydrogen", L"Hydrogen"}});
    const SimulatorResult run = RunSimulator(
        SimulatorCommand(GetParam(), L"Hydrogen", {}, kThisEdition[OwnClass::ReactionPackageManager].progId));
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_EQ(InProcess(L"Hydrogen", kSampleReactionManager), Results(run.output));
    EXPECT_EQ("", MatchGolden("sample_simulator_reactions.zlg", Comparable(OnlyLog(), Addresses::Alike)));
}

// The package releases the material when it is terminated, so nothing is left to report.
TEST_P(Simulations, MayLeaveTheMaterialSet)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"Aromatics", L"--hold"));
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_EQ("", MatchGolden("sample_simulator_11_held.zlg", Comparable(OnlyLog())));
}

TEST_P(Simulations, AreToldOfAMaterialThatThePackageKeeps)
{
    Export({{kFaultyManager, 0, L"Keeps Material", L"Keeps Material"}});
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"Keeps Material"));
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_TRUE(
        OnlyLog().ends_with("<warning value=\"Object &quot;Feed&quot; (type: Material Object) is not released at "
                            "final release of &quot;Keeps Material&quot; (reference count 1)\"/>\r\n"
                            "</zeltlogdocument>\r\n"))
        << OnlyLog();
    // The material that is never released keeps the server running.
    ServerStays();
    EXPECT_NE(0u, ServerId());
}

}  // namespace
}  // namespace zelt::test
