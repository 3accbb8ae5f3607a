#include <gtest/gtest.h>

#include <fstream>

#include "packages/package_list_hold.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/harness/server_readiness.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"
#include "tests/trees.h"

// If a ZELT process is running that shows a log, COM connects a simulator to it instead of starting another server.
namespace zelt::test {
namespace {

constexpr wchar_t kName[] = L"read by the user.zlg";

class BesideALogViewer : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    void SetUp() override
    {
        if (std::getenv("WINEPREFIX") && !std::getenv("DISPLAY")) GTEST_SKIP() << "needs a display";
        if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
        ServedPackages::SetUp();
        Export({{kSampleManager, 0, L"Alcohols", L"Second"}, {kSampleManager, 0, L"Aromatics", L"Aromatics"}});
        log = std::filesystem::temp_directory_path() / kName;
        std::ofstream(log) << "<zeltlogdocument></zeltlogdocument>";
        const std::filesystem::path program = std::filesystem::absolute(BuiltFile("shell/ZELT.EXE")).make_preferred();
        viewer = Process::Start(L'"' + program.wstring() + L"\" \"" + log.wstring() + L'"');
        ASSERT_TRUE(WaitUntilServing(*viewer));
        // The viewer has its own thread, so its window may appear later.
        while (!IsWindowVisible(Window())) {
            ASSERT_TRUE(viewer->Running());
            Sleep(50);
        }
    }
    void TearDown() override
    {
        std::error_code ignored;
        std::filesystem::remove(log, ignored);
        if (viewer) ServedPackages::TearDown();
    }
    static HWND Window() { return FindWindowW(nullptr, (std::wstring(L"Log file ") + kName + L':').c_str()); }
    static void CloseViewer() { PostMessageW(Window(), WM_COMMAND, IDCANCEL, 0); }

    std::filesystem::path log;
    std::optional<Process> viewer;
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, BesideALogViewer, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(BesideALogViewer, SimulatorsFindTheirPackagesAndGetTheirLogs)
{
    // A process that only shows a log does not hold the list.
    EXPECT_TRUE(PackageListEdit().Allowed());
    const SimulatorResult run = RunSimulator(SimulatorCommand(GetParam(), L"Aromatics"));
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ(0u, run.output.find(ManagerLine() + "Packages: Second, Aromatics\n")) << run.output;
    EXPECT_EQ("", MatchGolden("sample_simulator_11.zlg", Comparable(OnlyLog())));
    // The viewer's process has served, so now it holds the list.
    EXPECT_EQ(viewer->Id(), ServerId());
    EXPECT_FALSE(PackageListEdit().Allowed());
    EXPECT_TRUE(viewer->Running());
    CloseViewer();
    EXPECT_EQ(0u, viewer->Wait(60'000));
    EXPECT_TRUE(PackageListEdit().Allowed());
}

TEST_P(BesideALogViewer, TheProcessEndsWithTheSimulatorWhenTheViewerIsClosedFirst)
{
    SimulatorInMidCall simulator(GetParam(), L"Aromatics");
    ASSERT_TRUE(simulator.Reached());
    EXPECT_EQ(viewer->Id(), ServerId());
    CloseViewer();
    EXPECT_FALSE(viewer->Wait(1'500)) << "ended while a simulator used it";
    EXPECT_EQ(0u, simulator.Continue().exitCode);
    EXPECT_EQ(0u, viewer->Wait(60'000));
}

}  // namespace
}  // namespace zelt::test
