// The list of the main window: which changes of a check box it passes on, and how wide its columns are.
#include "shell/main_window/package_list_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace zelt::test {
namespace {

// A window with the list. It passes every change of a row to the view. Some systems also announce the check box that a new row
// begins with. Because others do not, the window makes up such a change for each inserted row.
class PackageListViewTest : public testing::Test {
protected:
    PackageListViewTest()
    {
        const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&controls);
        WNDCLASSW definition = {};
        definition.lpfnWndProc = Procedure;
        definition.lpszClassName = L"PackageListViewTest";
        RegisterClassW(&definition);
        window = CreateWindowW(L"PackageListViewTest", L"", WS_OVERLAPPED, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                               nullptr);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        list =
            CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 300, 200, window, nullptr, nullptr, nullptr);
        view.Attach(list, nullptr);
    }
    ~PackageListViewTest() override
    {
        DestroyWindow(window);
        UnregisterClassW(L"PackageListViewTest", nullptr);
    }
    void Look(const NMLISTVIEW& change)
    {
        if (const auto taken = view.ChangedCheck(change)) changes.push_back({taken->row, taken->checked});
    }
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* self = reinterpret_cast<PackageListViewTest*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message != WM_NOTIFY || !self) return DefWindowProcW(window, message, wParam, lParam);
        NMLISTVIEW change = *reinterpret_cast<const NMLISTVIEW*>(lParam);
        if (change.hdr.code == LVN_ITEMCHANGED) self->Look(change);
        if (change.hdr.code == LVN_INSERTITEM) {
            ++self->inserted;
            change.uChanged = LVIF_STATE;
            change.uOldState = 0;
            change.uNewState = INDEXTOSTATEIMAGEMASK(1);
            self->Look(change);
        }
        return 0;
    }

    HWND window = nullptr, list = nullptr;
    PackageListView view;
    std::vector<std::pair<std::size_t, bool>> changes;
    int inserted = 0;
};

TEST_F(PackageListViewTest, PassesOnTheUsersChecksAndNotItsOwn)
{
    ExportedPackageList packages;
    for (const bool isLogged : {true, false, true}) {
        auto package = std::make_unique<ExportedPackage>();
        package->exportedName = L"package " + std::to_wstring(packages.Count());
        package->loggingEnabled = isLogged;
        packages.Append(std::move(package));
    }
    for (int fill = 1; fill <= 2; ++fill) {
        changes.clear();
        view.Fill(packages);
        EXPECT_EQ(3 * fill, inserted);
        EXPECT_TRUE(changes.empty()) << changes.size();
        for (int row = 0; row < 3; ++row) EXPECT_EQ(row != 1, ListView_GetCheckState(list, row) != 0) << row;
        ListView_SetCheckState(list, 1, TRUE);
        ListView_SetCheckState(list, 0, FALSE);
        EXPECT_EQ((std::vector<std::pair<std::size_t, bool>>{{1, true}, {0, false}}), changes);
    }
}

// A column is as wide as its contents or its header with margins, whichever is wider.
TEST_F(PackageListViewTest, MakesItsColumnsFit)
{
    view.FitColumns();
    const wchar_t* const kTitles[] = {L"Package", L"Type"};
    for (int column = 0; column < 2; ++column) {
        wchar_t title[64] = L"";
        LVCOLUMNW asked = {};
        asked.mask = LVCF_TEXT;
        asked.pszText = title;
        asked.cchTextMax = 64;
        ASSERT_TRUE(ListView_GetColumn(list, column, &asked));
        EXPECT_STREQ(kTitles[column], title);
        const int fitted = ListView_GetColumnWidth(list, column);
        ListView_SetColumnWidth(list, column, LVSCW_AUTOSIZE_USEHEADER);
        const int own = ListView_GetColumnWidth(list, column);
        // Room for one and a half small images beside the title.
        const int least = ListView_GetStringWidth(list, title) + GetSystemMetrics(SM_CXSMICON) * 3 / 2;
        EXPECT_EQ(std::max(own, least), fitted) << column;
        // Sets the width back, because the last column takes the room that the others leave.
        ListView_SetColumnWidth(list, column, fitted);
    }
}

}  // namespace
}  // namespace zelt::test
