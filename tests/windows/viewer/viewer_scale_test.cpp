// Logs above the number of items that the tree is filled with: what is seen is the same, and loading can be cancelled.
#include "res/resource.h"
#include "viewer_process.h"

namespace zelt::test {
namespace {

std::string Call(int number)
{
    const std::string text = std::to_string(number);
    return "<func name=\"call " + text +
           "\" direc=\"in\" object=\"o\">\n <arg name=\"a\" direc=\"in\" type=\"long\">\n"
           "  <argval value=\"value " +
           text + "\"/>\n </arg>\n <info value=\"QueryInterface " + text + "\"/>\n</func>\n";
}

std::string Calls(int count)
{
    std::string calls;
    for (int i = 0; i < count; ++i) calls += Call(i);
    return calls;
}

// The same checks on a log that the tree holds whole and on one that enters it on demand.
class ViewerScale : public ViewerTest, public testing::WithParamInterface<int> {};

TEST_P(ViewerScale, ShowsTheSameWhateverTheSize)
{
    const int calls = GetParam();
    const std::string last = std::to_string(calls - 1);
    const std::wstring wideLast(last.begin(), last.end());
    Show(InLog(Calls(calls) + "<func name=\"end\" direc=\"in\" object=\"o\"><error value=\"the error\"/></func>"));
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

    // A call that nothing has touched: its children are there once it is expanded.
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
    const std::string some = Calls(10'000);
    for (int i = 0; i < 40; ++i) log += some;
    Start(log + "</zeltlogdocument>");
    const HWND progress = FindWindowOf(Id(), L"Parsing log file:", 30'000);
    ASSERT_NE(nullptr, progress);
    KeepPicture(progress, "progress-moving");
    PressButton(progress, IDCANCEL);
    Opened();
    EXPECT_FALSE(IsWindow(progress));
    EXPECT_GT(tree->Count(), 0);
    Find(L"the last of them");
    EXPECT_EQ(L"Search string \"the last of them\" is not found.", Box(L"Search tree:"));
}

}  // namespace
}  // namespace zelt::test
