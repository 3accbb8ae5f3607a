// Logs with more items than the viewer puts into the tree at first: the user sees no difference, and can cancel loading.
#include "res/resource.h"
#include "viewer_process.h"

namespace zelt::test {
namespace {

std::string LongCall(int number)
{
    const std::string text = std::to_string(number);
    return "<func name=\"call " + text +
           "\" direc=\"in\" object=\"o\">\n <arg name=\"a\" direc=\"in\" type=\"long\">\n"
           "  <argval value=\"value " +
           text + "\"/>\n </arg>\n <info value=\"QueryInterface " + text + "\"/>\n</func>\n";
}

std::string ManyCalls(int count)
{
    std::string calls;
    for (int i = 0; i < count; ++i) calls += LongCall(i);
    return calls;
}

// The same checks on a log that the tree contains completely and on one whose items enter the tree on demand.
class ViewerScale : public ViewerTest, public testing::WithParamInterface<int> {};

TEST_P(ViewerScale, ShowsTheSameWhateverTheSize)
{
    const int calls = GetParam();
    const std::string last = std::to_string(calls - 1);
    const std::wstring wideLast(last.begin(), last.end());
    Show(InLog(ManyCalls(calls) + "<func name=\"end\" direc=\"in\" object=\"o\"><error value=\"the error\"/></func>"));
    const int all = calls * 4 + 2;
    if (all <= 100'000) {
        EXPECT_EQ(all, tree->Count());
    } else {
        EXPECT_LT(tree->Count(), 100'000 + calls);
    }

    Find(L"value " + wideLast);
    EXPECT_EQ(L"value " + wideLast, tree->SelectedLabel());
    EXPECT_TRUE(tree->IsInView(tree->Selected()));
    const HTREEITEM argument = tree->Next(TVGN_PARENT, tree->Selected());
    EXPECT_EQ(L"a (type: long)", tree->Label(argument));
    EXPECT_TRUE(tree->IsExpanded(argument));
    EXPECT_EQ(L"QueryInterface " + wideLast, tree->Label(tree->Next(TVGN_NEXT, argument)));
    EXPECT_EQ(nullptr, tree->Next(TVGN_NEXT, tree->Next(TVGN_NEXT, argument)));

    // A call that nothing has touched: its children appear when it is expanded.
    HTREEITEM call = tree->Next(TVGN_PARENT, argument);
    call = tree->Next(TVGN_PREVIOUS, call);
    EXPECT_EQ(L"call " + std::to_wstring(calls - 2) + L" (o)", tree->Label(call));
    EXPECT_TRUE(tree->IsParent(call));
    tree->Expand(call);
    ASSERT_NE(nullptr, tree->Next(TVGN_CHILD, call));
    EXPECT_EQ(L"a (type: long)", tree->Label(tree->Next(TVGN_CHILD, call)));

    Send(kCommandNextError);
    EXPECT_EQ(L"the error", tree->SelectedLabel());
    EXPECT_EQ(L"the error", tree->Label(reinterpret_cast<HTREEITEM>(list->Data(0))));

    PostMessageW(window, WM_COMMAND, kCommandRemoveQueries, 0);
    EXPECT_TRUE(WaitUntil([&] { return tree->Next(TVGN_NEXT, argument) == nullptr; }, 60'000));
    EXPECT_EQ(nullptr, tree->Next(TVGN_NEXT, tree->Next(TVGN_CHILD, call)));
    Find(L"QueryInterface");
    EXPECT_EQ(L"Search string \"QueryInterface\" is not found.", Box(L"Search tree:"));
    Find(L"value 0", false, true);
    EXPECT_EQ(L"value 0", tree->SelectedLabel());
    Send(kCommandFindPrevious);
    EXPECT_EQ(L"value 0", tree->SelectedLabel());
}

INSTANTIATE_TEST_SUITE_P(Sizes, ViewerScale, testing::Values(2000, 40'000));

TEST_F(ViewerTest, LoadingCanBeCancelledAndShowsWhatItHas)
{
    std::string log = "<zeltlogdocument>";
    const std::string some = ManyCalls(10'000);
    for (int i = 0; i < 40; ++i) log += some;
    Start(log + "</zeltlogdocument>");
    const HWND progress = FindWindowOf(Id(), L"Parsing log file:", 30'000);
    ASSERT_NE(nullptr, progress);
    KeepPicture(progress, "progress-moving");
    PressButton(progress, IDCANCEL);
    WaitForWindow();
    EXPECT_FALSE(IsWindow(progress));
    EXPECT_GT(tree->Count(), 0);
    Find(L"the last of them");
    EXPECT_EQ(L"Search string \"the last of them\" is not found.", Box(L"Search tree:"));
}

TEST_F(ViewerTest, LoadingEndsWithEscToo)
{
    std::string log = "<zeltlogdocument>";
    const std::string some = ManyCalls(10'000);
    for (int i = 0; i < 40; ++i) log += some;
    Start(log + "</zeltlogdocument>");
    const HWND progress = FindWindowOf(Id(), L"Parsing log file:", 30'000);
    ASSERT_NE(nullptr, progress);
    PostMessageW(GetDlgItem(progress, IDCANCEL), WM_KEYDOWN, VK_ESCAPE, 1);
    WaitForWindow();
    EXPECT_FALSE(IsWindow(progress));
    EXPECT_TRUE(IsWindow(window));
    EXPECT_GT(tree->Count(), 0);
}

// The outermost items enter the tree a few at a time; a user who walks through them still finds each.
TEST_F(ViewerTest, AWalkMeetsEveryOutermostItem)
{
    std::string many;
    for (int i = 0; i < 100'000; ++i) many += "<a/>";
    Show(InLog("<func name=\"many\" direc=\"in\" object=\"o\">" + many + "</func>" + ManyCalls(15'000)));
    int count = 0;
    HTREEITEM last = nullptr;
    for (HTREEITEM item = tree->Next(TVGN_ROOT); item; item = tree->Next(TVGN_NEXT, item), ++count) last = item;
    EXPECT_EQ(15'001, count);
    EXPECT_EQ(L"call 14999 (o)", tree->Label(last));
}

TEST_F(ViewerTest, TheEndKeyGoesToTheLastItem)
{
    Show(InLog(ManyCalls(80'000)));
    PostMessageW(GetDlgItem(window, kLogTree), WM_KEYDOWN, VK_END, 1);
    EXPECT_TRUE(WaitUntil([&] { return tree->SelectedLabel() == L"call 79999 (o)"; })) << tree->Count();
    EXPECT_EQ(80'000, tree->Count());
}

// The tree is filled up to the limit while the log seems small; the later items still appear.
TEST_F(ViewerTest, ALogWithMoreItemsThanItsBeginningPromisesIsShownWhole)
{
    // Long entries first, then short ones inside a call that is open when filling stops.
    std::string log;
    for (int i = 0; i < 5000; ++i) log += "<info value=\"" + std::string(1500, 'l') + "\"/>\n";
    log += "<func name=\"open\" direc=\"in\" object=\"o\"><func name=\"inner\" direc=\"in\" object=\"o\">";
    for (int i = 0; i < 120'000; ++i) log += "<a/>";
    log += "</func><info value=\"behind the inner call\"/></func><info value=\"last\"/>";
    Show(InLog(log));
    EXPECT_GE(tree->Count(), 100'000);
    HTREEITEM item = tree->Next(TVGN_ROOT);
    for (int i = 0; i < 5000; ++i) item = tree->Next(TVGN_NEXT, item);
    EXPECT_EQ(L"open (o)", tree->Label(item));
    const HTREEITEM inner = tree->Next(TVGN_CHILD, item);
    EXPECT_EQ(L"inner (o)", tree->Label(inner));
    EXPECT_EQ(L"behind the inner call", tree->Label(tree->Next(TVGN_NEXT, inner)));
    EXPECT_EQ(nullptr, tree->Next(TVGN_NEXT, tree->Next(TVGN_NEXT, inner)));
    EXPECT_EQ(L"last", tree->Label(tree->Next(TVGN_NEXT, item)));
    EXPECT_EQ(5000 + 2 + 120'000 + 2, tree->Count());
}

TEST_F(ViewerTest, ExpandingEverythingStopsAtItsLimitAndSaysSo)
{
    std::string log =
        "<func name=\"small\" direc=\"in\" object=\"o\"><info value=\"1\"/></func>"
        "<func name=\"large\" direc=\"in\" object=\"o\">";
    for (int i = 0; i < 200'000; ++i) log += "<a/>";
    Show(InLog(log + "</func>"));
    PostMessageW(window, WM_COMMAND, kCommandExpandAll, 0);
    EXPECT_EQ(L"Expanding stopped at 200000 nested items. The rest can be expanded one by one.",
              Box(L"Expand all items:"));
    const HTREEITEM small = tree->Next(TVGN_ROOT);
    EXPECT_TRUE(tree->IsExpanded(small));
    const HTREEITEM large = tree->Next(TVGN_NEXT, small);
    EXPECT_FALSE(tree->IsExpanded(large));
    EXPECT_EQ(3, tree->Count());
}

// Esc is queued after the command, as from a quick user.
TEST_F(ViewerTest, EscCancelsARemovalWhichCanBeDoneAgain)
{
    Show(InLog(ManyCalls(20'000)));
    const HTREEITEM first = tree->Next(TVGN_ROOT);
    PostMessageW(window, WM_COMMAND, kCommandRemoveQueries, 0);
    PostMessageW(GetDlgItem(window, kLogTree), WM_KEYDOWN, VK_ESCAPE, 1);
    // While the removal runs, the window answers and refuses further commands. The removal has ended when nothing
    // changes any more.
    WaitUntil([&] {
        const int before = tree->Count();
        Sleep(500);
        return before < 80'000 && tree->Count() == before;
    });
    ASSERT_TRUE(IsWindow(window));
    EXPECT_LT(tree->Count(), 80'000);
    EXPECT_GT(tree->Count(), 60'000);
    EXPECT_EQ(nullptr, tree->Next(TVGN_NEXT, tree->Next(TVGN_CHILD, first)));
    PostMessageW(window, WM_COMMAND, kCommandRemoveQueries, 0);
    EXPECT_TRUE(WaitUntil([&] { return tree->Count() == 60'000; }, 120'000)) << tree->Count();
}

TEST_F(ViewerTest, EscCancelsASearch)
{
    // Long labels, all different, and a text that nearly matches them.
    std::string log = "<func name=\"all\" direc=\"in\" object=\"o\">";
    for (int i = 0; i < 8000; ++i) log += "<info value=\"" + std::string(1500, 'l') + std::to_string(i) + "\"/>";
    const std::wstring nearly = std::wstring(200, L'l') + L"xl";
    Show(InLog(log + "</func>"));
    Find(nearly);
    EXPECT_EQ(L"Search string \"" + nearly + L"\" is not found.", Box(L"Search tree:"));
    PostMessageW(window, WM_COMMAND, kCommandFindNext, 0);
    PostMessageW(GetDlgItem(window, kLogTree), WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_EQ(nullptr, FindWindowOf(Id(), L"Search tree:", 3000));
    EXPECT_TRUE(IsWindow(window));
    Find(L"ALL (O)", true, true);
    EXPECT_EQ(L"all (o)", tree->SelectedLabel());
}

}  // namespace
}  // namespace zelt::test
