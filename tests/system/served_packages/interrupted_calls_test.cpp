#include <gtest/gtest.h>

#include "tests/system/harness/golden_file.h"
#include "tests/system/harness/text_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"
#include "tests/trees.h"

// The log is complete up to the call in which a process dies, and the next start works.
namespace zelt::test {
namespace {

class InterruptedCalls : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
        Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    }

    // The log of a whole run up to the call in which the simulator waits.
    static std::string GoldenUpToTheWait()
    {
        const std::string golden = ReadWholeFile(SourceFile("tests/golden/sample_simulator_11.zlg"));
        const std::string call =
            " <func name=\"ICapeThermoMaterial::GetPresentPhases\" direc=\"out\" object=\"Feed\">\r\n";
        const std::size_t at = golden.find(call);
        EXPECT_NE(std::string::npos, at);
        return golden.substr(0, at + call.size());
    }

    void ExpectARunToSucceed() const
    {
        const std::size_t before = Logs().size();
        const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"Aromatics"));
        EXPECT_EQ(0u, run.exitCode) << run.output;
        EXPECT_EQ(before + 1, Logs().size());
    }
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, InterruptedCalls, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(InterruptedCalls, LeaveTheLogReadableMeanwhile)
{
    SimulatorInMidCall simulator(GetParam(), L"Aromatics");
    ASSERT_TRUE(simulator.Reached());
    EXPECT_EQ("", FirstDifference(GoldenUpToTheWait(), Comparable(OnlyLog())));
    const SimulatorResult run = simulator.Continue();
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_EQ("", MatchGolden("sample_simulator_11.zlg", Comparable(OnlyLog())));
}

TEST_P(InterruptedCalls, OfAKilledServerFailInTheSimulatorAndTheNextStartWorks)
{
    SimulatorInMidCall simulator(GetParam(), L"Aromatics");
    ASSERT_TRUE(simulator.Reached());
    KillServer();
    EXPECT_EQ("", FirstDifference(GoldenUpToTheWait(), Comparable(OnlyLog())));
    const SimulatorResult run = simulator.Continue();
    EXPECT_EQ(1u, run.exitCode) << run.output;
    // The last line names the failed call and one of the codes for a lost server.
    const std::size_t message = run.output.rfind("SampleSimulator: CalcEquilibrium: ");
    ASSERT_NE(std::string::npos, message) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("(0x80", message)) << run.output;
    ExpectARunToSucceed();
}

TEST_P(InterruptedCalls, OfAKilledSimulatorLeaveTheLogReadableAndTheNextStartWorks)
{
    // The dead client's references are released much later, if at all.
    ServerStays();
    SimulatorInMidCall simulator(GetParam(), L"Aromatics");
    ASSERT_TRUE(simulator.Reached());
    const DWORD server = ServerId();
    simulator.Kill();
    const std::string expected = GoldenUpToTheWait();
    EXPECT_EQ(expected, Comparable(OnlyLog()).substr(0, expected.size()));
    EXPECT_TRUE(OnlyLog().ends_with(">\r\n"));
    ExpectARunToSucceed();
    EXPECT_EQ(server, ServerId());
    // The next start also works after the server has died.
    KillServer();
    ExpectARunToSucceed();
}

}  // namespace
}  // namespace zelt::test
