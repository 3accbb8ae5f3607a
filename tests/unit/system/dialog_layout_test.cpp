// Where the controls of a resizable dialog go when its size changes.
#include "system/dialogs/dialog_layout.h"
#include "tests/unit/support/has_display.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <ostream>

namespace zelt::test {
namespace {

struct Corners {
    LONG left, top, right, bottom;

    bool operator==(const Corners&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Corners& corners)
{
    return out << corners.left << ' ' << corners.top << ' ' << corners.right << ' ' << corners.bottom;
}

// A window with a client area of 400 x 300 and one control from (30, 40) to (130, 90).
class Layout : public testing::Test {
protected:
    void SetUp() override
    {
        if (!HasDisplay()) GTEST_SKIP() << "needs a display";
        window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
        ASSERT_TRUE(window);
        ASSERT_TRUE(CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 30, 40, 100, 50, window,
                                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(kControl)), nullptr, nullptr));
    }
    void TearDown() override
    {
        if (window) DestroyWindow(window);
    }

    void Resize(int width, int height) const
    {
        SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    Corners Control() const
    {
        RECT rect;
        GetWindowRect(GetDlgItem(window, kControl), &rect);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
        return {rect.left, rect.top, rect.right, rect.bottom};
    }

    static constexpr int kControl = 7;
    HWND window = nullptr;
};

TEST_F(Layout, AControlKeepsItsDistanceFromTheEdgesThatItIsTiedTo)
{
    struct EdgesCase {
        unsigned edges;
        Corners larger, smaller;  // by 60 x 20, and by 10 x 30
    };
    const EdgesCase cases[] = {
        {kLeft | kTop, {30, 40, 130, 90}, {30, 40, 130, 90}},
        {kRight | kTop, {90, 40, 190, 90}, {20, 40, 120, 90}},
        {kLeft | kBottom, {30, 60, 130, 110}, {30, 10, 130, 60}},
        {kRight | kBottom, {90, 60, 190, 110}, {20, 10, 120, 60}},
        {kLeft | kRight | kTop, {30, 40, 190, 90}, {30, 40, 120, 90}},
        {kLeft | kRight | kBottom, {30, 60, 190, 110}, {30, 10, 120, 60}},
        {kLeft | kTop | kBottom, {30, 40, 130, 110}, {30, 40, 130, 60}},
        {kLeft | kTop | kRight | kBottom, {30, 40, 190, 110}, {30, 40, 120, 60}},
    };
    for (const EdgesCase& one : cases) {
        Resize(400, 300);
        MoveWindow(GetDlgItem(window, kControl), 30, 40, 100, 50, FALSE);
        const LayoutRow rows[] = {{kControl, one.edges}};
        DialogLayout layout;
        layout.Attach(window, rows);
        layout.Apply();
        EXPECT_EQ((Corners{30, 40, 130, 90}), Control()) << one.edges;
        Resize(460, 320);
        layout.Apply();
        EXPECT_EQ(one.larger, Control()) << one.edges;
        Resize(390, 270);
        layout.Apply();
        EXPECT_EQ(one.smaller, Control()) << one.edges;
    }
}

TEST_F(Layout, TheFirstSizeIsTheSmallest)
{
    DialogLayout layout;
    MINMAXINFO info = {};
    info.ptMinTrackSize = {1, 2};
    layout.Limit(info);
    EXPECT_EQ(1, info.ptMinTrackSize.x) << "nothing is known of the dialog yet";
    EXPECT_EQ(2, info.ptMinTrackSize.y);
    const LayoutRow rows[] = {{kControl, kLeft | kTop}};
    layout.Attach(window, rows);
    Resize(500, 500);
    layout.Limit(info);
    EXPECT_EQ(400, info.ptMinTrackSize.x);
    EXPECT_EQ(300, info.ptMinTrackSize.y);
}

}  // namespace
}  // namespace zelt::test
