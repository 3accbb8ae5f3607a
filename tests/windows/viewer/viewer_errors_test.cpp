// The list of errors with lines, calls and objects, and its filter.
#include "res/resource.h"
#include "system/configuration_key.h"
#include "system/registry.h"
#include "viewer_process.h"

namespace zelt::test {
namespace {

const char* const kFailingLog =
    "<warning value=\"outside\"/>\r\n"
    "<func name=\"I::Calculate\" direc=\"in\" object=\"one (a)\">\r\n"
    " <arg name=\"a\" direc=\"in\" type=\"long\">\r\n  <argval value=\"1\"/>\r\n </arg>\r\n"
    " <func name=\"J::Get\" direc=\"out\" object=\"Feed\">\r\n"
    "  <error value=\"E_FAIL\"/>\r\n"
    " </func>\r\n"
    " <warning value=\"Slow\"/>\r\n"
    " <error value=\"ECapeUnknown\"/>\r\n"
    "</func>\r\n"
    "<func name=\"I::Check\" direc=\"in\" object=\"two\">\r\n"
    " <error value=\"E_FAIL\"/>\r\n"
    "</func>\r\n";

constexpr const wchar_t* kSetting = L"ErrorDetails";

class ViewerErrors : public ViewerTest {
protected:
    ViewerErrors() { Forget(); }
    ~ViewerErrors() override { Forget(); }

    void ShowDetails()
    {
        Show(InLog(kFailingLog));
        Send(kCommandErrorDetails);
    }
    HWND Filter() const { return GetDlgItem(window, kErrorFilter); }
    // Has the same effect as typing the text.
    void EnterFilter(const wchar_t* text) const
    {
        SendMessageW(Filter(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }
    bool Shows(int rows) const
    {
        return WaitUntil([this, rows] { return list->Count() == rows; });
    }
    std::wstring FoundText() const { return TextOf(GetDlgItem(window, kErrorFilterCount)); }
    std::wstring Row(int row) const
    {
        return list->Text(row, 0) + L"|" + list->Text(row, 1) + L"|" + list->Text(row, 2) + L"|" + list->Text(row, 3);
    }

    static void Forget()
    {
        RegistryKey key;
        if (key.Open({}, kSettingsKey, KEY_ALL_ACCESS) == ERROR_SUCCESS) static_cast<void>(key.DeleteValue(kSetting));
    }
};

TEST_F(ViewerErrors, HaveOneColumnAtFirst)
{
    Show(InLog(kFailingLog));
    EXPECT_EQ(L"Errors", list->Column(0));
    EXPECT_EQ(L"", list->Column(1));
    EXPECT_FALSE(IsWindowVisible(Filter()));
    EXPECT_EQ(5, list->Count());
}

TEST_F(ViewerErrors, ShowLineCallAndObjectOnRequest)
{
    ShowDetails();
    EXPECT_EQ(L"Errors", list->Column(0));
    EXPECT_EQ(L"Line", list->Column(1));
    EXPECT_EQ(L"Call", list->Column(2));
    EXPECT_EQ(L"Object", list->Column(3));
    ASSERT_EQ(5, list->Count());
    EXPECT_EQ(L"outside|3||", Row(0));
    EXPECT_EQ(L"E_FAIL|9|J::Get|Feed", Row(1));
    EXPECT_EQ(L"Slow|11|I::Calculate|one (a)", Row(2));
    EXPECT_EQ(L"ECapeUnknown|12|I::Calculate|one (a)", Row(3));
    EXPECT_EQ(L"E_FAIL|15|I::Check|two", Row(4));
    EXPECT_EQ(3, list->Image(3));
    EXPECT_TRUE(IsWindowVisible(Filter()));
    Send(kCommandNextError);
    EXPECT_EQ(L"outside", tree->SelectedLabel());
    KeepPicture(window, "viewer-error-details");

    Send(kCommandErrorDetails);
    EXPECT_EQ(L"Errors", list->Column(0));
    EXPECT_EQ(L"", list->Column(1));
    EXPECT_FALSE(IsWindowVisible(Filter()));
    EXPECT_EQ(L"outside", list->Label(0));
}

TEST_F(ViewerErrors, HaveTheFilterBetweenItsLabelAndItsCount)
{
    ShowDetails();
    RECT label, edit, count;
    GetWindowRect(GetDlgItem(window, kErrorFilterLabel), &label);
    GetWindowRect(Filter(), &edit);
    GetWindowRect(GetDlgItem(window, kErrorFilterCount), &count);
    EXPECT_LT(label.left, label.right);
    EXPECT_LE(label.right, edit.left);
    EXPECT_LT(edit.left, edit.right);
    EXPECT_LE(edit.right, count.left);
    EXPECT_LT(count.left, count.right);
}

TEST_F(ViewerErrors, AreFilteredByTextCallAndObject)
{
    ShowDetails();
    EnterFilter(L"e_fail");
    EXPECT_TRUE(Shows(2));
    EXPECT_EQ(L"E_FAIL|9|J::Get|Feed", Row(0));
    EXPECT_EQ(L"E_FAIL|15|I::Check|two", Row(1));
    EXPECT_EQ(L"2 of 5", FoundText());
    EXPECT_EQ(L"E_FAIL", tree->Label(reinterpret_cast<HTREEITEM>(list->Data(1))));
    EnterFilter(L"calculate");
    EXPECT_TRUE(WaitUntil([this] { return list->Text(0, 0) == L"Slow"; }));
    EXPECT_EQ(2, list->Count());
    EnterFilter(L"FEED");
    EXPECT_TRUE(Shows(1));
    EXPECT_EQ(L"E_FAIL|9|J::Get|Feed", Row(0));
    EnterFilter(L"");
    EXPECT_TRUE(Shows(5));
    EXPECT_EQ(L"", FoundText());
}

TEST_F(ViewerErrors, GoesThroughTheFilteredOnes)
{
    ShowDetails();
    EnterFilter(L"e_fail");
    ASSERT_TRUE(Shows(2));
    tree->Select(nullptr);
    Send(kCommandNextError);
    EXPECT_EQ(L"J::Get (Feed)", tree->Label(tree->Next(TVGN_PARENT, tree->Selected())));
    EXPECT_EQ(0, list->Selected());
    Send(kCommandNextError);
    EXPECT_EQ(L"I::Check (two)", tree->Label(tree->Next(TVGN_PARENT, tree->Selected())));
    EXPECT_EQ(1, list->Selected());
    Send(kCommandNextError);
    EXPECT_EQ(0, list->Selected());
    EnterFilter(L"nothing has this");
    ASSERT_TRUE(Shows(0));
    EXPECT_EQ(L"0 of 5", FoundText());
    Send(kCommandNextError);
    EXPECT_EQ(L"No error or warning matches the filter.", Box(L"Next error:"));
}

TEST_F(ViewerErrors, KeysReachTheFilter)
{
    Show(InLog(kFailingLog));
    PressKey(window, 'L', VK_CONTROL);
    ASSERT_TRUE(WaitUntil([this] { return IsWindowVisible(Filter()); }));
    PressKey(window, 'F');
    PressKey(window, 'E');
    PressKey(window, 'E');
    EXPECT_TRUE(Shows(1));
    // Ctrl+A selects the filter's text, and does not expand the tree.
    PressKey(window, 'A', VK_CONTROL);
    PressKey(window, 'T');
    PressKey(window, 'W');
    EXPECT_TRUE(WaitUntil([this] { return TextOf(Filter()) == L"tw"; }));
    EXPECT_TRUE(WaitUntil([this] { return list->Count() == 1 && list->Text(0, 3) == L"two"; }));
    // The first Esc empties the filter, the second closes the window.
    PressKey(window, VK_ESCAPE);
    EXPECT_TRUE(Shows(5));
    ASSERT_TRUE(IsWindow(window));
    EXPECT_EQ(L"", TextOf(Filter()));
    PressKey(window, VK_ESCAPE);
    EXPECT_TRUE(WaitUntil([this] { return !IsWindow(window); }));
}

TEST_F(ViewerErrors, HidingTheFilterShowsAll)
{
    ShowDetails();
    EnterFilter(L"outside");
    ASSERT_TRUE(Shows(1));
    Send(kCommandErrorDetails);
    EXPECT_TRUE(Shows(5));
}

TEST_F(ViewerErrors, OfTheNextViewerLookAlike)
{
    ShowDetails();
    PostMessageW(window, WM_CLOSE, 0, 0);
    ASSERT_EQ(0u, process->Wait(60'000).value_or(1));
    Show(InLog(kFailingLog));
    EXPECT_EQ(L"Line", list->Column(1));
    EXPECT_EQ(L"E_FAIL|9|J::Get|Feed", Row(1));
    EXPECT_TRUE(IsWindowVisible(Filter()));
    Send(kCommandErrorDetails);
    PostMessageW(window, WM_CLOSE, 0, 0);
    ASSERT_EQ(0u, process->Wait(60'000).value_or(1));
    Show(InLog(kFailingLog));
    EXPECT_EQ(L"", list->Column(1));
}

TEST_F(ViewerErrors, OfALargeLogHaveTheirLines)
{
    std::string calls;
    int line = 2;
    for (int i = 0; i < 30'000; ++i) {
        calls += "<func name=\"I::f" + std::to_string(i) + "\" direc=\"in\" object=\"o\">\r\n";
        line += 2;
        if (i % 10'000 == 9'999) {
            calls += " <error value=\"error of " + std::to_string(i) + " in line " + std::to_string(line) + "\"/>\r\n";
            ++line;
        }
        calls += "</func>\r\n";
    }
    Show(InLog(calls));
    Send(kCommandErrorDetails);
    ASSERT_TRUE(Shows(3));
    for (int row = 0; row < 3; ++row) {
        const std::wstring text = list->Text(row, 0);
        EXPECT_EQ(text.substr(text.rfind(L' ') + 1), list->Text(row, 1));
        EXPECT_EQ(L"I::f" + std::to_wstring((row + 1) * 10'000 - 1), list->Text(row, 2));
    }
    EnterFilter(L"f19999");
    EXPECT_TRUE(Shows(1));
    Send(kCommandNextError);
    EXPECT_EQ(list->Text(0, 0), tree->SelectedLabel());
}

}  // namespace
}  // namespace zelt::test
