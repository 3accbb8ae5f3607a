#include "shell/log_viewer/errors/whole_label.h"

namespace zelt {
namespace {

// Pixels between the edge of a cell and its text, as in the list view.
constexpr int kMargin = 2;

}  // namespace

void DrawWholeLabel(const NMLVCUSTOMDRAW& drawn, const std::wstring& label)
{
    const HWND list = drawn.nmcd.hdr.hwndFrom;
    const auto row = static_cast<int>(drawn.nmcd.dwItemSpec);
    RECT place;
    if (!ListView_GetSubItemRect(list, row, 0, LVIR_LABEL, &place)) return;
    const bool isSelected = ListView_GetItemState(list, row, LVIS_SELECTED) != 0;
    const bool isActive = isSelected && GetFocus() == list;
    const int back = isActive ? COLOR_HIGHLIGHT : isSelected ? COLOR_BTNFACE : COLOR_WINDOW;
    const int front = isActive ? COLOR_HIGHLIGHTTEXT : isSelected ? COLOR_BTNTEXT : COLOR_WINDOWTEXT;
    const HDC context = drawn.nmcd.hdc;
    FillRect(context, &place, GetSysColorBrush(back));
    SetTextColor(context, GetSysColor(front));
    SetBkMode(context, TRANSPARENT);
    place.left += kMargin;
    place.right -= kMargin;
    DrawTextW(context, label.c_str(), static_cast<int>(label.size()), &place,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

}  // namespace zelt
