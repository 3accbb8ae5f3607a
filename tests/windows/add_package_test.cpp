#include <gtest/gtest.h>

#include <filesystem>

#include "res/resource.h"
#include "system/edition.h"
#include "system/registry_view.h"
#include "packages/exported_package_list.h"
#include "tests/windows/controls.h"
#include "tests/windows/program.h"
#include "tests/windows/registered_components.h"
#include "tests/windows/screenshot.h"
#include "tests/trees.h"

namespace {

using namespace zelt;
using namespace zelt::test;

constexpr wchar_t kExportTitle[] = L"Export package:";
constexpr wchar_t kManager[] = L"Sample property package manager (Ideal solutions of a few common compounds)";
constexpr wchar_t kStandAlone[] = L"Sample property package (Benzene, toluene and o-xylene as an ideal solution)";
constexpr wchar_t kManagers11[] = L"Property package managers (CAPE-OPEN 1.1)";

class AddPackage : public testing::Test {
protected:
    void SetUp() override
    {
        components.Add(L"{7E57BBBB-0000-0000-0000-000000000001}", L"{678C09AA-0100-11D2-A67D-00105A42887F}",
                       L"Missing reaction manager");
        components.Add(L"{7E57BBBB-0000-0000-0000-000000000002}", L"{678C09A3-7D66-11D2-A67D-00105A42887F}",
                       L"Missing thermo system", L"has no server");
        // The program's own manager, registered like any other, does not belong in the list.
        components.Add(L"{6377AC63-7A36-46DC-8897-F277012CDA9D}", L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}",
                       L"Own manager");
        program.emplace();
        window = program->WaitForWindow(L"ZELT Packages:");
        ASSERT_NE(nullptr, window);
        list.emplace(program->Process(), GetDlgItem(window, kPackageList));
        ASSERT_NO_FATAL_FAILURE(Open());
    }
    void Open()
    {
        PostCommand(window, kCommandAddPackage);
        dialog = program->WaitForWindow(kExportTitle);
        ASSERT_NE(nullptr, dialog);
        tree.emplace(program->Process(), GetDlgItem(dialog, kComponentTree));
    }
    HTREEITEM Item(const std::wstring& label)
    {
        const HTREEITEM item = tree->Find(label);
        EXPECT_NE(nullptr, item) << label.c_str();
        return item;
    }
    void ExpandManager()
    {
        const HTREEITEM manager = Item(kManager);
        tree->PostExpand(manager);
        EXPECT_TRUE(WaitUntil([&] { return tree->Children(manager).size() == 2; }));
    }
    std::wstring ExportName() { return TextOfWindow(GetDlgItem(dialog, kExportName)); }
    bool OkEnabled() { return IsWindowEnabled(GetDlgItem(dialog, IDOK)); }
    // Waits until the dialog has handled the messages posted to it before, because sent messages overtake posted ones.
    void WaitForPosted()
    {
        const HWND box = GetDlgItem(dialog, kLoggingEnabled);
        for (int click = 0; click < 2; ++click) {
            const LRESULT before = SendMessageW(box, BM_GETCHECK, 0, 0);
            PostMessageW(box, BM_CLICK, 0, 0);
            EXPECT_TRUE(WaitUntil([&] { return SendMessageW(box, BM_GETCHECK, 0, 0) != before; }));
        }
    }
    void Press(int button)
    {
        PostCommand(dialog, button);
        EXPECT_TRUE(program->WaitUntilGone(dialog));
    }
    static ExportedPackage Stored(std::size_t index, std::size_t count)
    {
        ExportedPackageList stored;
        WaitUntil([&] {
            EXPECT_TRUE(stored.Load());
            return stored.Count() == count;
        });
        EXPECT_EQ(count, stored.Count());
        return index < stored.Count() ? stored.At(index) : ExportedPackage();
    }

    CleanSettings settings;
    RegisteredComponents components;
    std::optional<Program> program;
    HWND window = nullptr, dialog = nullptr;
    std::optional<RemoteList> list;
    std::optional<RemoteTree> tree;
};

TEST_F(AddPackage, GroupsTheComponentsByKind)
{
    std::vector<std::wstring> headings;
    for (const HTREEITEM item : tree->Children(nullptr)) headings.push_back(tree->Text(item));
    const std::vector<std::wstring> expected = {
        kManagers11, L"Stand-alone property packages (CAPE-OPEN 1.1)", L"Thermo systems (CAPE-OPEN 1.0)",
        L"Stand-alone property packages (CAPE-OPEN 1.0)", L"Reaction package managers (CAPE-OPEN 1.0)"};
    EXPECT_EQ(expected, headings);
    EXPECT_EQ(Item(kManagers11), tree->Next(TVGN_PARENT, Item(kManager)));
    EXPECT_EQ(nullptr, tree->Find(L"Own manager"));
    EXPECT_NE(nullptr, tree->Find(L"Missing thermo system (has no server)"));
    EXPECT_NE(nullptr, tree->Find(L"Missing reaction manager"));
    ExpandManager();
    tree->Select(tree->Children(Item(kManager)).front());
    EXPECT_TRUE(KeepScreenshot(dialog, "add-package"));
}

TEST_F(AddPackage, OkWantsAPackageAndAName)
{
    tree->Select(Item(kManagers11));
    EXPECT_FALSE(OkEnabled());
    tree->Select(Item(kManager));
    EXPECT_FALSE(OkEnabled());
    EXPECT_EQ(L"", ExportName());
    // Return has no effect while the button is disabled.
    PostCommand(dialog, IDOK);
    WaitForPosted();
    tree->Select(Item(kStandAlone));
    EXPECT_TRUE(OkEnabled());
    EXPECT_EQ(L"Sample property package", ExportName());
    SendDlgItemMessageW(dialog, kExportName, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"  "));
    EXPECT_TRUE(WaitUntil([&] { return !OkEnabled(); }));
    Press(IDCANCEL);
    EXPECT_EQ(0, list->Count());
}

TEST_F(AddPackage, GreysWhatTheOtherWidthAloneCanUseWithTheReason)
{
    if (RegistryViews().size() < 2) GTEST_SKIP() << "this system has one width";
    Press(IDCANCEL);
    components.AddForOtherWidth(L"{7E57BBBB-0000-0000-0000-000000000003}", L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}",
                                L"Wide package");
    components.AddForOtherWidth(L"{7E57BBBB-0000-0000-0000-000000000004}", L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}",
                                L"Wide manager");
    ASSERT_NO_FATAL_FAILURE(Open());
    const std::wstring reason =
        std::wstring(L" - registered for ") + (sizeof(void*) == 4 ? L"64" : L"32") + L"-bit programs only";
    const HTREEITEM package = Item(L"Wide package" + reason), manager = Item(L"Wide manager" + reason);
    EXPECT_EQ(Item(kManagers11), tree->Next(TVGN_PARENT, manager));
    EXPECT_EQ(manager, tree->Children(Item(kManagers11)).back()) << "behind those that can be used";
    EXPECT_TRUE(KeepScreenshot(dialog, "add-package-other-width"));
    for (const HTREEITEM item : {package, manager}) {
        tree->Select(item);
        EXPECT_FALSE(OkEnabled());
        EXPECT_EQ(L"", ExportName());
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, kExportName)));
        PostCommand(dialog, IDOK);
        tree->PostExpand(item);
        WaitForPosted();
    }
    tree->Select(Item(kStandAlone));
    EXPECT_TRUE(OkEnabled());
    EXPECT_TRUE(tree->Children(manager).empty());
    Press(IDCANCEL);
    EXPECT_EQ(0, list->Count());
}

// The dialog offers to open the other edition if that is installed and a package needs it.
TEST_F(AddPackage, OpensTheOtherEdition)
{
    if (RegistryViews().size() < 2) GTEST_SKIP() << "this system has one width";
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, kOpenOtherEdition))) << "nothing needs it";
    Press(IDCANCEL);
    components.AddForOtherWidth(L"{7E57BBBB-0000-0000-0000-000000000003}", L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}",
                                L"Wide package");
    ASSERT_NO_FATAL_FAILURE(Open());
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, kOpenOtherEdition))) << "it is not installed";
    Press(IDCANCEL);
    if (!std::filesystem::exists(OtherBuiltServer())) GTEST_SKIP() << "ZELT64.EXE is not built";
    const std::wstring path = std::filesystem::absolute(OtherBuiltServer()).make_preferred().wstring();
    components.AddServer(kOtherEdition.classes[0].classId, L"\"" + path + L"\"");
    ASSERT_NO_FATAL_FAILURE(Open());
    const HWND button = GetDlgItem(dialog, kOpenOtherEdition);
    EXPECT_TRUE(IsWindowVisible(button));
    EXPECT_EQ(L"Open &ZELT64", TextOfWindow(button));
    EXPECT_TRUE(KeepScreenshot(dialog, "add-package-open-other"));
    PostCommand(dialog, kOpenOtherEdition);
    HWND other = nullptr;
    EXPECT_TRUE(WaitUntil([&] {
        other = FindWindowW(nullptr, L"ZELT64 Packages (64-bit):");
        return other && IsWindowVisible(other);
    }));
    EXPECT_TRUE(KeepScreenshot(other, "main-window-64"));
    PostMessageW(other, WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(other); }));
    Press(IDCANCEL);
}

TEST_F(AddPackage, ExportsAManagersPackage)
{
    ExpandManager();
    const HTREEITEM package = tree->Children(Item(kManager))[1];
    EXPECT_EQ(L"Alcohols", tree->Text(package));
    EXPECT_EQ(1, tree->Image(package));
    tree->Select(package);
    EXPECT_EQ(L"Alcohols", ExportName());
    SendDlgItemMessageW(dialog, kLoggingEnabled, BM_CLICK, 0, 0);
    Press(IDOK);
    const ExportedPackage stored = Stored(0, 1);
    EXPECT_EQ(PackageKind::PropertyPackage11FromManager, stored.kind);
    EXPECT_EQ(L"Alcohols", stored.sourceName);
    EXPECT_EQ(L"Alcohols", stored.exportedName);
    EXPECT_TRUE(stored.loggingEnabled);
    const CLSID manager = {0xB55C9180, 0x454E, 0x4B78, {0xA1, 0x09, 0xB9, 0x53, 0x6A, 0x90, 0x3B, 0xF9}};
    EXPECT_EQ(manager, stored.classId);
    EXPECT_EQ(L"Alcohols", list->Text(0, 0));
    EXPECT_TRUE(list->Checked(0));
}

TEST_F(AddPackage, ProposesANameThatIsFree)
{
    for (const wchar_t* name :
         {L"Sample property package", L"Sample property package (2)", L"Sample property package (3)"}) {
        tree->Select(Item(kStandAlone));
        EXPECT_EQ(name, ExportName());
        Press(IDOK);
        ASSERT_NO_FATAL_FAILURE(Open());
    }
    Press(IDCANCEL);
    EXPECT_EQ(L"Sample property package (3)", Stored(2, 3).exportedName);
    EXPECT_EQ(PackageKind::PropertyPackage11StandAlone, Stored(2, 3).kind);
    EXPECT_FALSE(Stored(2, 3).loggingEnabled);
}

TEST_F(AddPackage, RefusesANameThatDiffersInCaseOnly)
{
    tree->Select(Item(kStandAlone));
    Press(IDOK);
    ASSERT_NO_FATAL_FAILURE(Open());
    tree->Select(Item(kStandAlone));
    SendDlgItemMessageW(dialog, kExportName, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"SAMPLE property PACKAGE"));
    PostCommand(dialog, IDOK);
    const HWND box = program->WaitForWindow(L"Add package:");
    ASSERT_NE(nullptr, box);
    EXPECT_EQ(window, GetWindow(box, GW_OWNER));
    EXPECT_TRUE(KeepScreenshot(box, "already-exported"));
    EXPECT_EQ(L"The selected property package is already exported", program->AnswerBox(L"Add package:", IDOK));
    EXPECT_EQ(1, list->Count());
    EXPECT_EQ(L"Sample property package", Stored(0, 1).exportedName);
}

TEST_F(AddPackage, AManagerThatFailsToInitialiseIsStillListed)
{
    const HTREEITEM manager = Item(L"Faulty manager: Initialize (Never initialises)");
    tree->PostExpand(manager);
    const std::wstring text = program->AnswerBox(L"Error:", IDOK);
    EXPECT_EQ(0u, text.find(L"Failed to initialize property package manager: "))
        << std::string(text.begin(), text.end());
    EXPECT_TRUE(WaitUntil([&] { return !tree->Children(manager).empty(); }));
}

TEST_F(AddPackage, SaysWhyThereIsNoListAndAsksAgainNextTime)
{
    const struct {
        const wchar_t *item, *text;
    } rows[] = {{L"Faulty manager: list (Gives a list of numbers)",
                 L"Invalid list of property packages from property package manager: "},
                {L"Missing thermo system (has no server)", L"Failed to create thermo system: "},
                {L"Missing reaction manager", L"Failed to create reaction package mananger: "},
                {L"Missing reaction manager", L"Failed to create reaction package mananger: "}};
    for (const auto& row : rows) {
        const HTREEITEM manager = Item(row.item);
        tree->PostExpand(manager);
        const std::wstring text = program->AnswerBox(L"Error:", IDOK);
        EXPECT_EQ(0u, text.find(row.text)) << std::string(text.begin(), text.end());
        EXPECT_GT(text.size(), wcslen(row.text));
        EXPECT_TRUE(tree->Children(manager).empty());
    }
}

TEST_F(AddPackage, GrowsWithItsWindow)
{
    RECT before, after;
    GetWindowRect(tree->Window(), &before);
    RECT whole;
    GetWindowRect(dialog, &whole);
    SetWindowPos(dialog, nullptr, 50, 50, whole.right - whole.left + 100, whole.bottom - whole.top + 60, SWP_NOZORDER);
    GetWindowRect(tree->Window(), &after);
    EXPECT_EQ(before.right - before.left + 100, after.right - after.left);
    EXPECT_EQ(before.bottom - before.top + 60, after.bottom - after.top);
    EXPECT_TRUE(KeepScreenshot(dialog, "add-package-larger"));
    // The dialog cannot get smaller than its original size.
    SetWindowPos(dialog, nullptr, 50, 50, 100, 100, SWP_NOZORDER);
    GetWindowRect(dialog, &after);
    EXPECT_EQ(whole.right - whole.left, after.right - after.left);
    EXPECT_EQ(whole.bottom - whole.top, after.bottom - after.top);
}

TEST_F(AddPackage, IsCompleteFromTheKeyboard)
{
    SetForegroundWindow(dialog);
    EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog; }));
    tree->Select(Item(kManager));
    PressKey(VK_RIGHT);
    EXPECT_TRUE(WaitUntil([&] { return tree->Children(Item(kManager)).size() == 2; }));
    PressKey(VK_RIGHT);
    EXPECT_TRUE(WaitUntil([&] { return ExportName() == L"Aromatics"; }));
    PressKey('L', VK_MENU);
    PressKey('N', VK_MENU);
    PressKey(VK_END);
    PressKey('2');
    EXPECT_TRUE(WaitUntil([&] { return ExportName() == L"Aromatics2"; }));
    PressKey(VK_RETURN);
    EXPECT_TRUE(program->WaitUntilGone(dialog));
    EXPECT_EQ(L"Aromatics2", Stored(0, 1).exportedName);
    EXPECT_EQ(L"Aromatics", Stored(0, 1).sourceName);
    EXPECT_TRUE(Stored(0, 1).loggingEnabled);
}

// Takes a picture for the user guide, without the faulty packages.
TEST(AddPackagePictures, APackageChosenForExport)
{
    const CleanSettings settings;
    RegisteredComponents components;
    components.RemoveFaulty();
    const Program program;
    const HWND window = program.WaitForWindow(L"ZELT Packages:");
    ASSERT_NE(nullptr, window);
    PostCommand(window, kCommandAddPackage);
    const HWND dialog = program.WaitForWindow(kExportTitle);
    ASSERT_NE(nullptr, dialog);
    const RemoteTree tree(program.Process(), GetDlgItem(dialog, kComponentTree));
    const HTREEITEM manager = tree.Find(kManager);
    ASSERT_NE(nullptr, manager);
    tree.PostExpand(manager);
    ASSERT_TRUE(WaitUntil([&] { return tree.Children(manager).size() == 2; }));
    EXPECT_EQ(nullptr, tree.Find(L"Faulty property package (Fails on request)"));
    tree.Select(tree.Children(manager).front());
    EXPECT_TRUE(KeepScreenshot(dialog, "export-package"));
}

}  // namespace
