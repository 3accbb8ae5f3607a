#include <gtest/gtest.h>

#include "samples/field/classes.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// Components and simulators in the field offer more than the interfaces of their kind. What works between them without ZELT has
// to work through ZELT, too.
namespace zelt::test {
namespace {

class FieldComponents : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    static SimulatorResult Run(Width width, const wchar_t* arguments)
    {
        return RunSimulator(L'"' + BuiltProgram(width, "tests/system/field_client/field_client.exe").wstring() +
                            L"\" " + arguments);
    }
    // The log that has this text.
    std::string LogWith(const char* text) const
    {
        for (const std::filesystem::path& path : Logs()) {
            const std::string log = ReadLog(path);
            if (log.find(text) != log.npos) return Comparable(log, Addresses::Alike);
        }
        return {};
    }
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, FieldComponents, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

// Tests the older interfaces of a package, which reaches its stream by name alone; a context with ICapeSimulationContext, and
// one without; parameters that are their own specifications; the type of a unit operation; streams of both generations that
// calculate themselves.
TEST_P(FieldComponents, OfferThroughZeltWhatTheyOfferWithoutIt)
{
    if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
    Export({{kFieldPackage, 3, L"", L"Field"}});
    ChooseUnit(sample::kFieldUnitClass);
    const SimulatorResult inProcess = Run(Width::Bits32, L"everything in-process");
    EXPECT_EQ(0u, inProcess.exitCode) << inProcess.output;
    const SimulatorResult served = Run(GetParam(), L"everything");
    EXPECT_EQ(0u, served.exitCode);
    EXPECT_EQ(inProcess.output, served.output);
    EXPECT_EQ(2u, Logs().size());
    EXPECT_EQ("", MatchGolden("field_package.zlg", LogWith("Creating Field\"")));
    EXPECT_EQ("", MatchGolden("field_unit.zlg", LogWith("PRAVIK Logged Unit Operation")));
}

TEST_P(FieldComponents, OfferTheSameWithoutALogOfThePackage)
{
    if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
    Export({{kFieldPackage, 3, L"", L"Field", false}});
    ChooseUnit(sample::kFieldUnitClass);
    const SimulatorResult served = Run(GetParam(), L"everything");
    EXPECT_EQ(0u, served.exitCode);
    EXPECT_EQ(Run(Width::Bits32, L"everything in-process").output, served.output);
    // Unit operations are always logged.
    ASSERT_EQ(1u, Logs().size());
    EXPECT_EQ("", MatchGolden("field_unit.zlg", LogWith("PRAVIK Logged Unit Operation")));
}

class MaterialsByName : public ServedPackages {};

// One package reaches the material through the vtable of its interface, the other through the names of its members.
TEST_F(MaterialsByName, GetTheSameResultsAndTheSameLog)
{
    std::vector<std::string> results, logs;
    for (const wchar_t* package : {kSamplePackage10, kFieldPackage}) {
        Export({{package, 3, L"", L"Aromatics"}});
        const SimulatorResult run =
            RunSimulator(SimulatorCommand(Width::Bits32, L"Aromatics", {}, L"ZELT.ThermoSystem"));
        EXPECT_EQ(0u, run.exitCode) << run.output;
        EXPECT_TRUE(WaitUntilGone(kServerFile));
        results.push_back(Results(run.output));
        logs.push_back(Comparable(OnlyLog(), Addresses::Alike));
        std::filesystem::remove(Logs().front());
    }
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ("", FirstDifference(logs[0], logs[1]));
}

}  // namespace
}  // namespace zelt::test
