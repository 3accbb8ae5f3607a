// The viewer's commands: removing queries, search, next error, expanding, copying.
#include "res/resource.h"
#include "viewer_process.h"

namespace zelt::test {
namespace {

const char* const kShortLog =
    "<info value=\"first\"/>\n"
    "<info value=\"o: QueryInterface for ICapeUtilities\"/>\n"
    "<func name=\"QueryInterface\" direc=\"in\" object=\"one\">\n"
    " <arg name=\"QueryInterface\" direc=\"in\" type=\"long\"><argval value=\"Alpha\"/></arg>\n"
    " <info value=\"QueryInterface for X\"/>\n"
    " <warning value=\"QueryInterface for unsupported interface\"/>\n"
    "</func>\n"
    "<func name=\"only a query\" direc=\"in\" object=\"two\">\n"
    " <info value=\"QueryInterface for Y\"/>\n"
    "</func>\n"
    "<info value=\"queryinterface in lower case\"/>\n"
    "<func name=\"last\" direc=\"out\" object=\"three\">\n"
    " <error value=\"an error\"/>\n"
    " <arg name=\"z\" direc=\"out\" type=\"long\"><argval value=\"Omega\"/></arg>\n"
    "</func>\n";

class ViewerCommands : public ViewerTest {
protected:
    // A tree view selects its first item when it gets the focus. Waits for that, and removes the selection.
    void SetUp() override
    {
        Show(InLog(kShortLog));
        WaitUntil([&] { return tree->Selected() != nullptr; }, 15'000);
        tree->Select(nullptr);
    }

    void ExpectSelected(const wchar_t* label)
    {
        EXPECT_EQ(label, tree->SelectedLabel());
        EXPECT_TRUE(!tree->Selected() || tree->IsInView(tree->Selected()));
    }
};

TEST_F(ViewerCommands, RemovalTakesInfosAloneAndWorksOnce)
{
    Send(kCommandRemoveQueries);
    EXPECT_EQ(
        L"2 first\n"
        L"4 QueryInterface (one)\n"
        L" 6 QueryInterface (type: long)\n"
        L"  8 Alpha\n"
        L" 10 QueryInterface for unsupported interface\n"
        L"4 only a query (two)\n"
        L"2 queryinterface in lower case\n"
        L"5 last (three)\n"
        L" 3 an error\n"
        L" 7 z (type: long)\n"
        L"  8 Omega\n",
        tree->Outline());
    EXPECT_EQ(2, list->Count());
    // Nothing is left below the call that contained only a query.
    HTREEITEM item = tree->Next(TVGN_ROOT);
    for (int i = 0; i < 2; ++i) item = tree->Next(TVGN_NEXT, item);
    EXPECT_EQ(L"only a query (two)", tree->Label(item));
    EXPECT_FALSE(tree->IsParent(item));
    KeepPicture(window, "viewer-without-queries");
    // Removed items are not found either.
    Find(L"for Y");
    EXPECT_EQ(L"Search string \"for Y\" is not found.", Box(L"Search tree:"));
}

TEST_F(ViewerCommands, FindNextWithoutATextSaysSo)
{
    const HTREEITEM second = tree->Next(TVGN_NEXT, tree->Next(TVGN_ROOT));
    tree->Select(second);
    Send(kCommandFindNext);
    EXPECT_EQ(L"No previous search string.", Box(L"Find next:"));
    Send(kCommandFindPrevious);
    EXPECT_EQ(L"No previous search string.", Box(L"Find previous:"));
    EXPECT_EQ(second, tree->Selected());
}

TEST_F(ViewerCommands, SearchRefusesAnEmptyText)
{
    PostMessageW(window, WM_COMMAND, kCommandFind, 0);
    const HWND dialog = FindWindowOf(Id(), L"Search:");
    ASSERT_NE(nullptr, dialog);
    EXPECT_EQ(L"&Ignore case", TextOf(GetDlgItem(dialog, kSearchIgnoreCase)));
    EXPECT_EQ(L"&Only match entire item", TextOf(GetDlgItem(dialog, kSearchWholeItem)));
    KeepPicture(dialog, "search");
    PressButton(dialog, IDOK);
    // The box has the dialog's caption.
    HWND box = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (box = GetLastActivePopup(dialog)) != dialog && IsWindowVisible(box); }));
    EXPECT_EQ(L"Search string cannot be empty", TextOf(GetDlgItem(box, 0xFFFF)));
    EXPECT_EQ(L"Search:", TextOf(box));
    PressButton(box, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(box); }));
    EXPECT_TRUE(IsWindow(dialog));
    PressButton(dialog, IDCANCEL);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    Send(kCommandFindNext);
    EXPECT_EQ(L"No previous search string.", Box(L"Find next:"));
}

TEST_F(ViewerCommands, SearchWalksTheWholeTreeAndAroundItsEnds)
{
    // Nothing is selected, so the search begins with the first item.
    Find(L"first");
    ExpectSelected(L"first");
    // The only match is already selected.
    Send(kCommandFindNext);
    ExpectSelected(L"first");
    EXPECT_EQ(nullptr, FindNow(Id(), L"Search tree:"));

    // The last item and one near the beginning contain the text.
    Find(L"Omega");
    ExpectSelected(L"Omega");
    Find(L"a");
    ExpectSelected(L"o: QueryInterface for ICapeUtilities");
    tree->Select(tree->Next(TVGN_ROOT));
    Send(kCommandFindPrevious);
    ExpectSelected(L"Omega");
    Send(kCommandFindNext);
    ExpectSelected(L"o: QueryInterface for ICapeUtilities");
}

TEST_F(ViewerCommands, SearchThatFindsNothingQuotesTheTextAsEntered)
{
    const HTREEITEM second = tree->Next(TVGN_NEXT, tree->Next(TVGN_ROOT));
    tree->Select(second);
    Find(L"no such text");
    EXPECT_EQ(L"Search string \"no such text\" is not found.", Box(L"Search tree:"));
    EXPECT_EQ(second, tree->Selected());
    Find(L"No Such Text", true);
    EXPECT_EQ(L"Search string \"No Such Text\" is not found.", Box(L"Search tree:"));
}

TEST_F(ViewerCommands, SearchMindsCaseAndWholeItems)
{
    Find(L"queryinterface", true);
    ExpectSelected(L"o: QueryInterface for ICapeUtilities");
    Find(L"queryinterface", false);
    ExpectSelected(L"queryinterface in lower case");
    Find(L"Query", false, true);
    EXPECT_EQ(L"Search string \"Query\" is not found.", Box(L"Search tree:"));
    Find(L"aLPHA", true, true);
    ExpectSelected(L"Alpha");
    // The dialog remembers the last search.
    PostMessageW(window, WM_COMMAND, kCommandFind, 0);
    const HWND dialog = FindWindowOf(Id(), L"Search:");
    ASSERT_NE(nullptr, dialog);
    EXPECT_EQ(L"aLPHA", TextOf(GetDlgItem(dialog, kSearchText)));
    EXPECT_EQ(BST_CHECKED, SendDlgItemMessageW(dialog, kSearchIgnoreCase, BM_GETCHECK, 0, 0));
    EXPECT_EQ(BST_CHECKED, SendDlgItemMessageW(dialog, kSearchWholeItem, BM_GETCHECK, 0, 0));
    PressButton(dialog, IDCANCEL);
    WaitUntil([&] { return !IsWindow(dialog); });
}

TEST_F(ViewerCommands, NextErrorGoesRoundAndTheListSelectsItsItem)
{
    Send(kCommandNextError);
    ExpectSelected(L"QueryInterface for unsupported interface");
    EXPECT_EQ(0, list->Selected());
    Send(kCommandNextError);
    ExpectSelected(L"an error");
    EXPECT_EQ(1, list->Selected());
    Send(kCommandNextError);
    ExpectSelected(L"QueryInterface for unsupported interface");
    list->Select(1);
    ExpectSelected(L"an error");
    Find(L"lower case");
    Send(kCommandNextError);
    ExpectSelected(L"an error");
}

TEST_F(ViewerCommands, ClickingTheSelectedErrorBringsItsItemBack)
{
    list->Select(1);
    ExpectSelected(L"an error");
    Find(L"lower case");
    list->Click(1);
    EXPECT_TRUE(WaitUntil([&] { return tree->SelectedLabel() == L"an error"; }));
    ExpectSelected(L"an error");
}

TEST_F(ViewerTest, NextErrorOfALogWithoutAnySaysSo)
{
    Show(InLog("<info value=\"all is well\"/>"));
    Send(kCommandNextError);
    EXPECT_EQ(L"There are no errors or warnings.", Box(L"Next error:"));
}

TEST_F(ViewerCommands, ExpandAndCollapseActOnEverything)
{
    Find(L"Alpha");
    Send(kCommandExpandAll);
    int expanded = 0;
    const auto count = [&](auto& self, HTREEITEM item) -> void {
        for (; item; item = tree->Next(TVGN_NEXT, item)) {
            expanded += tree->IsExpanded(item);
            self(self, tree->Next(TVGN_CHILD, item));
        }
    };
    count(count, tree->Next(TVGN_ROOT));
    EXPECT_EQ(5, expanded);
    ExpectSelected(L"Alpha");
    Send(kCommandCollapseAll);
    expanded = 0;
    count(count, tree->Next(TVGN_ROOT));
    EXPECT_EQ(0, expanded);
    ExpectSelected(L"QueryInterface (one)");
}

TEST_F(ViewerCommands, KeysWork)
{
    PressKey(window, VK_F4);
    EXPECT_TRUE(WaitUntil([&] { return tree->SelectedLabel() == L"QueryInterface for unsupported interface"; }));
    const DWORD before = GetClipboardSequenceNumber();
    PressKey(window, 'C', VK_CONTROL);
    ASSERT_TRUE(WaitUntil([&] { return GetClipboardSequenceNumber() != before && OpenClipboard(nullptr); }));
    const auto* copied = static_cast<const wchar_t*>(GetClipboardData(CF_UNICODETEXT));
    EXPECT_STREQ(L"QueryInterface for unsupported interface", copied ? copied : L"<nothing>");
    CloseClipboard();
    PressKey(window, 'A', VK_CONTROL);
    EXPECT_TRUE(WaitUntil([&] { return tree->IsExpanded(tree->Next(TVGN_PARENT, tree->Selected())); }));
    PressKey(window, 'B', VK_CONTROL);
    EXPECT_TRUE(WaitUntil([&] { return tree->SelectedLabel() == L"QueryInterface (one)"; }));
    PressKey(window, 'Q', VK_CONTROL);
    EXPECT_TRUE(WaitUntil([&] { return tree->Count() == 11; }));
    PressKey(window, VK_F3);
    EXPECT_EQ(L"No previous search string.", Box(L"Find next:"));
    PressKey(window, VK_F3, VK_SHIFT);
    EXPECT_EQ(L"No previous search string.", Box(L"Find previous:"));
    PressKey(window, 'F', VK_CONTROL);
    const HWND dialog = FindWindowOf(Id(), L"Search:");
    ASSERT_NE(nullptr, dialog);
    PressKey(dialog, 'Z');
    PressKey(dialog, VK_RETURN);
    EXPECT_TRUE(WaitUntil([&] { return tree->SelectedLabel() == L"z (type: long)"; }));
}

}  // namespace
}  // namespace zelt::test
