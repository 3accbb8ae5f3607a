// A list view shows only the first 259 characters of a text; the list of errors draws longer texts itself.
#include "shell/log_viewer/errors/whole_label.h"

#include <gtest/gtest.h>

namespace zelt::test {
namespace {

constexpr int kWidth = 6000, kHeight = 60;

class WholeLabel : public testing::Test {
protected:
    void SetUp() override
    {
        list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_POPUP | LVS_REPORT, 0, 0, kWidth, kHeight, nullptr, nullptr,
                               nullptr, nullptr);
        ASSERT_NE(nullptr, list);
        LVCOLUMNW column = {};
        column.mask = LVCF_WIDTH;
        column.cx = kWidth;
        ListView_InsertColumn(list, 0, &column);
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        wchar_t text[] = L"short";
        item.pszText = text;
        ListView_InsertItem(list, &item);
        const HDC screen = GetDC(nullptr);
        context = CreateCompatibleDC(screen);
        bitmap = CreateCompatibleBitmap(screen, kWidth, kHeight);
        ReleaseDC(nullptr, screen);
        before = SelectObject(context, bitmap);
        SelectObject(context, GetStockObject(DEFAULT_GUI_FONT));
    }
    void TearDown() override
    {
        SelectObject(context, before);
        DeleteObject(bitmap);
        DeleteDC(context);
        DestroyWindow(list);
    }

    void Draw(const std::wstring& label) const
    {
        const RECT all = {0, 0, kWidth, kHeight};
        FillRect(context, &all, GetSysColorBrush(COLOR_WINDOW));
        NMLVCUSTOMDRAW drawn = {};
        drawn.nmcd.hdr.hwndFrom = list;
        drawn.nmcd.hdc = context;
        drawn.nmcd.dwItemSpec = 0;
        DrawWholeLabel(drawn, label);
    }
    int WidthOf(const std::wstring& label) const
    {
        SIZE size = {};
        GetTextExtentPoint32W(context, label.c_str(), static_cast<int>(label.size()), &size);
        return size.cx;
    }
    // The column of the last pixel that is not background.
    int End() const
    {
        const COLORREF background = GetSysColor(COLOR_WINDOW);
        for (int x = kWidth - 1; x >= 0; --x) {
            for (int y = 0; y < kHeight; ++y) {
                if (GetPixel(context, x, y) != background) return x;
            }
        }
        return -1;
    }

    HWND list = nullptr;
    HDC context = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ before = nullptr;
};

TEST_F(WholeLabel, IsDrawnToItsEnd)
{
    const std::wstring label(400, L'i');
    const int shownByList = WidthOf(label.substr(0, kMostShownByList));
    ASSERT_LT(WidthOf(label), kWidth - 20);
    Draw(label);
    EXPECT_GT(End(), shownByList + WidthOf(L"i") * 100);
    EXPECT_NEAR(WidthOf(label), End(), 10);
}

TEST_F(WholeLabel, TakesNoCharacterForAMnemonic)
{
    Draw(L"a & b");
    EXPECT_NEAR(WidthOf(L"a & b"), End(), 10);
}

}  // namespace
}  // namespace zelt::test
