// Large logs as ZELT writes them, which are read in pages: what the user sees during the reading and after it, and what
// happens when the file changes.
#include <filesystem>
#include <fstream>
#include <functional>

#include "res/resource.h"
#include "system/owners.h"
#include "viewer_process.h"

namespace zelt::test {
namespace {

const std::string kHeader = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
constexpr const wchar_t* kProgress = L"Parsing log file:";

std::string Call(int number)
{
    const std::string text = std::to_string(number);
    return "<func name=\"I::call" + text +
           "\" direc=\"in\" object=\"o\">\r\n <arg name=\"a\" direc=\"in\" type=\"long\">\r\n"
           "  <argval value=\"value " +
           text + "\"/>\r\n </arg>\r\n <info value=\"QueryInterface " + text + "\"/>\r\n</func>\r\n";
}

std::wstring CallLabel(int number) { return L"I::call" + std::to_wstring(number) + L" (o)"; }

std::string Calls(int first, int count)
{
    std::string calls;
    for (int i = first; i < first + count; ++i) calls += Call(i);
    return calls;
}

class ViewerPages : public ViewerTest {
protected:
    // Dozens of pages, with more outermost items than the viewer puts into the tree at first.
    static constexpr int kCalls = 40'000;

    void WaitUntilRead()
    {
        WaitForWindow();
        ASSERT_TRUE(WaitUntil([this] { return !FindNow(Id(), kProgress); }));
        SendMessageW(window, WM_NULL, 0, 0);
    }
    void ShowCalls(int count = kCalls, const std::string& end = {})
    {
        Start(InLog(Calls(0, count) + end));
        WaitUntilRead();
    }
    // A log that is still being read when its window appears; only its last item is an error. How long it has to be depends on
    // the machine.
    void ShowLong()
    {
        ShowLongUntil([this] { return FindNow(Id(), kProgress) != nullptr; });
    }
    // Tries longer and longer logs until the condition is true before the log has been read.
    void ShowLongUntil(const std::function<bool()>& isAsWanted)
    {
        for (int copies = 200; copies <= 1600; copies *= 2) {
            WriteLong(copies);
            StartWithoutLog();
            WaitForWindow();
            if (isAsWanted()) return;
            PostMessageW(window, WM_CLOSE, 0, 0);
            ASSERT_EQ(0u, process->Wait(60'000).value_or(1));
        }
        FAIL() << "each log was read too soon";
    }
    // False if the log was read before the button was pressed: then its only error, the last item, is in the list.
    bool Cancel()
    {
        const HWND progress = FindNow(Id(), kProgress);
        if (!progress) return false;
        PostMessageW(progress, WM_COMMAND, IDCANCEL, 0);
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(progress); }));
        SendMessageW(window, WM_NULL, 0, 0);
        return list->Count() == 0;
    }
    void WriteLong(int copies) const
    {
        std::ofstream file(std::filesystem::path(path), std::ios::binary);
        const std::string calls = Calls(0, 10'000);
        file << kHeader;
        for (int i = 0; i < copies; ++i) file << calls;
        file << "<error value=\"the last of them\"/>\r\n</zeltlogdocument>\r\n";
    }
    void Truncate(LONG bytes) const
    {
        const UniqueHandle file(CreateFileW(path.c_str(), GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
        ASSERT_NE(INVALID_HANDLE_VALUE, file.get()) << GetLastError();
        SetFilePointer(file.get(), bytes, nullptr, FILE_BEGIN);
        ASSERT_TRUE(SetEndOfFile(file.get())) << GetLastError();
    }
    // Sends a key to the tree, where it acts on the selected item.
    void Press(WPARAM key) const
    {
        if (!tree->Selected()) tree->Select(tree->Next(TVGN_ROOT));
        SendMessageW(GetDlgItem(window, kLogTree), WM_KEYDOWN, key, 1);
    }
    // Repeats the command, because a window refuses commands while it is busy with one.
    bool SendUntil(int command, const std::function<bool()>& condition) const
    {
        return WaitUntil(
            [&] {
                Send(command);
                return WaitUntil(condition, 1000);
            },
            60'000);
    }
};

TEST_F(ViewerPages, ShowTheBeginningWhileTheRestIsRead)
{
    ASSERT_NO_FATAL_FAILURE(ShowLong());
    // The viewer answers: it shows items, expands them, and can be scrolled.
    const HTREEITEM first = tree->Next(TVGN_ROOT);
    EXPECT_EQ(CallLabel(0), tree->Label(first));
    tree->Expand(first);
    EXPECT_EQ(L"a (type: long)", tree->Label(tree->Next(TVGN_CHILD, first)));
    EXPECT_EQ(CallLabel(1), tree->Label(tree->Next(TVGN_NEXT, first)));
    Press(VK_NEXT);
    KeepPicture(window, "viewer-while-reading");
    // A command that needs the whole log waits for it.
    Send(kCommandNextError);
    EXPECT_TRUE(WaitUntil([&] { return tree->SelectedLabel() == L"the last of them"; }));
    EXPECT_EQ(nullptr, FindNow(Id(), kProgress));
    EXPECT_TRUE(tree->IsInView(tree->Selected()));
    EXPECT_EQ(1, list->Count());
}

TEST_F(ViewerPages, KeepWhatWasReadBeforeCancelling)
{
    ASSERT_NO_FATAL_FAILURE(ShowLongUntil([this] { return Cancel(); }));
    EXPECT_EQ(CallLabel(0), tree->Label(tree->Next(TVGN_ROOT)));
    Find(L"the last of them");
    EXPECT_EQ(L"Search string \"the last of them\" is not found.", Box(L"Search tree:"));
    EXPECT_EQ(0, list->Count());
    Find(L"value 77", false, true);
    EXPECT_EQ(L"value 77", tree->SelectedLabel());
}

TEST_F(ViewerPages, CloseWhileTheyAreRead)
{
    ASSERT_NO_FATAL_FAILURE(ShowLong());
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(0u, process->Wait(20'000).value_or(1));
}

TEST_F(ViewerPages, HaveFewItemsInTheTreeUntilTheUserGoesThere)
{
    ShowCalls(kCalls, "<error value=\"the error\"/>\r\n");
    EXPECT_TRUE(WaitUntil([&] { return tree->Count() >= 10'000; }));
    Sleep(500);
    EXPECT_GT(15'000, tree->Count());

    // The end of the log: its last items are in the tree, but not all those before them.
    Press(VK_END);
    EXPECT_EQ(L"the error", tree->SelectedLabel());
    EXPECT_TRUE(tree->IsInView(tree->Selected()));
    EXPECT_EQ(CallLabel(kCalls - 1), tree->Label(tree->Next(TVGN_PREVIOUS, tree->Selected())));
    EXPECT_GT(1000, tree->Count());
    HTREEITEM item = tree->Selected();
    for (int i = 1; i <= 2000; ++i) {
        item = tree->Next(TVGN_PREVIOUS, item);
        ASSERT_NE(nullptr, item) << i;
    }
    EXPECT_EQ(CallLabel(kCalls - 2000), tree->Label(item));

    // A match in the middle, and its neighbours on both sides.
    Find(L"value 20000", false, true);
    EXPECT_EQ(L"value 20000", tree->SelectedLabel());
    EXPECT_TRUE(tree->IsInView(tree->Selected()));
    const HTREEITEM call = tree->Next(TVGN_PARENT, tree->Next(TVGN_PARENT, tree->Selected()));
    EXPECT_EQ(CallLabel(20'000), tree->Label(call));
    EXPECT_EQ(CallLabel(19'999), tree->Label(tree->Next(TVGN_PREVIOUS, call)));
    EXPECT_EQ(CallLabel(20'001), tree->Label(tree->Next(TVGN_NEXT, call)));
    Send(kCommandFindPrevious);
    EXPECT_EQ(L"value 20000", tree->SelectedLabel());

    // Scrolling up and down brings further items into the tree.
    tree->Select(call);
    for (int page = 0; page < 60; ++page) Press(VK_PRIOR);
    const std::wstring above = tree->SelectedLabel();
    EXPECT_LT(above, CallLabel(19'700));
    for (int page = 0; page < 120; ++page) Press(VK_NEXT);
    EXPECT_GT(tree->SelectedLabel(), CallLabel(20'300));

    Press(VK_HOME);
    EXPECT_EQ(CallLabel(0), tree->SelectedLabel());
    Send(kCommandNextError);
    EXPECT_EQ(L"the error", tree->SelectedLabel());
    EXPECT_EQ(L"the error", tree->Label(reinterpret_cast<HTREEITEM>(list->Data(0))));
    // A program that walks through the items meets each, in order.
    int number = 0;
    for (item = tree->Next(TVGN_ROOT); item; item = tree->Next(TVGN_NEXT, item), ++number) {
        if (number % 1000 == 0 && number < kCalls) {
            ASSERT_EQ(CallLabel(number), tree->Label(item));
        }
    }
    EXPECT_EQ(kCalls + 1, number);
}

TEST_F(ViewerPages, LoseTheQueriesAndExpandAndCollapse)
{
    // Few items in many bytes, because expanding many items takes a long time.
    constexpr int kFew = 100, kLong = 12;
    std::string log = Calls(0, kFew);
    for (int i = 0; i < kLong; ++i) log += "<info value=\"" + std::string(100'000, 'i') + "\"/>\r\n";
    Start(InLog(log));
    WaitUntilRead();
    HTREEITEM last = tree->Next(TVGN_ROOT);
    for (int i = 1; i < kFew; ++i) last = tree->Next(TVGN_NEXT, last);
    EXPECT_EQ(CallLabel(kFew - 1), tree->Label(last));
    tree->Expand(last);
    const HTREEITEM argument = tree->Next(TVGN_CHILD, last);
    EXPECT_EQ(L"QueryInterface 99", tree->Label(tree->Next(TVGN_NEXT, argument)));
    EXPECT_TRUE(SendUntil(kCommandRemoveQueries, [&] { return tree->Next(TVGN_NEXT, argument) == nullptr; }));
    Find(L"QueryInterface 77");
    EXPECT_EQ(L"Search string \"QueryInterface 77\" is not found.", Box(L"Search tree:"));
    Find(L"value 77", false, true);
    EXPECT_EQ(L"value 77", tree->SelectedLabel());
    EXPECT_EQ(nullptr, tree->Next(TVGN_NEXT, tree->Next(TVGN_PARENT, tree->Selected())));
    tree->Select(tree->Next(TVGN_ROOT));
    // Two items inside each call remain.
    EXPECT_TRUE(SendUntil(kCommandExpandAll, [&] { return tree->Count() == 3 * kFew + kLong; })) << tree->Count();
    EXPECT_TRUE(tree->IsExpanded(tree->Next(TVGN_ROOT)));
    EXPECT_TRUE(tree->IsExpanded(last));
    EXPECT_TRUE(SendUntil(kCommandCollapseAll, [&] { return !tree->IsExpanded(last); }));
}

TEST_F(ViewerPages, ShowALogThatGrows)
{
    const UniqueHandle writer(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                          CREATE_ALWAYS, 0, nullptr));
    ASSERT_NE(INVALID_HANDLE_VALUE, writer.get());
    const auto write = [&](const std::string& text) {
        DWORD written = 0;
        return WriteFile(writer.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
               written == text.size();
    };
    // The writer is inside a call.
    ASSERT_TRUE(write(kHeader + Calls(0, kCalls) +
                      "<func name=\"I::open\" direc=\"in\" object=\"o\">\r\n <info value=\"so far\"/>\r\n"));
    StartWithoutLog();
    // The line where the log ends.
    EXPECT_EQ(L"Parse error in \"" + path + L"\", line " + std::to_wstring(2 + 6 * kCalls + 3), Box(L"Parse error:"));
    ASSERT_TRUE(write(" <info value=\"later\"/>\r\n</func>\r\n" + Calls(kCalls, 1000)));
    EXPECT_EQ(L"XML parse error in \"" + path + L"\"", Box(L"Parse Error:"));
    WaitUntilRead();
    Press(VK_END);
    EXPECT_EQ(L"I::open (o)", tree->SelectedLabel());
    const HTREEITEM open = tree->Selected();
    tree->Expand(open);
    EXPECT_EQ(L"so far", tree->Label(tree->Next(TVGN_CHILD, open)));
    EXPECT_EQ(nullptr, tree->Next(TVGN_NEXT, tree->Next(TVGN_CHILD, open)));
    Find(L"value 30000", false, true);
    EXPECT_EQ(L"value 30000", tree->SelectedLabel());
    Find(L"later");
    EXPECT_EQ(L"Search string \"later\" is not found.", Box(L"Search tree:"));
}

TEST_F(ViewerPages, SayWhatAnotherProgramHasCutOff)
{
    ShowCalls();
    ASSERT_NO_FATAL_FAILURE(Truncate(100));
    Press(VK_END);
    EXPECT_EQ(L"<no longer in the file>", tree->SelectedLabel());
    Find(L"value 30000", false, true);
    EXPECT_EQ(L"Search string \"value 30000\" is not found.", Box(L"Search tree:"));
    for (const int command : {kCommandRemoveQueries, kCommandExpandAll, kCommandCollapseAll}) Send(command);
    Press(VK_HOME);
    SendMessageW(window, WM_NULL, 0, 0);
    EXPECT_FALSE(process->Wait(0).has_value());
    EXPECT_TRUE(IsWindow(window));
}

}  // namespace
}  // namespace zelt::test
