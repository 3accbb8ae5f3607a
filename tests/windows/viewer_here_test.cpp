// The log viewer in this process: its message boxes with owner and flags, its limits, its list, and the order of its search.
#include <libxml/xmlmemory.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "log_reader/log_reader.h"
#include "system/owners.h"
#include "shell/log_viewer/log_viewer.h"
#include "shell/log_viewer/view_log_dialog.h"
#include "tests/windows/program.h"
#include "tests/windows/recorded_boxes.h"

namespace zelt::test {
namespace {

constexpr UINT kIcons = 0xF0;
constexpr int kTree = 206, kErrors = 207, kRemoveQueries = 1003, kFind = 1005, kFindNext = 1006, kFindPrevious = 1007;

class ViewerHere : public testing::Test {
protected:
    ViewerHere() { PrepareLogReader(); }
    ~ViewerHere() override
    {
        viewer.reset();
        std::filesystem::remove(path);
    }
    void Show(const std::string& content) { ShowFile("<zeltlogdocument>" + content + "</zeltlogdocument>"); }
    void ShowFile(const std::string& log)
    {
        std::ofstream(path, std::ios::binary) << log;
        Open();
    }
    void Open()
    {
        viewer = std::make_unique<CViewLogDlg>(path.wstring(), Lock());
        ASSERT_TRUE(viewer->Open());
        window = viewer->Window();
        tree = GetDlgItem(window, kTree);
        list = GetDlgItem(window, kErrors);
    }
    void Command(int command) const { SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0); }
    // Enters the text into the search dialog and presses OK; `then` gets the dialog, which an empty text leaves open.
    template <class Then>
    void Search(const std::wstring& text, Then then) const
    {
        std::thread user([&] {
            HWND dialog = nullptr;
            EXPECT_TRUE(
                WaitUntil([&] { return (dialog = FindWindowW(nullptr, L"Search:")) && IsWindowVisible(dialog); }));
            if (!dialog) return;
            SendDlgItemMessageW(dialog, 1101, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
            PostMessageW(dialog, WM_COMMAND, IDOK, 0);
            then(dialog);
        });
        Command(kFind);
        user.join();
    }
    void Search(const std::wstring& text) const
    {
        Search(text, [](HWND) {});
    }
    std::wstring Label(HTREEITEM item) const
    {
        if (!item) return L"(none)";
        wchar_t text[100] = L"";
        TVITEMW record = {};
        record.mask = TVIF_TEXT;
        record.hItem = item;
        record.pszText = text;
        record.cchTextMax = 100;
        TreeView_GetItem(tree, &record);
        return text;
    }
    std::wstring Selected() const { return Label(TreeView_GetSelection(tree)); }
    void SelectNone() const
    {
        TreeView_SelectItem(tree, nullptr);
        EXPECT_EQ(L"(none)", Selected());
    }
    // Expects exactly one box since the previous check: the viewer's, with this text, caption and icon.
    void ExpectBox(const std::wstring& text, const std::wstring& caption, UINT icon)
    {
        const RecordedBoxes::Box box = boxes.TakeOne();
        EXPECT_EQ(text, box.text);
        EXPECT_EQ(caption, box.caption);
        EXPECT_EQ(icon, box.flags & kIcons);
        EXPECT_EQ(window, box.owner);
    }

    RecordedBoxes boxes;
    const std::filesystem::path path = std::filesystem::temp_directory_path() / L"viewer of this process.zlg";
    std::unique_ptr<CViewLogDlg> viewer;
    HWND window = nullptr, tree = nullptr, list = nullptr;
};

TEST_F(ViewerHere, AMissingFileIsReported)
{
    Open();
    wchar_t reason[500] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, ERROR_FILE_NOT_FOUND, 0, reason,
                   500, nullptr);
    reason[std::wcscspn(reason, L"\r\n")] = L'\0';
    ASSERT_STRNE(L"", reason);
    const RecordedBoxes::Box box = boxes.TakeOne();
    const std::wstring expected = L"Failed to open \"" + path.wstring() + L"\" for reading: " + reason;
    EXPECT_EQ(expected, box.text.substr(0, expected.size()));
    EXPECT_EQ(L"File error:", box.caption);
    EXPECT_EQ(window, box.owner);
    EXPECT_EQ(0u, TreeView_GetCount(tree));
    EXPECT_TRUE(IsWindowVisible(window));
}

TEST_F(ViewerHere, ADamagedLogBringsTwoBoxes)
{
    ShowFile("<zeltlogdocument>\n<info value=\"1\"/>\n<func name=\"f\" direc=\"in\" object=\"o\">\n");
    const auto all = boxes.All();
    ASSERT_EQ(2u, all.size());
    EXPECT_EQ(L"Parse error in \"" + path.wstring() + L"\", line 3", all[0].text);
    EXPECT_EQ(L"Parse error:", all[0].caption);
    EXPECT_EQ(L"XML parse error in \"" + path.wstring() + L"\"", all[1].text);
    EXPECT_EQ(L"Parse Error:", all[1].caption);
    for (const auto& box : all) EXPECT_EQ(window, box.owner);
    EXPECT_EQ(2u, TreeView_GetCount(tree));
}

// These replace the parser's memory functions and fail on request.
bool scarce = false;
void* Allocate(std::size_t size) { return scarce ? nullptr : std::malloc(size); }
void* Reallocate(void* memory, std::size_t size) { return scarce ? nullptr : std::realloc(memory, size); }
char* Duplicate(const char* text) { return scarce ? nullptr : strdup(text); }

TEST_F(ViewerHere, AParserThatCannotBeMadeIsSaidAndTheViewerStaysEmpty)
{
    // The viewer's own thread reads the short log, a second thread reads the long one.
    for (const std::size_t length : {100u, 60'000u}) {
        std::ofstream(path, std::ios::binary)
            << "<zeltlogdocument><info value=\"1\"/></zeltlogdocument>" << std::string(length, ' ');
        ASSERT_EQ(0, xmlMemSetup(std::free, Allocate, Reallocate, Duplicate));
        scarce = true;
        Open();
        scarce = false;
        ASSERT_EQ(0, xmlMemSetup(std::free, std::malloc, std::realloc, strdup));
        ExpectBox(L"Failed to open file for reading", L"Error:", MB_ICONERROR);
        EXPECT_EQ(0u, TreeView_GetCount(tree));
        EXPECT_TRUE(IsWindowVisible(window));
        viewer.reset();
    }
}

HANDLE WINAPI NoThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD, DWORD*) { return nullptr; }

TEST_F(ViewerHere, AViewerWithoutAThreadIsReported)
{
    {
        const PatchedImport patch("CreateThread", NoThread);
        OpenLogViewer(path.wstring());
    }
    ExpectBox(L"Parse error in log file \"" + path.wstring() + L"\": its thread cannot be started", L"Error:",
              MB_ICONERROR);
}

constexpr char kSearched[] =
    "<info value=\"alpha 1\"/><info value=\"alpha 2\"/>"
    "<func name=\"f\" direc=\"in\" object=\"o\"><info value=\"inner\"/><info value=\"alpha 3\"/></func>";

TEST_F(ViewerHere, WithoutASelectionASearchBeginsAtTheEndItComesFrom)
{
    Show(kSearched);
    // A tree view selects its first item when it gets the focus, as it may when the dialog closes.
    Search(L"alpha");
    SelectNone();
    Command(kFindNext);
    EXPECT_EQ(L"alpha 1", Selected());
    SelectNone();
    Command(kFindPrevious);
    EXPECT_EQ(L"alpha 3", Selected());
    EXPECT_TRUE(boxes.All().empty());
}

TEST_F(ViewerHere, ASearchGoesAroundBothEnds)
{
    Show(kSearched);
    const HTREEITEM call = TreeView_GetNextSibling(tree, TreeView_GetNextSibling(tree, TreeView_GetRoot(tree)));
    TreeView_SelectItem(tree, TreeView_GetNextSibling(tree, TreeView_GetChild(tree, call)));
    ASSERT_EQ(L"alpha 3", Selected());
    Search(L"alpha");
    EXPECT_EQ(L"alpha 1", Selected());
    for (const wchar_t* label : {L"alpha 2", L"alpha 3", L"alpha 1"}) {
        Command(kFindNext);
        EXPECT_EQ(label, Selected());
    }
    for (const wchar_t* label : {L"alpha 3", L"alpha 2", L"alpha 1"}) {
        Command(kFindPrevious);
        EXPECT_EQ(label, Selected());
    }
    // The dialog searches forward, whatever the previous direction.
    Search(L"alpha");
    EXPECT_EQ(L"alpha 2", Selected());
    EXPECT_TRUE(boxes.All().empty());
}

TEST_F(ViewerHere, WhatASearchHasToSay)
{
    Show(kSearched);
    Command(kFindNext);
    ExpectBox(L"No previous search string.", L"Find next:", MB_ICONERROR);
    Command(kFindPrevious);
    ExpectBox(L"No previous search string.", L"Find previous:", MB_ICONERROR);
    Search(L"beta");
    ExpectBox(L"Search string \"beta\" is not found.", L"Search tree:", MB_ICONINFORMATION);
    Command(kFindPrevious);
    ExpectBox(L"Search string \"beta\" is not found.", L"Search tree:", MB_ICONINFORMATION);
}

TEST_F(ViewerHere, AnEmptyTextLeavesTheSearchOpen)
{
    Show(kSearched);
    Search(L"", [this](HWND dialog) {
        EXPECT_TRUE(WaitUntil([&] { return !boxes.All().empty(); }));
        const RecordedBoxes::Box box = boxes.TakeOne();
        EXPECT_EQ(L"Search string cannot be empty", box.text);
        EXPECT_EQ(L"Search:", box.caption);
        EXPECT_EQ(static_cast<UINT>(MB_ICONERROR), box.flags & kIcons);
        EXPECT_EQ(dialog, box.owner);
        EXPECT_TRUE(IsWindow(dialog));
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    Command(kFindNext);
    ExpectBox(L"No previous search string.", L"Find next:", MB_ICONERROR);
}

TEST_F(ViewerHere, AnEmptyTreeHasNothingToSearch)
{
    Show("");
    Search(L"anything");
    ExpectBox(L"Tree is empty", L"Search tree:", MB_ICONERROR);
    Command(kFindPrevious);
    ExpectBox(L"Tree is empty", L"Search tree:", MB_ICONERROR);
}

TEST_F(ViewerHere, RemovalReads1023CharactersOfALabel)
{
    const std::string query = "QueryInterface";
    const auto info = [](const std::string& label) { return "<info value=\"" + label + "\"/>"; };
    Show(info("inside " + std::string(1002, 'x') + query + std::string(20, 'y')) +
         info("across " + std::string(1003, 'x') + query) + info("behind " + std::string(1100, 'x') + query));
    EXPECT_EQ(3u, TreeView_GetCount(tree));
    Command(kRemoveQueries);
    ASSERT_EQ(2u, TreeView_GetCount(tree));
    const HTREEITEM first = TreeView_GetRoot(tree);
    EXPECT_EQ(L"across ", Label(first).substr(0, 7));
    EXPECT_EQ(L"behind ", Label(TreeView_GetNextSibling(tree, first)).substr(0, 7));
}

TEST_F(ViewerHere, TheErrorsHaveOneColumnThatHoldsThem)
{
    const std::wstring longError(300, L'w');
    Show("<error value=\"short\"/>");
    EXPECT_EQ(1, Header_GetItemCount(ListView_GetHeader(list)));
    const int before = ListView_GetColumnWidth(list, 0);
    EXPECT_GT(before, ListView_GetStringWidth(list, L"short"));
    viewer.reset();
    Show("<warning value=\"" + std::string(longError.begin(), longError.end()) + "\"/><error value=\"short\"/>");
    EXPECT_GT(ListView_GetColumnWidth(list, 0), ListView_GetStringWidth(list, longError.c_str()));
    EXPECT_GT(ListView_GetColumnWidth(list, 0), before);
}

TEST_F(ViewerHere, ASelectedErrorSelectsItsItemAndNothingElseDoes)
{
    Show("<error value=\"one\"/><info value=\"between\"/><warning value=\"two\"/>");
    SelectNone();
    const auto select = [this](int row) {
        ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    };
    select(1);
    EXPECT_EQ(L"two", Selected());
    select(0);
    EXPECT_EQ(L"one", Selected());
    EXPECT_EQ(1u, ListView_GetSelectedCount(list));
    // Deselecting a list item does not change the tree.
    ListView_SetItemState(list, -1, 0, LVIS_SELECTED);
    EXPECT_EQ(L"one", Selected());
    TreeView_SelectItem(tree, TreeView_GetNextSibling(tree, TreeView_GetRoot(tree)));
    EXPECT_EQ(L"between", Selected());
    EXPECT_EQ(0u, ListView_GetSelectedCount(list));
}

// A log with more items than are put into the tree at first. The other outermost items wait for a timer, which has no effect
// here, because nobody takes messages from the queue.
class PartlyFilled : public ViewerHere {
protected:
    static std::string Infos(int count)
    {
        std::string infos;
        for (int i = 0; i < count; ++i) infos += "<info value=\"i\"/>";
        return infos;
    }
    void ShowMany(const std::string& outermost)
    {
        Show("<func name=\"many\" direc=\"in\" object=\"o\">" + Infos(100'000) + "</func>" + outermost);
    }
    int CountOutermost() const
    {
        int count = 0;
        for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextSibling(tree, item)) ++count;
        return count;
    }
};

TEST_F(PartlyFilled, AWalkFindsTheNextOutermostItem)
{
    ShowMany(Infos(5000));
    EXPECT_GT(1000u, TreeView_GetCount(tree));
    EXPECT_EQ(5001, CountOutermost());
}

TEST_F(PartlyFilled, AWalkFindsTheNextVisibleItem)
{
    ShowMany(Infos(5000));
    EXPECT_GT(1000u, TreeView_GetCount(tree));
    int count = 0;
    for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextVisible(tree, item)) ++count;
    EXPECT_EQ(5001, count);
}

TEST_F(PartlyFilled, ASelectedErrorBringsTheItemsBeforeItAlone)
{
    ShowMany(Infos(3000) + "<error value=\"far\"/>" + Infos(3000));
    ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(L"far", Selected());
    EXPECT_EQ(1u + 3000u + 1u, TreeView_GetCount(tree));
}

TEST_F(ViewerHere, TheWindowHasTheProgramsIcon)
{
    Show("");
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

}  // namespace
}  // namespace zelt::test
