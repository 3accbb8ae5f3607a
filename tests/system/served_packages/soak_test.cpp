#include <gtest/gtest.h>

#include <iostream>

#include "samples/component/variant.h"
#include "tests/system/harness/under_wine.h"
#include "tests/system/harness/process_figures.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"
#include "tests/unit/support/long_run.h"

// After long use, a server holds no more than at the start. ZELT_TEST_EFFORT sets the length.
namespace zelt::test {
namespace {

namespace fs = std::filesystem;
using Microsoft::WRL::ComPtr;

// The heap grows in large steps, even if nothing leaks.
constexpr SIZE_T kMostGrowth = 4 << 20;
// Wine keeps a little more than a kilobyte for each connection to a released package; it does so in its own surrogate
// process, too.
SIZE_T OfALostConnection() { return UnderWine() ? 1536 : 0; }

class ServerSoak : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        Export({{kSampleManager, 0, L"Aromatics", L"Aromatics", false},
                {kSampleManager, 0, L"Alcohols", L"Alcohols", true},
                {kFaultyManager, 0, L"Menu", L"Menu", false}});
        // Holds the server for the whole test.
        manager = CreateManager();
        server = ServerId();
    }
    void TearDown() override
    {
        manager.Reset();
        ServedPackages::TearDown();
    }

    ComPtr<IDispatch> Get(const wchar_t* name) const
    {
        ComPtr<IDispatch> package;
        EXPECT_EQ(S_OK, manager->GetPropertyPackage(sample::MakeBstr(name).GetBSTR(), &package));
        return package;
    }
    // Makes calls of different kinds, one of which fails.
    static void Use(IDispatch* package)
    {
        ComPtr<ICapeThermoCompounds> compounds;
        ComPtr<ICapeUtilities> utilities;
        ComPtr<IDispatch> parameters;
        long count = 0;
        ASSERT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&compounds)));
        EXPECT_EQ(S_OK, compounds->GetNumCompounds(&count));
        EXPECT_EQ(3, count);
        _variant_t values;
        EXPECT_EQ(S_OK,
                  compounds->GetCompoundConstant(sample::MakeStrings({L"molecularWeight"}), _variant_t(), &values));
        EXPECT_TRUE(FAILED(compounds->GetCompoundConstant(sample::MakeStrings({L"nonsense"}), _variant_t(), &values)));
        ASSERT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&utilities)));
        EXPECT_EQ(S_OK, utilities->get_parameters(&parameters));
    }
    static void Fault(IDispatch* package)
    {
        ComPtr<ICapeThermoCompounds> compounds;
        ASSERT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&compounds)));
        _variant_t values;
        EXPECT_EQ(E_UNEXPECTED,
                  compounds->GetCompoundConstant(sample::MakeStrings({L"nullWrite"}), _variant_t(), &values));
    }
    void ForgetLogs() const
    {
        std::error_code ignored;
        for (const fs::path& log : Logs()) fs::remove(log, ignored);
    }

    // The figures after the number of handles has stopped changing: COM closes the connections of ended clients late.
    ProcessFigures SettledFigures() const
    {
        constexpr int kLook = 250, kQuiet = 4, kMostLooks = 60;
        ProcessFigures figures = FiguresOf(server);
        for (int look = 0, quiet = 0; quiet < kQuiet && look < kMostLooks; ++look) {
            Sleep(kLook);
            const ProcessFigures now = FiguresOf(server);
            quiet = now.handles == figures.handles ? quiet + 1 : 0;
            figures = now;
        }
        return figures;
    }

    // Calls `round` `warmUp` times, so that caches are filled, and then `rounds` times more; after these, the server must hold
    // about as much as before them. `kept` is how many bytes the system itself keeps per round.
    template <class Round>
    void ExpectFlat(int warmUp, int rounds, Round round, SIZE_T kept = 0)
    {
        for (int i = 0; i < warmUp; ++i) round(i);
        const ProcessFigures before = SettledFigures();
        ASSERT_LT(0u, before.handles);
        for (int i = 0; i < rounds; ++i) {
            round(i);
            // Prints a line now and then, to show progress.
            if (rounds >= 1'000 && i % (rounds / 10) == 0) std::cout << i << ": " << FiguresOf(server) << std::endl;
            if (HasFailure()) return;
        }
        const ProcessFigures after = SettledFigures();
        std::cout << rounds << " rounds; before: " << before << "; after: " << after << std::endl;
        EXPECT_EQ(server, ServerId());
        ASSERT_LT(0u, after.handles);
        // COM's own threads come and go.
        EXPECT_LE(after.handles, before.handles + 4);
        EXPECT_EQ(before.gdiObjects, after.gdiObjects);
        EXPECT_EQ(before.userObjects, after.userObjects);
        EXPECT_LT(after.privateBytes, before.privateBytes + kMostGrowth + static_cast<SIZE_T>(rounds) * kept);
    }

    ComPtr<ICapeThermoPropertyPackageManager> manager;
    DWORD server = 0;
};

TEST_F(ServerSoak, PackagesLeaveNothingBehind)
{
    const auto round = [this](int i) {
        const ComPtr<IDispatch> package = Get(i % 4 == 0 ? L"Alcohols" : L"Aromatics");
        ASSERT_TRUE(package);
        Use(package.Get());
        if (i % 8 == 0) {
            // The faulty package has no log.
            const ComPtr<IDispatch> faulty = Get(L"Menu");
            ASSERT_TRUE(faulty);
            Fault(faulty.Get());
        }
        if (i % 16 == 15) ForgetLogs();
    };
    ExpectFlat(20, 30 * Effort(), round, OfALostConnection());
}

TEST_F(ServerSoak, CallsLeaveNothingBehind)
{
    ComPtr<IDispatch> package = Get(L"Alcohols");
    ASSERT_TRUE(package);
    ExpectFlat(100, 150 * Effort(), [&](int) { Use(package.Get()); });
    package.Reset();
    const std::string log = OnlyLog();
    EXPECT_TRUE(log.ends_with("</zeltlogdocument>\r\n"));
    EXPECT_EQ(std::string::npos, log.find(" is not released at final release of "));
}

TEST_F(ServerSoak, ManySimulatorsAtOnceGetTheirResultsAndLeaveNothingBehind)
{
    const int atOnce = Effort() > 1 ? 6 : 2;
    const std::string expected =
        Results(RunSimulator(SimulatorCommand(kOwnWidth, L"Alcohols", L"--in-process", kSampleManager)).output);
    const int rounds = Effort() > 1 ? std::max(2, Effort() / 20) : 1;
    ExpectFlat(1, rounds, [&](int) {
        std::vector<Process> simulators;
        std::vector<OutputFile> outputs(static_cast<std::size_t>(atOnce));
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            const Width width = i % 2 && HasSimulator(Width::Bits64) ? Width::Bits64 : Width::Bits32;
            simulators.push_back(Process::Start(SimulatorCommand(width, L"Alcohols"), outputs[i].Path()));
        }
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            EXPECT_EQ(0u, simulators[i].Wait(120'000).value_or(0xDEAD)) << outputs[i].Text();
            EXPECT_EQ(expected, Results(outputs[i].Text()));
        }
        EXPECT_EQ(outputs.size(), Logs().size());
        for (const fs::path& log : Logs()) EXPECT_TRUE(ReadLog(log).ends_with("</zeltlogdocument>\r\n")) << log;
        ForgetLogs();
    });
}

}  // namespace
}  // namespace zelt::test
