// The viewer's window, what it shows of a log, and its messages about damaged or missing logs.
#include "viewer_process.h"

#include <winternl.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "res/resource.h"
#include "system/owners.h"
#include "tests/recordings/recorded_calls.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

using ViewerLoading = ViewerTest;

const char* const kLog =
    "<info value=\"started\"/>\r\n"
    "<func name=\"A::B\" direc=\"in\" object=\"o\">\r\n"
    " <arg name=\"a\" direc=\"in\" type=\"long\">\r\n  <argval value=\"1\"/>\r\n </arg>\r\n"
    " <func name=\"C::D\" direc=\"inwards\" object=\"p\">\r\n </func>\r\n"
    " <arg name=\"r\" direc=\"out\" type=\"long\">\r\n  <argval value=\"2\"/>\r\n </arg>\r\n"
    " <warning value=\"careful\"/>\r\n"
    " <error value=\"parent\"><info/></error>\r\n"
    " <error value=\"E_FAIL (&quot;why&quot;)\"/>\r\n"
    "</func>\r\n"
    "<port kind=\"material\"/>\r\n";

TEST_F(ViewerLoading, ShowsTreeErrorsCaptionAndMenu)
{
    Show(InLog(kLog));
    EXPECT_EQ(
        L"2 started\n"
        L"4 A::B (o)\n"
        L" 6 a (type: long)\n"
        L"  8 1\n"
        L" 5 C::D (p)\n"
        L" 7 r (type: long)\n"
        L"  8 2\n"
        L" 10 careful\n"
        L" 3 parent\n"
        L"  2 <no information>\n"
        L" 3 E_FAIL (\"why\")\n"
        L"8 port material\n",
        tree->Outline());
    // An error with children is only in the tree.
    EXPECT_EQ(L"Errors", list->Column());
    ASSERT_EQ(2, list->Count());
    EXPECT_EQ(L"careful", list->Label(0));
    EXPECT_EQ(10, list->Image(0));
    EXPECT_EQ(L"E_FAIL (\"why\")", list->Label(1));
    EXPECT_EQ(3, list->Image(1));
    EXPECT_EQ(L"careful", tree->Label(reinterpret_cast<HTREEITEM>(list->Data(0))));
    Send(kCommandExpandAll);
    KeepPicture(window, "viewer");
}

TEST_F(ViewerLoading, ShowsARecordingAsItsLog)
{
    RecordedCalls calls;
    calls.Call("ICapeUtilities::Edit", 1, [&] { calls.Real("temperature", false, 353.15); });
    Show(calls.Whole());
    EXPECT_NE(std::wstring::npos, tree->Outline().find(L"4 ICapeUtilities::Edit (Aromatics)\n"
                                                       L" 6 temperature (type: double)\n"
                                                       L"  8 353.15\n"))
        << tree->Outline();
}

// For the pictures of the user guide: the golden log with its failure selected.
class ViewerPictures : public ViewerTest {};

TEST_F(ViewerPictures, ALogWithErrors)
{
    std::ifstream golden(SourceFile("tests/golden/sample_simulator_11.zlg"), std::ios::binary);
    const std::string log(std::istreambuf_iterator<char>(golden), {});
    ASSERT_FALSE(log.empty());
    name = L"Aromatics.zlg";
    path = path.substr(0, path.rfind(L'\\') + 1) + name;
    Show(log);
    EXPECT_GT(list->Count(), 1);
    Send(kCommandNextError);
    EXPECT_EQ(0, list->Selected());
    EXPECT_EQ(list->Label(0), tree->SelectedLabel());
    // The first row of the list is a warning.
    Send(kCommandNextError);
    EXPECT_EQ(L"ECapeInvalidArgumentHR: The single-phase property \"colour\" is not calculated", tree->SelectedLabel());
    KeepPicture(window, "viewer-with-errors");
}

// Not every system can read the menus of another process, so this reads the program's resources.
TEST(ViewerResources, HoldTheMenuAndTheKeys)
{
    const HMODULE module =
        LoadLibraryExW(std::filesystem::path(BuiltServer()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(nullptr, module);
    const HMENU menu = LoadMenuW(module, MAKEINTRESOURCEW(kMenuLogViewer));
    const HACCEL table = LoadAcceleratorsW(module, MAKEINTRESOURCEW(kAccelerators));
    ACCEL keys[20];
    const int count = CopyAcceleratorTableW(table, keys, 20);
    const struct {
        UINT command;
        const wchar_t* text;
        WORD key;
        BYTE modifier;
    } kRows[] = {
        {kCommandExpandAll, L"&Expand all items\tCtrl+A", 'A', FCONTROL},
        {kCommandCollapseAll, L"C&ollapse all items\tCtrl+B", 'B', FCONTROL},
        {kCommandRemoveQueries, L"Remove &QueryInterface notifications\tCtrl+Q", 'Q', FCONTROL},
        {kCommandClose, L"&Close\tESC", VK_ESCAPE, 0},
        {kCommandFind, L"&Find...\tCtrl+F", 'F', FCONTROL},
        {kCommandFindNext, L"Find &next\tF3", VK_F3, 0},
        {kCommandFindPrevious, L"Find &previous\tShift+F3", VK_F3, FSHIFT},
        {kCommandNextError, L"&Next error\tF4", VK_F4, 0},
        {kCommandErrorDetails, L"&Line, call and object\tCtrl+E", 'E', FCONTROL},
        {kCommandFilterErrors, L"&Filter\tCtrl+L", 'L', FCONTROL},
    };
    EXPECT_EQ(static_cast<int>(std::size(kRows)), count);
    for (const auto& row : kRows) {
        wchar_t text[100] = L"";
        GetMenuStringW(menu, row.command, text, 100, MF_BYCOMMAND);
        EXPECT_STREQ(row.text, text);
        EXPECT_EQ(1, std::count_if(keys, keys + count,
                                   [&](const ACCEL& key) {
                                       return key.cmd == row.command && key.key == row.key &&
                                              key.fVirt == (FVIRTKEY | row.modifier);
                                   }))
            << row.command;
    }
    DestroyMenu(menu);
    FreeLibrary(module);
}

// A menu's items, one line each, with those of its submenus indented.
void AppendItems(HMENU menu, int depth, std::wstring& out)
{
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        wchar_t text[100] = L"";
        GetMenuStringW(menu, static_cast<UINT>(position), text, 100, MF_BYPOSITION);
        out += std::wstring(static_cast<std::size_t>(depth), L' ') + (*text ? text : L"-") + L'\n';
        if (const HMENU submenu = GetSubMenu(menu, position)) AppendItems(submenu, depth + 1, out);
    }
}

TEST(MainWindowResources, HoldTheMenu)
{
    const HMODULE module =
        LoadLibraryExW(std::filesystem::path(BuiltServer()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(nullptr, module);
    const HMENU menu = LoadMenuW(module, MAKEINTRESOURCEW(203));
    std::wstring items;
    AppendItems(menu, 0, items);
    EXPECT_EQ(
        L"&File\n"
        L" &Close\n"
        L"&Package\n"
        L" &Add package...\n"
        L" &Remove package...\n"
        L"&Log\n"
        L" &Enable logging\n"
        L" -\n"
        L" &View log...\n"
        L"&Options\n"
        L" &Automatic log location\n"
        L" &Prompt for opening log when object terminates\n"
        L" &PRAVIK logs unit operation:\n"
        L"  &Ask user\n"
        L"  -\n"
        L" &Record calls\n"
        L"&Help\n"
        L" &Help\n"
        L" &About\n"
        L" &Report a problem...\n",
        items);
    DestroyMenu(menu);
    FreeLibrary(module);
}

// The progress dialog stays open while the box about a damaged file is open.
class ViewerProgress : public ViewerTest {
protected:
    bool HasProgress(std::size_t length)
    {
        std::string log = "<?xml version=\"1.0\"?>\n<zeltlogdocument>\n";
        while (log.size() + 200 < length) log += "<func name=\"f\" direc=\"in\" object=\"o\"></func>\n";
        log.resize(length, ' ');
        Start(log);
        const HWND box = FindWindowOf(Id(), L"Parse Error:", 500);
        if (!box) Box(L"Parse error:");
        EXPECT_NE(nullptr, FindWindowOf(Id(), L"Parse Error:"));
        const HWND progress = FindNow(Id(), L"Parsing log file:");
        if (progress) KeepPicture(progress, "progress");
        Box(L"Parse Error:");
        WaitForWindow();
        EXPECT_EQ(nullptr, FindNow(Id(), L"Parsing log file:"));
        return progress != nullptr;
    }
};

TEST_F(ViewerProgress, IsNotShownFor50000Bytes) { EXPECT_FALSE(HasProgress(50000)); }
TEST_F(ViewerProgress, IsShownFor50001Bytes) { EXPECT_TRUE(HasProgress(50001)); }

TEST_F(ViewerLoading, TellsWhereALogIsCutOffAndShowsItsBeginning)
{
    Start(
        "<?xml version=\"1.0\"?>\n<zeltlogdocument>\n<info value=\"1\"/>\n<func name=\"f\" direc=\"in\" "
        "object=\"o\">\n");
    EXPECT_EQ(L"Parse error in \"" + path + L"\", line 4", Box(L"Parse error:"));
    const HWND box = FindWindowOf(Id(), L"Parse Error:");
    if (box) KeepPicture(box, "parse-error");
    EXPECT_EQ(L"XML parse error in \"" + path + L"\"", Box(L"Parse Error:"));
    WaitForWindow();
    EXPECT_EQ(L"2 1\n4 f (o)\n", tree->Outline());
}

// A log that is deeper or has a longer value than the parser accepts is treated like a log that is cut off there.
TEST_F(ViewerLoading, TellsWhereALogGoesBeyondTheParsersLimits)
{
    std::string deep;
    for (int i = 0; i < 300; ++i) deep += "<func name=\"f\" direc=\"in\" object=\"o\">\n";
    const struct {
        const char* what;
        std::string rest;
        const wchar_t* line;
    } rows[] = {{"a long value", "<info value=\"" + std::string(10'100'000, 'x') + "\"/>\n", L"4"},
                {"depth", deep, L"260"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Start("<?xml version=\"1.0\"?>\n<zeltlogdocument>\n<info value=\"before\"/>\n" + row.rest +
              "</zeltlogdocument>\n");
        EXPECT_EQ(L"Parse error in \"" + path + L"\", line " + row.line, Box(L"Parse error:"));
        EXPECT_EQ(L"XML parse error in \"" + path + L"\"", Box(L"Parse Error:"));
        WaitForWindow();
        EXPECT_EQ(L"before", tree->Label(tree->Next(TVGN_ROOT)));
        process->Kill();
    }
}

TEST_F(ViewerLoading, TellsThatAFileCannotBeOpenedAndStaysEmpty)
{
    StartWithoutLog();
    const std::wstring text = Box(L"File error:");
    const std::wstring expected = L"Failed to open \"" + path + L"\" for reading: ";
    EXPECT_EQ(expected, text.substr(0, expected.size()));
    EXPECT_GT(text.size(), expected.size());
    WaitForWindow();
    EXPECT_EQ(0, tree->Count());
    EXPECT_EQ(0, list->Count());
    Find(L"anything");
    EXPECT_EQ(L"Tree is empty", Box(L"Search tree:"));
}

// The current folder of another process of this width.
std::wstring CurrentFolderOf(DWORD id)
{
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id));
    const auto query = reinterpret_cast<decltype(&NtQueryInformationProcess)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
    PROCESS_BASIC_INFORMATION basic = {};
    PEB block = {};
    RTL_USER_PROCESS_PARAMETERS parameters = {};
    const auto read = [&process](const void* from, void* to, SIZE_T size) {
        return ReadProcessMemory(process.get(), from, to, size, nullptr);
    };
    if (!query || query(process.get(), ProcessBasicInformation, &basic, sizeof basic, nullptr) < 0 ||
        !read(basic.PebBaseAddress, &block, sizeof block) ||
        !read(block.ProcessParameters, &parameters, sizeof parameters)) {
        return L"(cannot be read)";
    }
    // The header names only two of the structure's strings; the folder is a string among the unnamed members before them.
    UNICODE_STRING folder = {};
    std::memcpy(&folder, &parameters.Reserved2[5], sizeof folder);
    std::wstring text(folder.Length / sizeof(wchar_t), L'\0');
    return read(folder.Buffer, text.data(), folder.Length) ? text : L"(cannot be read)";
}

TEST_F(ViewerLoading, LeavesTheFolderOfTheLog)
{
    wchar_t before[MAX_PATH], system[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, before);
    GetSystemDirectoryW(system, MAX_PATH);
    // Starts the viewer as a double click does.
    SetCurrentDirectoryW(std::filesystem::path(path).parent_path().c_str());
    Show(InLog(kLog));
    SetCurrentDirectoryW(before);
    EXPECT_EQ(std::filesystem::path(std::wstring(system) + L"\\"), std::filesystem::path(CurrentFolderOf(Id())));
}

TEST_F(ViewerLoading, LeavesTheFileToOthers)
{
    const UniqueHandle writer(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                          CREATE_ALWAYS, 0, nullptr));
    ASSERT_NE(INVALID_HANDLE_VALUE, writer.get());
    const auto write = [&](const std::string& text) {
        DWORD written = 0;
        return WriteFile(writer.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
               written == text.size();
    };
    ASSERT_TRUE(write("<?xml version=\"1.0\"?>\n<zeltlogdocument>\n<info value=\"1\"/>\n"));
    StartWithoutLog();
    Box(L"Parse error:");
    // While the box is shown, the file is still open.
    EXPECT_TRUE(write("<info value=\"2\"/>\n"));
    const std::wstring renamed = path + L".renamed";
    EXPECT_TRUE(MoveFileW(path.c_str(), renamed.c_str())) << GetLastError();
    EXPECT_TRUE(DeleteFileW(renamed.c_str()));
    Box(L"Parse Error:");
    WaitForWindow();
    EXPECT_EQ(L"2 1\n", tree->Outline());
}

TEST_F(ViewerLoading, KeepsItsPartsInPlaceWhenResized)
{
    Show(InLog(kLog));
    for (const SIZE size : {SIZE{900, 700}, SIZE{500, 400}}) {
        SetWindowPos(window, nullptr, 10, 10, size.cx, size.cy, SWP_NOZORDER);
        SendMessageW(window, WM_NULL, 0, 0);
        RECT client, above, below;
        GetClientRect(window, &client);
        GetWindowRect(GetDlgItem(window, kLogTree), &above);
        GetWindowRect(GetDlgItem(window, kErrorList), &below);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&above), 2);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&below), 2);
        EXPECT_EQ(6, above.left);
        EXPECT_EQ(client.right - 6, above.right);
        EXPECT_EQ(6, above.top);
        EXPECT_EQ(6, below.top - above.bottom);
        EXPECT_EQ(client.bottom - 6, below.bottom);
        EXPECT_EQ(above.right, below.right);
    }
    SetWindowPos(window, nullptr, 0, 0, 10, 10, SWP_NOZORDER | SWP_NOMOVE);
    RECT smallest;
    GetWindowRect(window, &smallest);
    EXPECT_GE(smallest.right - smallest.left, 320);

    // The gap can be dragged.
    RECT before, after;
    SetWindowPos(window, nullptr, 10, 10, 700, 600, SWP_NOZORDER);
    GetClientRect(GetDlgItem(window, kLogTree), &before);
    const int gap = before.bottom + 6 + 4;
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(200, gap));
    PostMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(200, gap - 100));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(200, gap - 100));
    EXPECT_TRUE(WaitUntil([&] {
        GetClientRect(GetDlgItem(window, kLogTree), &after);
        return after.bottom < before.bottom - 80;
    }));
}

TEST_F(ViewerLoading, EndsTheProcessWhenClosedWithEsc)
{
    Show(InLog(kLog));
    PressKey(window, VK_ESCAPE);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(window); }));
    EXPECT_EQ(0u, process->Wait(10'000).value_or(1));
}

}  // namespace
}  // namespace zelt::test
