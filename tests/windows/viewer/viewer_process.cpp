#include "viewer_process.h"

#include <fstream>

#include "res/resource.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

constexpr DWORD kTimeToEnd = 15'000;

BOOL CALLBACK CloseIfOf(HWND window, LPARAM process)
{
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == static_cast<DWORD>(process) && IsWindowVisible(window) && IsWindowEnabled(window)) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return TRUE;
}

}  // namespace

std::string InLog(const std::string& content)
{
    return "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n" + content + "</zeltlogdocument>\r\n";
}

ViewerTest::ViewerTest()
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    static int number = 0;
    name = L"log of " + std::to_wstring(GetCurrentProcessId()) + L" " + std::to_wstring(++number) + L".zlg";
    path = folder + name;
}

ViewerTest::~ViewerTest()
{
    tree.reset();
    list.reset();
    // COM would still connect to a killed server, so this asks it to end. Boxes close before the window behind them.
    if (process) {
        WaitUntil(
            [this] {
                EnumWindows(CloseIfOf, static_cast<LPARAM>(Id()));
                return process->Wait(100).has_value();
            },
            kTimeToEnd);
    }
    DeleteFileW(path.c_str());
}

void ViewerTest::Start(const std::string& log)
{
    FILE* file = _wfopen(path.c_str(), L"wb");
    ASSERT_NE(nullptr, file);
    std::fwrite(log.data(), 1, log.size(), file);
    std::fclose(file);
    StartWithoutLog();
}

void ViewerTest::StartWithoutLog()
{
    const std::string executable = BuiltServer();
    process = Process::Start(L"\"" + std::wstring(executable.begin(), executable.end()) + L"\" \"" + path + L"\"");
}

void ViewerTest::WaitForWindow()
{
    window = FindWindowOf(Id(), L"Log file " + name + L":", 60'000);
    ASSERT_NE(nullptr, window);
    tree = std::make_unique<RemoteTree>(GetDlgItem(window, kLogTree));
    list = std::make_unique<RemoteList>(GetDlgItem(window, kErrorList));
}

void ViewerTest::Send(int command) const
{
    SendNotifyMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
    // The window answers WM_NULL after the command, or while the command lets messages in, as a box does.
    SendMessageW(window, WM_NULL, 0, 0);
}

void ViewerTest::Find(const std::wstring& text, bool ignoreCase, bool wholeItem)
{
    PostMessageW(window, WM_COMMAND, kCommandFind, 0);
    const HWND dialog = FindWindowOf(Id(), L"Search:");
    ASSERT_NE(nullptr, dialog);
    SendDlgItemMessageW(dialog, kSearchText, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    SendDlgItemMessageW(dialog, kSearchIgnoreCase, BM_SETCHECK, ignoreCase ? BST_CHECKED : BST_UNCHECKED, 0);
    SendDlgItemMessageW(dialog, kSearchWholeItem, BM_SETCHECK, wholeItem ? BST_CHECKED : BST_UNCHECKED, 0);
    PressButton(dialog, IDOK);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    SendMessageW(window, WM_NULL, 0, 0);
}

}  // namespace zelt::test
