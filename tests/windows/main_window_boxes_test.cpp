// The message boxes of the main window, and its calls to the system's help, in this process.
#include <thread>
#include <utility>

#include "shell/main_window/help.h"
#include "shell/main_window/package_manager_dialog.h"
#include "tests/windows/controls.h"
#include "tests/windows/module_fixture.h"
#include "tests/windows/program.h"
#include "tests/windows/recorded_boxes.h"

namespace zelt::test {
namespace {

class MainWindowBoxes : public ModuleTest {
protected:
    void SetUp() override
    {
        CPackageManagerDlg::Show();
        window = FindWindowW(nullptr, L"ZELT Packages:");
        ASSERT_NE(nullptr, window);
    }
    void TearDown() override
    {
        if (window) DestroyWindow(window);
    }

    RecordedBoxes boxes;
    HWND window = nullptr;
};

// Selects a component as the user does, and gives it an export name that is already used.
void ChooseAgain()
{
    HWND dialog = nullptr;
    EXPECT_TRUE(
        WaitUntil([&] { return (dialog = FindWindowW(nullptr, L"Export package:")) && IsWindowVisible(dialog); }));
    if (!dialog) return;
    const RemoteTree tree(GetCurrentProcess(), GetDlgItem(dialog, 301));
    tree.Select(tree.Find(L"Chosen twice"));
    SendDlgItemMessageW(dialog, 303, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"TAKEN"));
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    if (WaitUntil([&] { return !IsWindow(dialog); })) return;
    ADD_FAILURE() << "the dialog stays";
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

TEST_F(MainWindowBoxes, ANameThatIsTakenIsRefusedInFrontOfEverything)
{
    RegisteredComponents components;
    components.Add(L"{7E57BBBB-0000-0000-0000-000000000003}", L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}",
                   L"Chosen twice");
    Export(PackageKind::PropertyPackage11StandAlone, L"Taken", false);
    std::thread user(ChooseAgain);
    SendMessageW(window, WM_COMMAND, 901, 0);
    user.join();
    const RecordedBoxes::Box box = boxes.TakeOne();
    EXPECT_EQ(L"The selected property package is already exported", box.text);
    EXPECT_EQ(L"Add package:", box.caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONINFORMATION | MB_TOPMOST), box.flags);
    EXPECT_EQ(window, box.owner);
    EXPECT_EQ(1u, ExportedPackages().Count());
}

// Replacements for the functions with which the program finds the library of the system's help in the registry, loads it, and
// gets its function; and for that function.
struct HelpCall {
    HWND caller;
    std::wstring file;
    UINT command;
};
std::vector<HelpCall> helpCalls;
HWND helpWindow = nullptr;
bool helpRegistered = true;

HWND WINAPI ShowHelp(HWND caller, const wchar_t* file, UINT command, DWORD_PTR)
{
    helpCalls.push_back({caller, file ? file : L"", command});
    return helpWindow;
}

std::wstring helpKey, helpLibrary;
LSTATUS WINAPI FindHelp(HKEY root, const wchar_t* key, const wchar_t*, DWORD, DWORD*, void* data, DWORD*)
{
    EXPECT_EQ(HKEY_CLASSES_ROOT, root);
    helpKey = key;
    if (!helpRegistered) return ERROR_FILE_NOT_FOUND;
    lstrcpyW(static_cast<wchar_t*>(data), L"help of the test.ocx");
    return ERROR_SUCCESS;
}
HMODULE WINAPI LoadHelp(const wchar_t* library, HANDLE, DWORD)
{
    helpLibrary = library;
    return GetModuleHandleW(nullptr);
}
FARPROC WINAPI HelpFunction(HMODULE, const char* name)
{
    EXPECT_STREQ("HtmlHelpW", name);
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(ShowHelp));
}

TEST_F(MainWindowBoxes, HelpOpensItsTopicAndClosesWithTheWindow)
{
    static bool done = false;
    if (std::exchange(done, true)) GTEST_SKIP() << "the process keeps the function that it found";
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring path = program;
    const std::wstring file = path.substr(0, path.rfind(L'\\') + 1) + L"BRIX.chm";
    const auto expectRefusal = [&](const char* why) {
        SCOPED_TRACE(why);
        SendMessageW(window, WM_COMMAND, 908, 0);
        const RecordedBoxes::Box box = boxes.TakeOne();
        EXPECT_EQ(L"Failed to load HTML Help file " + file, box.text);
        EXPECT_EQ(L"Error starting Help:", box.caption);
        EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR), box.flags);
        EXPECT_EQ(window, box.owner);
    };
    const PatchedImport registry("RegGetValueW", FindHelp);
    const PatchedImport loader("LoadLibraryExW", LoadHelp);
    const PatchedImport finder("GetProcAddress", HelpFunction);

    helpRegistered = false;
    expectRefusal("the control is not registered");
    EXPECT_TRUE(helpCalls.empty());
    EXPECT_EQ(L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32", helpKey);

    helpRegistered = true;
    expectRefusal("the file cannot be shown");
    EXPECT_EQ(L"help of the test.ocx", helpLibrary);
    ASSERT_EQ(1u, helpCalls.size());
    EXPECT_EQ(window, helpCalls[0].caller);
    EXPECT_EQ(file + L"::/utils/zelt.htm", helpCalls[0].file);
    EXPECT_EQ(0u, helpCalls[0].command);

    helpWindow = GetDesktopWindow();
    SendMessageW(window, WM_COMMAND, 908, 0);
    EXPECT_TRUE(boxes.All().empty());
    EXPECT_EQ(2u, helpCalls.size());

    // The window closes all help that it has opened.
    DestroyWindow(std::exchange(window, nullptr));
    ASSERT_EQ(3u, helpCalls.size());
    EXPECT_EQ(0x12u, helpCalls[2].command);
    EXPECT_EQ(nullptr, helpCalls[2].caller);
}

}  // namespace
}  // namespace zelt::test
