#include "shell/log_viewer/error_list.h"

#include <algorithm>
#include <vector>

#include "system/dialogs/dialog.h"
#include "system/narrow.h"

namespace zelt {

void ErrorList::Attach(HWND listView, HIMAGELIST images)
{
    window = listView;
    if (images) {
        ListView_SetImageList(window, images, LVSIL_NORMAL);
        ListView_SetImageList(window, images, LVSIL_SMALL);
    }
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    wchar_t title[] = L"Errors";
    column.pszText = title;
    ListView_InsertColumn(window, 0, &column);
    ListView_SetExtendedListViewStyle(window, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER);
    SetWindowSubclass(window, Procedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

void ErrorList::SetCount(DWORD flags) const
{
    ListView_SetItemCountEx(window, static_cast<int>(model.ErrorCount()), flags);
}

void ErrorList::FitColumn() const
{
    // The list holds no rows of its own to measure, so the labels with the most bytes stand for the widest.
    constexpr std::size_t kMeasured = 16;
    RECT client;
    GetClientRect(window, &client);
    int width = client.right;
    for (const std::string& longest : model.LongestErrors(kMeasured)) {
        const std::wstring label = Widen(longest, CP_UTF8);
        width = std::max(width, ListView_GetStringWidth(window, label.c_str()) + dialog.Scaled(16 + 12));
    }
    ListView_SetColumnWidth(window, 0, width);
}

ItemIndex ErrorList::ItemOf(int row) const
{
    const auto place = static_cast<std::size_t>(row);
    return row >= 0 && place < model.ErrorCount() ? model.Error(place) : kNoItem;
}

ItemIndex ErrorList::Selected() const { return ItemOf(ListView_GetNextItem(window, -1, LVNI_SELECTED)); }

void ErrorList::Select(std::size_t row) const
{
    constexpr UINT kSelected = LVIS_SELECTED | LVIS_FOCUSED;
    ListView_SetItemState(window, static_cast<int>(row), kSelected, kSelected);
    ListView_EnsureVisible(window, static_cast<int>(row), FALSE);
}

void ErrorList::OnNotify(const NMHDR& header, const std::function<void(ItemIndex)>& chosen)
{
    if (header.code == LVN_GETDISPINFOW) {
        Draw(const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header)));
    }
    if (header.code == LVN_ITEMCHANGED) {
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
        if ((change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED)) chosen(ItemOf(change.iItem));
    }
    // The row may be selected already, while the tree now shows another item.
    if (header.code == NM_CLICK) chosen(ItemOf(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem));
}

LRESULT CALLBACK ErrorList::Procedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR errorList)
{
    const LRESULT result = DefSubclassProc(list, message, wParam, lParam);
    if (message == LVM_GETITEMW || message == LVM_GETITEMA) {
        auto& self = *reinterpret_cast<ErrorList*>(errorList);
        // Both forms of the structure begin the same way.
        auto& item = *reinterpret_cast<LVITEMW*>(lParam);
        const ItemIndex shown = self.ItemOf(item.iItem);
        if ((item.mask & LVIF_PARAM) && shown != kNoItem) {
            self.dialog.Guarded([&] { item.lParam = reinterpret_cast<LPARAM>(self.tree.Handle(shown)); });
        }
    }
    return result;
}

void ErrorList::Draw(NMLVDISPINFOW& request)
{
    const ItemIndex item = ItemOf(request.item.iItem);
    if (item == kNoItem) return;
    if (request.item.mask & LVIF_TEXT) {
        shown = Widen(model.Label(item), CP_UTF8);
        request.item.pszText = shown.data();
    }
    if (request.item.mask & LVIF_IMAGE) request.item.iImage = model.Image(item);
}

}  // namespace zelt
