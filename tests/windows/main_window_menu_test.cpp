// The main window's menus and columns in each state, in this process.
#include <windows.h>
#include <commctrl.h>

#include <memory>
#include <string>

#include "log/log_options.h"
#include "shell/main_window/package_manager_dialog.h"
#include "tests/system/harness/stored_options.h"
#include "tests/windows/menu_text.h"
#include "tests/windows/module_fixture.h"

namespace zelt::test {
namespace {

// The numbers are literals here, not the names in res/resource.h, because programs that control the window rely on them.
constexpr int kList = 201, kRemove = 902, kToggleLogging = 903;
enum Popup { kPackage = 1, kLog = 2, kOptions = 3 };
constexpr UINT kUnits = 2;  // the position of the submenu in the options menu

class MainWindowHere : public ModuleTest {
protected:
    void SetUp() override
    {
        Export(PackageKind::PropertyPackage11StandAlone, L"Logged", true);
        Export(PackageKind::PropertyPackage11StandAlone, L"Unlogged", false);
        ASSERT_NO_FATAL_FAILURE(Show());
    }
    void Show()
    {
        CPackageManagerDlg::Show();
        window = FindWindowW(nullptr, L"ZELT Packages:");
        ASSERT_NE(nullptr, window);
        list = GetDlgItem(window, kList);
        ASSERT_NE(nullptr, list);
    }
    void TearDown() override
    {
        if (window) DestroyWindow(window);
    }
    HMENU Menu(int popup) const { return GetSubMenu(GetMenu(window), popup); }
    HMENU Units() const { return GetSubMenu(Menu(kOptions), kUnits); }
    // The text of the popup when it opens.
    std::wstring Opened(HMENU menu, UINT place) const
    {
        SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), MAKELPARAM(place, FALSE));
        return MenuText(menu);
    }
    std::wstring Opened(Popup popup) const { return Opened(Menu(popup), popup); }
    // The submenu opens after its menu.
    std::wstring OpenedUnits() const
    {
        Opened(kOptions);
        return Opened(Units(), kUnits);
    }
    void Select(int row) const { ListView_SetItemState(list, row, LVIS_SELECTED, LVIS_SELECTED); }
    void SelectNone() const { ListView_SetItemState(list, -1, 0, LVIS_SELECTED); }
    void Command(int command) const { SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0); }
    // Changes the options as another process would.
    static void Store(const LogOptions& values) { test::Store(values); }

    HWND window = nullptr, list = nullptr;
};

TEST_F(MainWindowHere, WithoutASelectionNothingCanBeRemovedOrLogged)
{
    const std::wstring package = L"901 &Add package...\n902 &Remove package... (grey)\n";
    const std::wstring log = L"903 &Enable logging (grey)\n-\n904 &View log...\n";
    EXPECT_EQ(package, Opened(kPackage));
    EXPECT_EQ(log, Opened(kLog));
    // Also after something was selected.
    Select(0);
    Opened(kPackage);
    Opened(kLog);
    SelectNone();
    EXPECT_EQ(package, Opened(kPackage));
    EXPECT_EQ(log, Opened(kLog));
}

TEST_F(MainWindowHere, TheSelectedPackageDecidesWhatIsChecked)
{
    Select(0);
    EXPECT_EQ(L"901 &Add package...\n902 &Remove package...\n", Opened(kPackage));
    EXPECT_EQ(L"x 903 &Enable logging\n-\n904 &View log...\n", Opened(kLog));
    Select(1);
    EXPECT_EQ(L"901 &Add package...\n902 &Remove package...\n", Opened(kPackage));
    EXPECT_EQ(L"903 &Enable logging\n-\n904 &View log...\n", Opened(kLog));
    Command(kToggleLogging);
    EXPECT_EQ(L"x 903 &Enable logging\n-\n904 &View log...\n", Opened(kLog));
    EXPECT_TRUE(ExportedPackages().At(1).loggingEnabled);
}

// The item "Remove package" changes its state with the selection, not only when the menu opens.
TEST_F(MainWindowHere, RemovalFollowsTheSelectionAtOnce)
{
    const std::wstring off = L"901 &Add package...\n902 &Remove package... (grey)\n";
    const std::wstring on = L"901 &Add package...\n902 &Remove package...\n";
    EXPECT_EQ(off, MenuText(Menu(kPackage)));
    Select(1);
    EXPECT_EQ(on, MenuText(Menu(kPackage)));
    SelectNone();
    EXPECT_EQ(off, MenuText(Menu(kPackage)));
    Select(1);
    Command(kRemove);
    EXPECT_EQ(1u, ExportedPackages().Count());
    EXPECT_EQ(off, MenuText(Menu(kPackage)));
    // Opening the menu sets the state too, even if something else has changed it.
    EnableMenuItem(Menu(kPackage), kRemove, MF_BYCOMMAND | MF_ENABLED);
    EXPECT_EQ(off, Opened(kPackage));
}

TEST_F(MainWindowHere, AnEmptyListHasNothingToRemove)
{
    DestroyWindow(window);
    RemoveAll();
    ASSERT_NO_FATAL_FAILURE(Show());
    EXPECT_EQ(0, ListView_GetItemCount(list));
    EXPECT_EQ(L"901 &Add package...\n902 &Remove package... (grey)\n", MenuText(Menu(kPackage)));
}

TEST_F(MainWindowHere, TheOptionsAreCheckedAsTheyAreStored)
{
    const struct {
        bool automatic, prompt;
        const wchar_t *first, *second;
    } rows[] = {
        {false, false, L"", L""}, {true, false, L"x ", L""}, {false, true, L"", L"x "}, {true, true, L"x ", L"x "}};
    for (const auto& row : rows) {
        LogOptions options;
        options.autoLogLocation = row.automatic;
        options.promptOpenLog = row.prompt;
        Store(options);
        const std::wstring expected = std::wstring(row.first) + L"905 &Automatic log location\n" + row.second +
                                      L"906 &Prompt for opening log when object terminates\n";
        EXPECT_EQ(expected, Opened(kOptions).substr(0, expected.size()));
    }
}

TEST_F(MainWindowHere, TheLastOptionIsCheckedAsItIsStored)
{
    for (const bool records : {false, true}) {
        LogOptions options;
        options.recordCalls = records;
        Store(options);
        const std::wstring text = Opened(kOptions), end = std::wstring(records ? L"x " : L"") + L"910 &Record calls\n";
        EXPECT_TRUE(text.ends_with(L'\n' + end)) << testing::PrintToString(text);
    }
}

TEST_F(MainWindowHere, TheSystemMenuEndsWithAbout)
{
    const HMENU menu = GetSystemMenu(window, FALSE);
    const int count = GetMenuItemCount(menu);
    ASSERT_GE(count, 2);
    const std::wstring text = MenuText(menu), end = L"-\n16 &About ZELT...\n";
    ASSERT_GE(text.size(), end.size());
    EXPECT_EQ(end, text.substr(text.size() - end.size()));
}

TEST_F(MainWindowHere, TheColumnsAreAsWideAsWhatTheyShow)
{
    const auto title = [this](int column) {
        wchar_t text[50] = L"";
        LVCOLUMNW record = {};
        record.mask = LVCF_TEXT;
        record.pszText = text;
        record.cchTextMax = 50;
        return ListView_GetColumn(list, column, &record) ? std::wstring(text) : L"(no such column)";
    };
    EXPECT_EQ(L"Package", title(0));
    EXPECT_EQ(L"Type", title(1));
    EXPECT_EQ(2, Header_GetItemCount(ListView_GetHeader(list)));

    const auto width = [this](int column) { return ListView_GetColumnWidth(list, column); };
    const auto needed = [this](const std::wstring& text) { return ListView_GetStringWidth(list, text.c_str()); };
    // The picture is before the name, and the check box before the picture.
    constexpr int kPicture = 16;
    EXPECT_GT(width(0), needed(L"Unlogged") + kPicture);
    EXPECT_GT(width(0), needed(L"Package"));
    EXPECT_GT(width(1), needed(L"PP 1.1"));
    EXPECT_GT(width(1), needed(L"Type"));

    const int before = width(0);
    const std::wstring longName(80, L'w');
    Export(PackageKind::PropertyPackage11StandAlone, longName, false);
    Select(0);
    Command(kToggleLogging);
    EXPECT_GT(width(0), needed(longName) + kPicture);
    Select(2);
    Command(kRemove);
    EXPECT_EQ(before, width(0));
}

TEST_F(MainWindowHere, TheListHasCheckBoxesAndTheWindowItsIcon)
{
    EXPECT_TRUE(ListView_GetExtendedListViewStyle(list) & LVS_EX_CHECKBOXES);
    const struct {
        WPARAM kind;
        int width, height;
    } rows[] = {{ICON_BIG, SM_CXICON, SM_CYICON}, {ICON_SMALL, SM_CXSMICON, SM_CYSMICON}};
    for (const auto& row : rows) {
        // A shared icon is loaded only once, so this is the same icon.
        const HANDLE icon = LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(201), IMAGE_ICON,
                                       GetSystemMetrics(row.width), GetSystemMetrics(row.height), LR_SHARED);
        EXPECT_NE(nullptr, icon);
        EXPECT_EQ(reinterpret_cast<LRESULT>(icon), SendMessageW(window, WM_GETICON, row.kind, 0));
    }
}

// A process searches for the machine's unit operations only once, so they must exist before the first test needs them.
class UnitOperationsHere : public MainWindowHere {
protected:
    static void SetUpTestSuite()
    {
        components = std::make_unique<RegisteredComponents>();
        components->Add(L"{7E57AAAA-0000-0000-0000-000000000001}", L"{678C09A5-7D66-11D2-A67D-00105A42887F}",
                        L"Flash & mix");
        components->Add(L"{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}", L"{678C09A5-7D66-11D2-A67D-00105A42887F}", L"Own");
    }
    static void TearDownTestSuite() { components.reset(); }
    static void Choose(const CLSID& unit)
    {
        LogOptions options;
        options.pravikUnit = unit;
        Store(options);
    }
    // The number of the item with this text; 0 if there is none.
    int CommandOf(const wchar_t* text) const
    {
        for (int place = 0; place < GetMenuItemCount(Units()); ++place) {
            wchar_t found[256] = L"";
            GetMenuStringW(Units(), static_cast<UINT>(place), found, 256, MF_BYPOSITION);
            if (std::wstring(found) == text) return static_cast<int>(GetMenuItemID(Units(), place));
        }
        return 0;
    }
    // The texts of the checked items.
    std::wstring Checked() const
    {
        std::wstring text;
        for (int place = 0; place < GetMenuItemCount(Units()); ++place) {
            if (!(GetMenuState(Units(), static_cast<UINT>(place), MF_BYPOSITION) & MF_CHECKED)) continue;
            wchar_t found[256] = L"";
            GetMenuStringW(Units(), static_cast<UINT>(place), found, 256, MF_BYPOSITION);
            text += std::wstring(found) + L'\n';
        }
        return text;
    }
    static CLSID Stored()
    {
        LogOptions options;
        EXPECT_TRUE(static_cast<bool>(options.Load()));
        return options.pravikUnit;
    }

    static inline std::unique_ptr<RegisteredComponents> components;
    static constexpr CLSID kFlash = {0x7E57AAAA, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
    static constexpr CLSID kGone = {0x7E57AAAA, 0, 0, {0, 0, 0, 0, 0, 0, 0, 2}};
};

TEST_F(UnitOperationsHere, TheSubmenuHasWhatIsInstalledBehindASeparator)
{
    EXPECT_EQ(L"907 &Ask user\n-\n", MenuText(Units()));
    const std::wstring text = OpenedUnits();
    const std::wstring begin = L"x 907 &Ask user\n-\n212 ";
    EXPECT_EQ(begin, text.substr(0, begin.size()));
    EXPECT_NE(std::wstring::npos, text.find(L" Flash && mix\n"));
    EXPECT_EQ(std::wstring::npos, text.find(L" Own\n"));
    // The numbers are consecutive, and no item is grey.
    for (int place = 2; place < GetMenuItemCount(Units()); ++place) {
        EXPECT_EQ(static_cast<UINT>(210 + place), GetMenuItemID(Units(), place));
    }
    EXPECT_EQ(std::wstring::npos, text.find(L"(grey)"));
    // A submenu that opens again is filled again and does not get longer.
    EXPECT_EQ(text, OpenedUnits());
}

TEST_F(UnitOperationsHere, TheChosenOneIsChecked)
{
    OpenedUnits();
    EXPECT_EQ(L"&Ask user\n", Checked());
    Choose(kFlash);
    OpenedUnits();
    EXPECT_EQ(L"Flash && mix\n", Checked());
    const int installed = GetMenuItemCount(Units());

    Choose(kGone);
    const std::wstring text = OpenedUnits(), end = L"\nx 812 <Unknown>\n";
    EXPECT_EQ(L"<Unknown>\n", Checked());
    EXPECT_EQ(installed + 1, GetMenuItemCount(Units()));
    EXPECT_EQ(end, text.substr(text.size() - end.size()));

    Choose(CLSID_NULL);
    OpenedUnits();
    EXPECT_EQ(L"&Ask user\n", Checked());
    EXPECT_EQ(installed, GetMenuItemCount(Units()));
}

TEST_F(UnitOperationsHere, AnItemChoosesItsUnitOperation)
{
    OpenedUnits();
    const int flash = CommandOf(L"Flash && mix");
    ASSERT_GE(flash, 212);
    Command(flash);
    EXPECT_EQ(kFlash, Stored());
    OpenedUnits();
    EXPECT_EQ(L"Flash && mix\n", Checked());
    Command(907);
    EXPECT_EQ(CLSID_NULL, Stored());
    OpenedUnits();
    EXPECT_EQ(L"&Ask user\n", Checked());
}

}  // namespace
}  // namespace zelt::test
