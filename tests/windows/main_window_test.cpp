#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "log/log_options.h"
#include "res/resource.h"
#include "packages/exported_package_list.h"
#include "packages/package_list_hold.h"
#include "tests/windows/controls.h"
#include "tests/windows/program.h"
#include "tests/windows/registered_components.h"
#include "tests/windows/screenshot.h"
#include "tests/system/harness/stored_options.h"
#include "tests/trees.h"

namespace {

using namespace zelt;
using namespace zelt::test;

constexpr wchar_t kMainTitle[] = L"ZELT Packages:";
constexpr wchar_t kAboutTitle[] = L"About ZELT";

class MainWindow : public testing::Test {
protected:
    void SetUp() override
    {
        ExportedPackageList stored;
        Export(stored, PackageKind::PropertyPackage11StandAlone, L"Aromatics", true);
        Export(stored, PackageKind::PropertyPackage10FromThermoSystem, L"Alcohols", false);
        Export(stored, PackageKind::ReactionPackage10StandAlone, L"Esters", false);
        EXPECT_TRUE(stored.Save());
    }
    static void Export(ExportedPackageList& list, PackageKind kind, const wchar_t* name, bool logged)
    {
        auto package = std::make_unique<ExportedPackage>();
        package->kind = kind;
        package->sourceName = package->exportedName = name;
        package->loggingEnabled = logged;
        list.Append(std::move(package));
    }
    void Start(const std::wstring& executable = {})
    {
        program.emplace(std::wstring(), executable);
        window = program->WaitForWindow(kMainTitle);
        ASSERT_NE(nullptr, window);
        list.emplace(program->Process(), GetDlgItem(window, kPackageList));
    }
    void Front()
    {
        SetForegroundWindow(window);
        WaitUntil([&] { return GetForegroundWindow() == window; });
    }
    bool IsInMenu() const
    {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info) && (info.flags & GUI_INMENUMODE);
    }
    void OpenMenu(WORD letter) const
    {
        PressKey(letter, VK_MENU);
        EXPECT_TRUE(WaitUntil([this] { return IsInMenu(); }));
    }
    void LeaveMenu() const
    {
        PostMessageW(window, WM_CANCELMODE, 0, 0);
        EXPECT_TRUE(WaitUntil([this] { return !IsInMenu(); }));
    }
    // The names of the stored packages, each with "(L)" if it is logged.
    static std::wstring Stored()
    {
        ExportedPackageList stored;
        EXPECT_TRUE(stored.Load());
        std::wstring text;
        for (std::size_t index = 0; index < stored.Count(); ++index) {
            text += stored.At(index).exportedName + (stored.At(index).loggingEnabled ? L"(L) " : L" ");
        }
        return text;
    }
    static LogOptions StoredOptions()
    {
        LogOptions options;
        EXPECT_TRUE(options.Load());
        return options;
    }

    CleanSettings settings;
    std::optional<Program> program;
    HWND window = nullptr;
    std::optional<RemoteList> list;
};

// This process plays the other ZELT.
TEST_F(MainWindow, SaysThatAZeltWithOtherRightsIsRunning)
{
    const bool plain = RightsOfThisProcess() == Rights::Plain;
    const PackageListHold others(plain ? Rights::Administrator : Rights::Plain);
    const Program program;
    EXPECT_EQ(
        L"Another ZELT is running, one of the two as administrator. Each keeps its own list of packages, and the one "
        L"that "
        L"stores it last wins. Simulators use the ZELT that has their own rights. Close one of the two.",
        program.AnswerBox(L"ZELT", IDOK));
    EXPECT_NE(nullptr, program.WaitForWindow(kMainTitle));
}

TEST_F(MainWindow, ShowsAPackageARow)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    ASSERT_EQ(3, list->Count());
    const struct {
        const wchar_t *name, *type;
        int image;
        bool checked;
    } rows[] = {
        {L"Aromatics", L"PP 1.1", 1, true}, {L"Alcohols", L"PP 1.0", 1, false}, {L"Esters", L"RP 1.0", 12, false}};
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(rows[row].name, list->Text(row, 0));
        EXPECT_EQ(rows[row].type, list->Text(row, 1));
        EXPECT_EQ(rows[row].image, list->Image(row));
        EXPECT_EQ(rows[row].checked, list->Checked(row));
    }
    EXPECT_EQ(L"Aromatics(L) Alcohols Esters ", Stored());
    list->Select(0);
    EXPECT_TRUE(KeepScreenshot(window, "main-window"));
}

TEST_F(MainWindow, KeepsTheListSixPixelsFromEachEdge)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    for (const SIZE size : {SIZE{700, 500}, SIZE{400, 300}}) {
        SetWindowPos(window, nullptr, 20, 20, size.cx, size.cy, SWP_NOZORDER);
        RECT client, rect;
        GetClientRect(window, &client);
        GetWindowRect(list->Window(), &rect);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
        EXPECT_EQ(6, rect.left);
        EXPECT_EQ(6, rect.top);
        EXPECT_EQ(client.right - 6, rect.right);
        EXPECT_EQ(client.bottom - 6, rect.bottom);
    }
}

TEST_F(MainWindow, ACheckBoxIsSavedAtOnce)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    list->ClickCheckBox(1);
    EXPECT_TRUE(WaitUntil([] { return Stored() == L"Aromatics(L) Alcohols(L) Esters "; }));
    list->ClickCheckBox(0);
    EXPECT_TRUE(WaitUntil([] { return Stored() == L"Aromatics Alcohols(L) Esters "; }));
}

TEST_F(MainWindow, FillingTheListDoesNotSave)
{
    // The number is higher than that of the packages; a save would correct it.
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Open({}, L"Software\\ZELT", KEY_ALL_ACCESS));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteDword(L"NumPackages", 5));
    ASSERT_NO_FATAL_FAILURE(Start());
    list->Select(1);
    EXPECT_EQ(5u, key.ReadDword(L"NumPackages"));
    EXPECT_TRUE(list->Checked(0));
    list->ClickCheckBox(1);
    EXPECT_TRUE(WaitUntil([&] { return key.ReadDword(L"NumPackages") == 3u; }));
}

TEST_F(MainWindow, RemovesTheSelectedPackageOnly)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    Command(window, kCommandRemovePackage);
    EXPECT_EQ(3, list->Count());
    list->Select(1);
    Command(window, kCommandRemovePackage);
    EXPECT_EQ(2, list->Count());
    EXPECT_EQ(L"Aromatics(L) Esters ", Stored());
    EXPECT_EQ(-1, list->Selected());
}

TEST_F(MainWindow, EnableLoggingTogglesAndKeepsTheSelection)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    Command(window, kCommandEnableLogging);
    EXPECT_EQ(L"Aromatics(L) Alcohols Esters ", Stored());
    list->Select(2);
    Command(window, kCommandEnableLogging);
    EXPECT_EQ(L"Aromatics(L) Alcohols Esters(L) ", Stored());
    EXPECT_TRUE(list->Checked(2));
    EXPECT_EQ(2, list->Selected());
    Command(window, kCommandEnableLogging);
    EXPECT_EQ(L"Aromatics(L) Alcohols Esters ", Stored());
}

TEST_F(MainWindow, OptionsKeepWhatAnotherProcessChanged)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    EXPECT_FALSE(StoredOptions().autoLogLocation);
    LogOptions changed;
    changed.promptOpenLog = false;
    Store(changed);
    Command(window, kCommandAutoLogLocation);
    EXPECT_TRUE(StoredOptions().autoLogLocation);
    EXPECT_FALSE(StoredOptions().promptOpenLog);
    Command(window, kCommandPromptOpenLog);
    EXPECT_TRUE(StoredOptions().promptOpenLog);
    Command(window, kCommandAutoLogLocation);
    EXPECT_FALSE(StoredOptions().autoLogLocation);
    EXPECT_FALSE(StoredOptions().recordCalls);
    Command(window, kCommandRecordCalls);
    EXPECT_TRUE(StoredOptions().recordCalls);
}

TEST_F(MainWindow, ChoosesTheUnitOperationOfItsMenu)
{
    RegisteredComponents components;
    components.Add(L"{7E57AAAA-0000-0000-0000-000000000001}", L"{678C09A5-7D66-11D2-A67D-00105A42887F}",
                   L"Flash & mix");
    components.Add(L"{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}", L"{678C09A5-7D66-11D2-A67D-00105A42887F}", L"Own");
    const CLSID expected = {0x7E57AAAA, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
    ASSERT_NO_FATAL_FAILURE(Start());
    // The program's own class is left out: there is one item, and none after it.
    Command(window, kCommandFirstUnitOperation + 1);
    EXPECT_EQ(CLSID{}, StoredOptions().pravikUnit);
    Command(window, kCommandFirstUnitOperation);
    EXPECT_EQ(expected, StoredOptions().pravikUnit);
    Command(window, kCommandUnknownUnitOperation);
    EXPECT_EQ(expected, StoredOptions().pravikUnit);
    Command(window, kCommandAskUser);
    EXPECT_EQ(CLSID{}, StoredOptions().pravikUnit);
}

TEST_F(MainWindow, MenusWorkFromTheKeyboard)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    Front();
    // Without a selection, the item is grey.
    OpenMenu('P');
    PressKey('R');
    LeaveMenu();
    EXPECT_EQ(3, list->Count());
    list->Select(0);
    OpenMenu('L');
    EXPECT_TRUE(KeepScreenshot(window, "main-window-log-menu"));
    PressKey('E');
    EXPECT_TRUE(WaitUntil([] { return Stored() == L"Aromatics Alcohols Esters "; }));
    OpenMenu('P');
    PressKey('R');
    EXPECT_TRUE(WaitUntil([] { return Stored() == L"Alcohols Esters "; }));
    OpenMenu('O');
    PressKey('A');
    EXPECT_TRUE(WaitUntil([] { return StoredOptions().autoLogLocation; }));
    OpenMenu('O');
    PressKey(VK_UP);
    PressKey(VK_RIGHT);
    EXPECT_TRUE(KeepScreenshot(window, "main-window-options-menu"));
    LeaveMenu();
    EXPECT_TRUE(IsWindow(window));
    // Toggles the check box of the focused row.
    PressKey(VK_DOWN);
    PressKey(VK_HOME);
    PressKey(VK_SPACE);
    EXPECT_TRUE(WaitUntil([] { return Stored() == L"Alcohols(L) Esters "; }));
}

TEST_F(MainWindow, ReturnDoesNothingAndEscEndsTheProgram)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    Front();
    PressKey(VK_RETURN);
    EXPECT_TRUE(IsWindow(window));
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(program->EndsBy(10'000));
    EXPECT_EQ(0u, program->ExitCode());
}

TEST_F(MainWindow, CloseAndTheCloseBoxEndTheProgram)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    Command(window, kCommandClose);
    EXPECT_TRUE(program->EndsBy(10'000));
    ASSERT_NO_FATAL_FAILURE(Start());
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(program->EndsBy(10'000));
    EXPECT_EQ(0u, program->ExitCode());
}

TEST_F(MainWindow, AboutNamesProductAndVersion)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    for (const bool fromSystemMenu : {false, true}) {
        PostMessageW(window, fromSystemMenu ? WM_SYSCOMMAND : WM_COMMAND,
                     fromSystemMenu ? kCommandSystemAbout : kCommandAbout, 0);
        const HWND about = program->WaitForWindow(kAboutTitle);
        ASSERT_NE(nullptr, about);
        EXPECT_EQ(L"ZELT (Zeltora)", TextOfWindow(GetDlgItem(about, kProductText)));
        EXPECT_EQ(L"Version 1.0.0.0", TextOfWindow(GetDlgItem(about, kVersionText)));
        EXPECT_FALSE(IsWindowEnabled(window));
        EXPECT_TRUE(KeepScreenshot(about, "about"));
        PostCommand(about, IDOK);
        EXPECT_TRUE(program->WaitUntilGone(about));
    }
}

TEST_F(MainWindow, HelpOpensTheHelpFile)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    PostCommand(window, kCommandHelp);
    const HWND help = program->WaitForWindow(L"ZELT Help");
    ASSERT_NE(nullptr, help);
    EXPECT_EQ(nullptr, program->FindVisible(L"Error starting Help:"));
    EXPECT_TRUE(KeepScreenshot(help, "help"));
    // The help belongs to the program: it neither outlives the program nor keeps it running.
    Command(window, kCommandClose);
    EXPECT_TRUE(program->EndsBy(10'000));
}

TEST_F(MainWindow, SaysThatTheHelpFileCannotBeLoaded)
{
    // A copy of the program has no help file beside it.
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() / L"ZELT without help";
    fs::create_directories(folder);
    const fs::path copy = folder / L"ZELT.EXE";
    fs::copy_file(BuiltServer(), copy, fs::copy_options::overwrite_existing);
    ASSERT_NO_FATAL_FAILURE(Start(copy.wstring()));
    PostCommand(window, kCommandHelp);
    const HWND box = program->WaitForWindow(L"Error starting Help:");
    ASSERT_NE(nullptr, box);
    EXPECT_EQ(window, GetWindow(box, GW_OWNER));
    EXPECT_TRUE(KeepScreenshot(box, "help-failure"));
    EXPECT_EQ(L"Failed to load HTML Help file " + (folder / L"BRIX.chm").wstring(),
              program->AnswerBox(L"Error starting Help:", IDOK));
    program.reset();
    fs::remove_all(folder);
}

TEST_F(MainWindow, ViewLogAsksForAFile)
{
    ASSERT_NO_FATAL_FAILURE(Start());
    PostCommand(window, kCommandViewLog);
    const HWND dialog = program->WaitForWindow(L"View log file:");
    ASSERT_NE(nullptr, dialog);
    EXPECT_EQ(window, GetWindow(dialog, GW_OWNER));
    PostCommand(dialog, IDCANCEL);
    EXPECT_TRUE(program->WaitUntilGone(dialog));
    EXPECT_TRUE(IsWindow(window));
}

TEST_F(MainWindow, ViewLogShowsTheFileThatIsChosen)
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    const std::wstring path = std::wstring(folder) + L"chosen.zlg";
    std::ofstream(std::filesystem::path(path)) << "<zeltlogdocument><info value=\"chosen\"/></zeltlogdocument>";
    ASSERT_NO_FATAL_FAILURE(Start());
    PostCommand(window, kCommandViewLog);
    const HWND dialog = program->WaitForWindow(L"View log file:");
    ASSERT_NE(nullptr, dialog);
    constexpr int kFileName = 0x47C;
    ASSERT_NE(nullptr, GetDlgItem(dialog, kFileName));
    SendDlgItemMessageW(dialog, kFileName, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostCommand(dialog, IDOK);
    EXPECT_TRUE(program->WaitUntilGone(dialog));
    const HWND viewer = program->WaitForWindow(L"Log file chosen.zlg:");
    ASSERT_NE(nullptr, viewer);
    // The viewer keeps the program running when the main window closes.
    PostCommand(window, kCommandClose);
    EXPECT_TRUE(program->WaitUntilGone(window));
    const RemoteTree tree(program->Process(), GetDlgItem(viewer, kLogTree));
    EXPECT_EQ(L"chosen", tree.Text(tree.Next(TVGN_ROOT)));
    PostMessageW(viewer, WM_CLOSE, 0, 0);
    EXPECT_TRUE(program->EndsBy(10'000));
    DeleteFileW(path.c_str());
}

}  // namespace
