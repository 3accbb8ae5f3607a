// The notification "Logging to ...", with the system's function replaced. A log that opens shows it if the user wants that.
#include <windows.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "log/log_location.h"
#include "log/open_log.h"
#include "shell/log_notification.h"
#include "tests/windows/module_fixture.h"
#include "tests/windows/patched_import.h"

namespace zelt::test {
namespace {

struct Notified {
    DWORD what;
    NOTIFYICONDATAW icon;
};
std::vector<Notified> notified;
bool hasTaskBar = true;

BOOL WINAPI Notify(DWORD what, NOTIFYICONDATAW* icon)
{
    notified.push_back({what, *icon});
    return hasTaskBar;
}

class Notification : public ModuleTest {
protected:
    Notification()
    {
        notified.clear();
        hasTaskBar = true;
    }
    // The only call of Shell_NotifyIconW since the previous TakeOne.
    static Notified TakeOne()
    {
        EXPECT_EQ(1u, notified.size());
        const Notified one = notified.empty() ? Notified{} : notified.back();
        notified.clear();
        return one;
    }

    const PatchedImport<decltype(Shell_NotifyIconW)> patch{"Shell_NotifyIconW", Notify};
};

TEST_F(Notification, SaysWhereTheLogGoes)
{
    LogNotification notification;
    notification.Show(L"C:\\logs\\a b.zlg");
    const Notified shown = TakeOne();
    EXPECT_EQ(static_cast<DWORD>(NIM_ADD), shown.what);
    EXPECT_EQ(sizeof(NOTIFYICONDATAW), shown.icon.cbSize);
    EXPECT_EQ(static_cast<UINT>(NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_INFO), shown.icon.uFlags);
    EXPECT_STREQ(L"ZELT", shown.icon.szInfoTitle);
    EXPECT_STREQ(L"ZELT", shown.icon.szTip);
    EXPECT_STREQ(L"Logging to C:\\logs\\a b.zlg", shown.icon.szInfo);
    EXPECT_NE(nullptr, shown.icon.hIcon);
    EXPECT_TRUE(shown.icon.dwInfoFlags & NIIF_RESPECT_QUIET_TIME);
}

TEST_F(Notification, OfTheNextLogReplacesIt)
{
    LogNotification notification;
    notification.Show(L"C:\\one.zlg");
    TakeOne();
    notification.Show(L"C:\\two.zlg");
    const Notified shown = TakeOne();
    EXPECT_EQ(static_cast<DWORD>(NIM_MODIFY), shown.what);
    EXPECT_STREQ(L"Logging to C:\\two.zlg", shown.icon.szInfo);
}

TEST_F(Notification, ShowsTheEndOfALongPath)
{
    LogNotification notification;
    const std::wstring fits = L"C:\\" + std::wstring(241, L'p');
    notification.Show(fits);
    EXPECT_EQ(L"Logging to " + fits, TakeOne().icon.szInfo);
    notification.Show(fits + L'q');
    EXPECT_EQ(L"Logging to \u2026" + (fits + L'q').substr(2), TakeOne().icon.szInfo);
}

TEST_F(Notification, DisappearsAfterAClickOrAWhileOrWithItsOwner)
{
    const struct {
        const char* cause;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    } rows[] = {{"time", WM_TIMER, 1, 0},
                {"click", WM_APP, 1, NIN_BALLOONUSERCLICK},
                {"closed", WM_APP, 1, NIN_BALLOONTIMEOUT}};
    for (const auto& row : rows) {
        LogNotification notification;
        notification.Show(L"C:\\one.zlg");
        const HWND window = TakeOne().icon.hWnd;
        SendMessageW(window, WM_APP, 1, WM_MOUSEMOVE);
        // A timer that the notification has not set.
        SendMessageW(window, WM_TIMER, 2, 0);
        EXPECT_TRUE(notified.empty());
        SendMessageW(window, row.message, row.wParam, row.lParam);
        EXPECT_EQ(static_cast<DWORD>(NIM_DELETE), TakeOne().what) << row.cause;
        notification.Show(L"C:\\two.zlg");
        EXPECT_EQ(static_cast<DWORD>(NIM_ADD), TakeOne().what) << row.cause;
        SendMessageW(window, row.message, row.wParam, row.lParam);
        TakeOne();
    }
    EXPECT_TRUE(notified.empty());
    {
        LogNotification notification;
        notification.Show(L"C:\\one.zlg");
        TakeOne();
    }
    EXPECT_EQ(static_cast<DWORD>(NIM_DELETE), TakeOne().what);
}

TEST_F(Notification, IsForgottenWithoutATaskBar)
{
    hasTaskBar = false;
    {
        LogNotification notification;
        notification.Show(L"C:\\one.zlg");
        EXPECT_EQ(static_cast<DWORD>(NIM_ADD), TakeOne().what);
    }
    EXPECT_TRUE(notified.empty());
}

TEST_F(Notification, AppearsForALogIfTheUserWantsIt)
{
    static std::wstring path;
    wchar_t folder[MAX_PATH];
    ASSERT_NE(0u, GetTempPathW(MAX_PATH, folder));
    path = std::wstring(folder) + L"notified.zlg";
    static const LogSurroundings surroundings = {[] { return SYSTEMTIME{}; }, [](std::wstring&) { return false; },
                                                 [](const std::wstring&, std::wstring& chosen) {
                                                     chosen = path;
                                                     return true;
                                                 }};
    SetLogSurroundings(&surroundings);
    LogOptions options;
    options.promptOpenLog = false;
    for (const bool wanted : {false, true}) {
        options.notifyLog = wanted;
        const OpenedLog log = OpenLog(options, L"A", L"A", "package");
        EXPECT_TRUE(log.document.Get());
        EXPECT_EQ(wanted ? 1u : 0u, notified.size());
    }
    EXPECT_EQ(L"Logging to " + path, TakeOne().icon.szInfo);
    // This log cannot be opened, so there is no notification.
    path = L"C:\\no such folder\\a.zlg";
    EXPECT_FALSE(OpenLog(options, L"A", L"A", "package").document.Get());
    EXPECT_TRUE(notified.empty());
    SetLogSurroundings(nullptr);
    DeleteFileW((std::wstring(folder) + L"notified.zlg").c_str());
}

}  // namespace
}  // namespace zelt::test
