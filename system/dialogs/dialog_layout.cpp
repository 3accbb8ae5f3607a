#include "system/dialogs/dialog_layout.h"

namespace zelt {

void DialogLayout::Attach(HWND window, std::span<const LayoutRow> rows)
{
    dialog = window;
    dpi = GetDpiForWindow(dialog);
    RECT whole, client;
    GetWindowRect(dialog, &whole);
    GetClientRect(dialog, &client);
    smallest = {whole.right - whole.left, whole.bottom - whole.top};
    for (const LayoutRow& row : rows) {
        Place place = {GetDlgItem(dialog, row.control), row.edges, {}, {}};
        RECT rect;
        GetWindowRect(place.control, &rect);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
        place.size = {rect.right - rect.left, rect.bottom - rect.top};
        place.distance = {rect.left, rect.top, client.right - rect.right, client.bottom - rect.bottom};
        places.push_back(place);
    }
}

int DialogLayout::Scaled(LONG length) const
{
    return MulDiv(length, static_cast<int>(GetDpiForWindow(dialog)), static_cast<int>(dpi));
}

void DialogLayout::Apply() const
{
    if (places.empty()) return;
    RECT client;
    GetClientRect(dialog, &client);
    HDWP moves = BeginDeferWindowPos(static_cast<int>(places.size()));
    for (const Place& place : places) {
        int left = Scaled(place.distance.left), top = Scaled(place.distance.top);
        int right = client.right - Scaled(place.distance.right), bottom = client.bottom - Scaled(place.distance.bottom);
        if (!(place.edges & kRight)) right = left + Scaled(place.size.cx);
        if (!(place.edges & kLeft)) left = right - Scaled(place.size.cx);
        if (!(place.edges & kBottom)) bottom = top + Scaled(place.size.cy);
        if (!(place.edges & kTop)) top = bottom - Scaled(place.size.cy);
        if (moves) {
            moves = DeferWindowPos(moves, place.control, nullptr, left, top, right - left, bottom - top,
                                   SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
    if (moves) EndDeferWindowPos(moves);
}

void DialogLayout::Limit(MINMAXINFO& info) const
{
    if (places.empty()) return;
    info.ptMinTrackSize = {Scaled(smallest.cx), Scaled(smallest.cy)};
}

}  // namespace zelt
