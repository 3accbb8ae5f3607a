// The main window may be closed while one of its handlers shows a box. The box for an inaccessible registry has no
// owner, so the window behind it can be used.
#include <gtest/gtest.h>
#include <commctrl.h>

#include "com/server_reference.h"
#include "res/resource.h"
#include "shell/main_window/package_manager_dialog.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/unit/support/recorded_messages.h"
#include "tests/system/harness/refused_writes.h"

namespace zelt::test {
namespace {

HWND window;
long referencesInBox;

BOOL CALLBACK TakeMainWindow(HWND each, LPARAM)
{
    if (GetDlgItem(each, kPackageList)) window = each;
    return TRUE;
}

class MainWindowLifetime : public testing::Test {
protected:
    MainWindowLifetime()
    {
        const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&controls);
        ExportedPackages().UseRoot(scratch.Root());
        TheLogOptions().root = scratch.Root();
        auto package = std::make_unique<ExportedPackage>();
        package->exportedName = L"Aromatics";
        ExportedPackages().Append(std::move(package));
    }
    ~MainWindowLifetime() override
    {
        if (window) DestroyWindow(window);
        while (ExportedPackages().Count()) ExportedPackages().Remove(0);
        ExportedPackages().UseRoot({});
        TheLogOptions() = {};
    }
    void SetUp() override
    {
        if (std::getenv("WINEPREFIX") && !std::getenv("DISPLAY")) GTEST_SKIP() << "needs a display";
        before = com::CountServerReferences();
        CPackageManagerDlg::Show();
        EnumThreadWindows(GetCurrentThreadId(), TakeMainWindow, 0);
        ASSERT_TRUE(window);
        list = GetDlgItem(window, kPackageList);
        ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
    }
    // Closes the window while the first box that `act` causes is open.
    template <class Act>
    void ExpectToOutliveItsHandler(const char* what, Act&& act)
    {
        SCOPED_TRACE(what);
        RecordedMessages messages;
        referencesInBox = -1;
        messages.meanwhile = [] {
            if (!window) return;
            DestroyWindow(std::exchange(window, nullptr));
            referencesInBox = com::CountServerReferences();
        };
        act();
        ASSERT_FALSE(messages.All().empty());
        EXPECT_EQ(L"Unable to access the registry; unable to store or load packages", messages.All()[0].text);
        EXPECT_EQ(before + 1, referencesInBox) << "the object is gone although its handler runs";
        EXPECT_EQ(before, com::CountServerReferences()) << "the object stays";
    }
    static HMENU OptionsMenu() { return GetSubMenu(GetMenu(window), 3); }

    ScratchKey scratch;
    HWND list = nullptr;
    long before = 0;
};

TEST_F(MainWindowLifetime, EndsAfterRemovingAPackage)
{
    scratch.MakeInaccessible();
    ExpectToOutliveItsHandler("remove", [] { SendMessageW(window, WM_COMMAND, kCommandRemovePackage, 0); });
}

TEST_F(MainWindowLifetime, EndsAfterTogglingTheLog)
{
    scratch.MakeInaccessible();
    ExpectToOutliveItsHandler("toggle", [] { SendMessageW(window, WM_COMMAND, kCommandEnableLogging, 0); });
}

TEST_F(MainWindowLifetime, EndsAfterTakingACheck)
{
    scratch.MakeInaccessible();
    ExpectToOutliveItsHandler("check", [this] { ListView_SetCheckState(list, 0, TRUE); });
}

TEST_F(MainWindowLifetime, EndsAfterPreparingItsOptions)
{
    scratch.MakeInaccessible();
    ExpectToOutliveItsHandler(
        "menu", [] { SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(OptionsMenu()), 3); });
}

TEST_F(MainWindowLifetime, EndsAfterAnOption)
{
    scratch.MakeInaccessible();
    ExpectToOutliveItsHandler("option", [] { SendMessageW(window, WM_COMMAND, kCommandPromptOpenLog, 0); });
}

TEST_F(MainWindowLifetime, EndsAfterTheChoiceOfAUnitOperation)
{
    scratch.MakeInaccessible();
    ExpectToOutliveItsHandler("unit", [] { SendMessageW(window, WM_COMMAND, kCommandAskUser, 0); });
}

TEST_F(MainWindowLifetime, FitsItsListAfterTheScreensResolutionChanged)
{
    RECT fitting, now, place;
    GetWindowRect(list, &fitting);
    GetWindowRect(window, &place);
    SetWindowPos(list, nullptr, 40, 40, 50, 50, SWP_NOZORDER | SWP_NOACTIVATE);
    ListView_SetColumnWidth(list, 0, 3);
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&place));
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    GetWindowRect(list, &now);
    EXPECT_TRUE(EqualRect(&fitting, &now)) << now.left << ' ' << now.right;
    EXPECT_LT(20, ListView_GetColumnWidth(list, 0));
}

TEST_F(MainWindowLifetime, SaysWhatIsNotStored)
{
    const struct {
        int command;
        const wchar_t* lost;
    } rows[] = {
        {kCommandEnableLogging, L"the list of packages"},
        {kCommandAutoLogLocation, L"the option \"Automatic log location\""},
        {kCommandPromptOpenLog, L"the option \"Prompt for opening log when object terminates\""},
        {kCommandAskUser, L"the option \"PRAVIK logs unit operation\""},
        {kCommandRecordCalls, L"the option \"Record calls\""},
        {kCommandRemovePackage, L"the list of packages"},
    };
    const RefusedWrites refused;
    for (const auto& row : rows) {
        const RecordedMessages messages;
        SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(row.command), 0);
        ASSERT_EQ(1u, messages.All().size()) << row.command;
        EXPECT_EQ(std::wstring(L"Failed to store ") + row.lost + L" in the registry: " + RefusedWrites::Reason(),
                  messages.All()[0].text);
        EXPECT_EQ(L"ZELT", messages.All()[0].caption);
    }
    DestroyWindow(std::exchange(window, nullptr));
    EXPECT_EQ(before, com::CountServerReferences());
}

}  // namespace
}  // namespace zelt::test
