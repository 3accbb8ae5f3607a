#include "shell/log_viewer/splitter.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "system/dialogs/dialog.h"

namespace zelt {
namespace {

constexpr int kMargin = 6;
constexpr int kGap = 6;

// The limits of the upper window's share of the height.
constexpr double kLeastUpper = 0.15, kMostUpper = 0.9;

}  // namespace

void Splitter::Attach(HWND upperWindow, HWND lowerWindow)
{
    upper = upperWindow;
    lower = lowerWindow;
}

int Splitter::Height() const
{
    RECT client;
    GetClientRect(dialog.Window(), &client);
    return client.bottom - 2 * dialog.Scaled(kMargin) - dialog.Scaled(kGap);
}

RECT Splitter::Gap() const
{
    RECT client;
    GetClientRect(dialog.Window(), &client);
    const int margin = dialog.Scaled(kMargin);
    const int top = margin + static_cast<int>(std::max(0, Height()) * share);
    return {margin, top, std::max<LONG>(margin, client.right - margin), top + dialog.Scaled(kGap)};
}

RECT Splitter::Free() const
{
    RECT free = Gap();
    free.top = free.bottom;
    free.bottom += kept;
    return free;
}

void Splitter::Arrange() const
{
    if (!upper) return;
    RECT client;
    GetClientRect(dialog.Window(), &client);
    const int margin = dialog.Scaled(kMargin);
    const RECT gap = Gap();
    const int width = gap.right - gap.left;
    const int top = gap.bottom + kept;
    const int below = std::max(0, static_cast<int>(client.bottom) - margin - top);
    constexpr UINT kInPlace = SWP_NOZORDER | SWP_NOACTIVATE;
    HDWP moves = BeginDeferWindowPos(2);
    if (moves) moves = DeferWindowPos(moves, upper, nullptr, margin, margin, width, gap.top - margin, kInPlace);
    if (moves) moves = DeferWindowPos(moves, lower, nullptr, margin, top, width, below, kInPlace);
    if (moves) EndDeferWindowPos(moves);
}

bool Splitter::IsUnderMouse() const
{
    POINT point;
    GetCursorPos(&point);
    ScreenToClient(dialog.Window(), &point);
    const RECT gap = Gap();
    return PtInRect(&gap, point);
}

bool Splitter::Drag(UINT message, LPARAM position)
{
    switch (message) {
        case WM_LBUTTONDOWN: {
            const POINT point = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
            const RECT gap = Gap();
            if (!PtInRect(&gap, point)) return false;
            dragging = true;
            SetCapture(dialog.Window());
            return true;
        }
        case WM_MOUSEMOVE: {
            if (!dragging) return false;
            const int height = Height();
            const double place = GET_Y_LPARAM(position) - dialog.Scaled(kMargin);
            if (height > 0) share = std::clamp(place / height, kLeastUpper, kMostUpper);
            Arrange();
            return true;
        }
        default:
            if (!std::exchange(dragging, false)) return false;
            if (message == WM_LBUTTONUP) ReleaseCapture();
            return true;
    }
}

}  // namespace zelt
