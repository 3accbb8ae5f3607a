// What the program requests from the file dialogs. The system's functions are replaced, and no file dialog is shown.
#include <windows.h>
#include <commdlg.h>

#include <optional>
#include <string>
#include <vector>

#include "log/log_location.h"
#include "shell/main_window/package_manager_dialog.h"
#include "tests/windows/module_fixture.h"
#include "tests/windows/patched_import.h"

namespace zelt::test {
namespace {

// The request to a dialog. Its texts are copied while the dialog is open; `folder` is only compared with null.
struct Request {
    HWND owner;
    std::wstring title, extension, initialName;
    std::wstring filter;  // its texts, each followed by a bar
    DWORD length, flags, filterIndex;
    const wchar_t* folder;
    LPOFNHOOKPROC hook;
};
std::optional<Request> request;
const wchar_t* answer = nullptr;  // the file that the user names; null for Cancel

BOOL Take(OPENFILENAMEW* dialog)
{
    EXPECT_EQ(sizeof(OPENFILENAMEW), dialog->lStructSize);
    Request taken = {
        dialog->hwndOwner, dialog->lpstrTitle, dialog->lpstrDefExt,  dialog->lpstrFile,       L"",
        dialog->nMaxFile,  dialog->Flags,      dialog->nFilterIndex, dialog->lpstrInitialDir, dialog->lpfnHook};
    for (const wchar_t* text = dialog->lpstrFilter; *text; text += std::wstring(text).size() + 1) {
        taken.filter += std::wstring(text) + L'|';
    }
    request = taken;
    if (!answer) return FALSE;
    lstrcpynW(dialog->lpstrFile, answer, static_cast<int>(dialog->nMaxFile));
    return TRUE;
}

BOOL WINAPI TakeOpen(OPENFILENAMEW* dialog) { return Take(dialog); }
BOOL WINAPI TakeSave(OPENFILENAMEW* dialog) { return Take(dialog); }

constexpr wchar_t kFilter[] = L"ZELT Log Files (*.zlg)|*.zlg|All files (*.*)|*.*|";

class FileDialogs : public ModuleTest {
protected:
    FileDialogs()
    {
        request.reset();
        answer = nullptr;
    }
};

TEST_F(FileDialogs, ViewLogAsksForALogThatIsThere)
{
    const PatchedImport patch("GetOpenFileNameW", TakeOpen);
    CPackageManagerDlg::Show();
    const HWND window = FindWindowW(nullptr, L"ZELT Packages:");
    ASSERT_NE(nullptr, window);
    SendMessageW(window, WM_COMMAND, 904, 0);
    DestroyWindow(window);
    ASSERT_TRUE(request);
    EXPECT_EQ(window, request->owner);
    EXPECT_EQ(L"View log file:", request->title);
    EXPECT_EQ(kFilter, request->filter);
    EXPECT_EQ(L"zlg", request->extension);
    EXPECT_EQ(L"", request->initialName);
    EXPECT_EQ(1024u, request->length);
    EXPECT_EQ(static_cast<DWORD>(OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR), request->flags);
    EXPECT_EQ(nullptr, request->folder);
}

class NewLogDialog : public FileDialogs {
protected:
    // False if there is no path; then `path` is not changed.
    bool Choose(std::wstring& path)
    {
        const PatchedImport patch("GetSaveFileNameW", TakeSave);
        std::optional<std::wstring> chosen;
        EXPECT_TRUE(static_cast<bool>(ChooseLogPath(LogOptions(), L"Create log for Aromatics:", chosen)));
        if (chosen) path = *chosen;
        return chosen.has_value();
    }
};

TEST_F(NewLogDialog, AsksBeforeItOverwrites)
{
    std::wstring path = L"before";
    EXPECT_FALSE(Choose(path));
    EXPECT_EQ(L"before", path);
    ASSERT_TRUE(request);
    EXPECT_EQ(nullptr, request->owner);
    EXPECT_EQ(L"Create log for Aromatics:", request->title);
    EXPECT_EQ(kFilter, request->filter);
    EXPECT_EQ(L"zlg", request->extension);
    EXPECT_EQ(L"", request->initialName);
    EXPECT_EQ(1024u, request->length);
    EXPECT_EQ(
        static_cast<DWORD>(OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_ENABLEHOOK),
        request->flags);
    EXPECT_EQ(nullptr, request->folder);
}

TEST_F(NewLogDialog, GivesTheNameThatIsConfirmed)
{
    answer = L"C:\\logs\\a new one.zlg";
    std::wstring path;
    EXPECT_TRUE(Choose(path));
    EXPECT_EQ(answer, path);
}

// The hook belongs to a page inside the dialog.
TEST_F(NewLogDialog, PutsItselfInFrontOnceAndStaysWhereItIs)
{
    std::wstring path;
    Choose(path);
    ASSERT_TRUE(request && request->hook);
    const HWND dialog =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 30, 40, 200, 100, nullptr, nullptr, nullptr, nullptr);
    const HWND page = CreateWindowExW(0, L"Static", L"", WS_CHILD, 0, 0, 10, 10, dialog, nullptr, nullptr, nullptr);
    const auto topmost = [dialog] { return (GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
    const auto notify = [&](UINT code) {
        OFNOTIFYW notification = {};
        notification.hdr = {dialog, 0, code};
        return request->hook(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
    };
    EXPECT_EQ(0u, request->hook(page, WM_INITDIALOG, 0, 0));
    EXPECT_EQ(0u, notify(CDN_SELCHANGE));
    EXPECT_FALSE(topmost());
    EXPECT_EQ(0u, notify(CDN_INITDONE));
    EXPECT_TRUE(topmost());
    RECT place;
    GetWindowRect(dialog, &place);
    EXPECT_EQ(30, place.left);
    EXPECT_EQ(40, place.top);
    EXPECT_EQ(200, place.right - place.left);
    EXPECT_EQ(100, place.bottom - place.top);
    DestroyWindow(dialog);
}

bool mayBeInFront = false;
std::vector<std::wstring> frontCalls;
BOOL WINAPI TakeForeground(HWND window)
{
    wchar_t title[20] = L"";
    GetWindowTextW(window, title, 20);
    frontCalls.push_back(std::wstring(L"front ") + title);
    return mayBeInFront;
}
BOOL WINAPI TakeFlash(FLASHWINFO* flash)
{
    frontCalls.push_back(L"flash " + std::to_wstring(flash->dwFlags));
    return TRUE;
}

// Windows may refuse the dialog the keyboard while the user works with the simulator.
TEST_F(NewLogDialog, GetsTheKeyboardOnceItIsShownOrElseFlashes)
{
    const PatchedImport foreground("SetForegroundWindow", TakeForeground);
    const PatchedImport flash("FlashWindowEx", TakeFlash);
    std::wstring path;
    Choose(path);
    ASSERT_TRUE(request && request->hook);
    for (const bool granted : {true, false}) {
        mayBeInFront = granted;
        frontCalls.clear();
        const HWND dialog =
            CreateWindowExW(0, L"Static", L"dialog", WS_POPUP, 30, 40, 200, 100, nullptr, nullptr, nullptr, nullptr);
        const HWND page = CreateWindowExW(0, L"Static", L"", WS_CHILD, 0, 0, 10, 10, dialog, nullptr, nullptr, nullptr);
        // Passes the page's messages to the hook, as a dialog does.
        const auto pump = [&](DWORD milliseconds) {
            const ULONGLONG end = GetTickCount64() + milliseconds;
            int ticks = 0;
            while (GetTickCount64() < end) {
                MSG message;
                while (PeekMessageW(&message, page, 0, 0, PM_REMOVE)) {
                    ticks += message.message == WM_TIMER;
                    request->hook(page, message.message, message.wParam, message.lParam);
                }
                Sleep(5);
            }
            return ticks;
        };
        OFNOTIFYW notification = {};
        notification.hdr = {dialog, 0, CDN_INITDONE};
        request->hook(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
        EXPECT_GT(pump(300), 0);
        EXPECT_TRUE(frontCalls.empty()) << "it is not shown yet";
        ShowWindow(dialog, SW_SHOWNA);
        EXPECT_GT(pump(300), 0);
        std::vector<std::wstring> expected = {L"front dialog"};
        if (!granted) expected.push_back(L"flash " + std::to_wstring(FLASHW_ALL | FLASHW_TIMERNOFG));
        EXPECT_EQ(expected, frontCalls);
        EXPECT_EQ(0, pump(150)) << "it takes the keyboard only once";
        DestroyWindow(dialog);
    }
}

}  // namespace
}  // namespace zelt::test
