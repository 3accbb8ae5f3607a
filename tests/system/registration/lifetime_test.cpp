#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "system/owners.h"
#include "tests/system/harness/server_readiness.h"
#include "tests/system/registration/processes.h"

// How the server process starts and ends, as seen by a client and by the user.
namespace {

using zelt::UniqueHandle;
using zelt::test::Process;
using zelt::test::WaitUntilGone;
using zelt::test::WaitUntilServing;

constexpr wchar_t kProgId[] = L"ZELT.PropertyPackageManager";
// Long enough for a slow machine: only a failure takes this long.
constexpr DWORD kLongest = 60'000;

// A client that keeps its object until the test lets it go.
class HoldingClient {
public:
    bool Holds() const
    {
        while (WaitForSingleObject(held.get(), 50) != WAIT_OBJECT_0) {
            if (!client.Running()) return false;
        }
        return true;
    }
    DWORD ReleaseAndEnd() const
    {
        SetEvent(release.get());
        return client.Wait(kLongest).value_or(STILL_ACTIVE);
    }

private:
    const std::wstring event = L"ZELT test holds " + std::to_wstring(GetCurrentProcessId());
    const UniqueHandle held{CreateEventW(nullptr, TRUE, FALSE, event.c_str())};
    const UniqueHandle release{CreateEventW(nullptr, TRUE, FALSE, (event + L".release").c_str())};
    const Process client = Start(ClientPath(), std::wstring(kProgId) + L" \"" + event + L'"');
};

class Lifetime : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer")); }
    void TearDown() override
    {
        EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE", kLongest));
        RunToEnd(ServerPath(), L"/UnregServer");
    }
    // Null if the window does not appear in time.
    static HWND WaitForWindow(const wchar_t* title)
    {
        const ULONGLONG end = GetTickCount64() + kLongest;
        HWND window = nullptr;
        // The window has its title before it is shown.
        while (!IsWindowVisible(window = FindWindowW(nullptr, title))) {
            if (GetTickCount64() > end) return nullptr;
            Sleep(50);
        }
        return window;
    }
    // The title of a window that the process shows, "untitled" for a window without title; empty if it shows none.
    static std::wstring TitleOfAWindow(DWORD process)
    {
        Search search = {process, L""};
        EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
        return search.title;
    }
    static bool HasDisplay() { return std::getenv("WINEPREFIX") == nullptr || std::getenv("DISPLAY") != nullptr; }

private:
    struct Search {
        DWORD process;
        std::wstring title;
    };
    static BOOL CALLBACK Look(HWND window, LPARAM data)
    {
        auto& search = *reinterpret_cast<Search*>(data);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner != search.process || !IsWindowVisible(window)) return TRUE;
        wchar_t title[100];
        search.title = GetWindowTextW(window, title, 100) ? title : L"untitled";
        return FALSE;
    }
};

TEST_F(Lifetime, AClientOfEitherWidthStartsTheServerAndItsReleaseEndsIt)
{
    EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId));
    EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE", kLongest));
    if (!std::filesystem::exists(OtherClientPath())) GTEST_SKIP() << "the client of the other width is not built";
    EXPECT_EQ(0u, RunToEnd(OtherClientPath(), kProgId));
}

TEST_F(Lifetime, ClientsShareARunningServerUntilTheLastReleases)
{
    const Process server = Start(ServerPath(), L"-eMbEdDiNg");
    ASSERT_TRUE(WaitUntilServing(server));
    EXPECT_EQ(L"", TitleOfAWindow(server.Id()));
    const HoldingClient patient;
    EXPECT_TRUE(patient.Holds());
    EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId));
    EXPECT_FALSE(server.Wait(2000)) << "ended while a client held an object";
    EXPECT_EQ(0u, patient.ReleaseAndEnd());
    EXPECT_EQ(0u, server.Wait(kLongest));
}

TEST_F(Lifetime, ARegistrationShowsNoWindow)
{
    for (const wchar_t* arguments : {L"/UnregServer", L"/RegServer"}) {
        const Process registration = Start(ServerPath(), arguments);
        for (; registration.Running(); Sleep(20)) EXPECT_EQ(L"", TitleOfAWindow(registration.Id()));
        EXPECT_EQ(0u, registration.Wait(0));
    }
}

TEST_F(Lifetime, ActivationRightAfterAReleaseIsNotLost)
{
    for (int round = 0; round < 4; ++round) EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId)) << round;
}

TEST_F(Lifetime, AWindowHoldsTheProcessUntilItIsClosed)
{
    if (!HasDisplay()) GTEST_SKIP() << "needs a display";
    const std::filesystem::path log = std::filesystem::temp_directory_path() / L"a window's log.zlg";
    std::ofstream(log) << "<zeltlogdocument></zeltlogdocument>";
    const struct {
        std::wstring arguments;
        const wchar_t* title;
    } rows[] = {{L"", L"ZELT Packages:"}, {L'"' + log.wstring() + L'"', L"Log file a window's log.zlg:"}};
    for (const auto& row : rows) {
        const Process program = Start(ServerPath(), row.arguments);
        const HWND window = WaitForWindow(row.title);
        ASSERT_TRUE(window);
        ASSERT_TRUE(WaitUntilServing(program));
        EXPECT_NE(L"", TitleOfAWindow(program.Id()));
        // While its window is open, the process serves clients and outlives their release.
        EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId));
        EXPECT_FALSE(program.Wait(2000));
        PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        EXPECT_EQ(0u, program.Wait(kLongest));
    }
    std::filesystem::remove(log);
}

// The process waits at least a second before it ends, so that its other threads can finish.
TEST_F(Lifetime, TheProcessPausesBeforeItEnds)
{
    if (!HasDisplay()) GTEST_SKIP() << "needs a display";
    const Process program = Start(ServerPath(), L"");
    const HWND window = WaitForWindow(L"ZELT Packages:");
    ASSERT_TRUE(window);
    const ULONGLONG closed = GetTickCount64();
    PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    EXPECT_EQ(0u, program.Wait(kLongest));
    // The clock and the wait may each be off by one tick.
    EXPECT_GE(GetTickCount64() - closed, 1000u - 2 * 16);
}

TEST_F(Lifetime, AClosedWindowLeavesTheProcessToItsClients)
{
    if (!HasDisplay()) GTEST_SKIP() << "needs a display";
    const Process program = Start(ServerPath(), L"");
    const HWND window = WaitForWindow(L"ZELT Packages:");
    ASSERT_TRUE(window);
    ASSERT_TRUE(WaitUntilServing(program));
    const HoldingClient client;
    EXPECT_TRUE(client.Holds());
    PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    EXPECT_FALSE(program.Wait(1500));
    EXPECT_EQ(0u, client.ReleaseAndEnd());
    EXPECT_TRUE(program.Wait(kLongest));
}

TEST_F(Lifetime, ACommandLineThatOnlyMentionsRegistrationServesWithoutAWindow)
{
    const Process server = Start(ServerPath(), L"regserver");
    ASSERT_TRUE(WaitUntilServing(server));
    EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId));
    EXPECT_EQ(0u, server.Wait(kLongest));
}

}  // namespace
