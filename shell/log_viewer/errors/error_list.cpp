#include "shell/log_viewer/errors/error_list.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "shell/log_viewer/errors/whole_label.h"
#include "shell/log_viewer/long_task.h"
#include "system/dialogs/dialog.h"
#include "system/narrow.h"

namespace zelt {
namespace {

enum Column { kLabel, kLine, kCall, kObject };

constexpr const wchar_t* kTitles[] = {L"Errors", L"Line", L"Call", L"Object"};
constexpr int kColumns = std::size(kTitles);
// The order on the screen. Labels come last, so that long ones can extend to the right.
constexpr int kOrder[kColumns] = {kLine, kCall, kObject, kLabel};
// The space beside a text in its column, and for an image, in pixels at 96 per inch.
constexpr int kPadding = 12, kImage = 16;

void InsertErrorColumn(HWND list, int number)
{
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_FMT | LVCF_SUBITEM;
    column.fmt = number == kLine ? LVCFMT_RIGHT : LVCFMT_LEFT;
    column.iSubItem = number;
    column.pszText = const_cast<wchar_t*>(kTitles[number]);
    ListView_InsertColumn(list, number, &column);
}

}  // namespace

void ErrorList::Attach(HWND listView, HIMAGELIST images)
{
    window = listView;
    if (images) {
        ListView_SetImageList(window, images, LVSIL_NORMAL);
        ListView_SetImageList(window, images, LVSIL_SMALL);
    }
    InsertErrorColumn(window, kLabel);
    ListView_SetExtendedListViewStyle(window, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER);
    SetWindowSubclass(window, Procedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

void ErrorList::SetCount(DWORD flags) const
{
    ListView_SetItemCountEx(window, static_cast<int>(filter.Count()), flags);
}

void ErrorList::FitColumn() const
{
    // The list view has no texts to measure, so the labels with the most bytes stand for the widest.
    constexpr std::size_t kMeasured = 16;
    RECT client;
    GetClientRect(window, &client);
    int width = client.right;
    if (hasDetails) {
        for (const int column : {kLine, kCall, kObject}) width -= ListView_GetColumnWidth(window, column);
    }
    for (const std::string& longest : model.LongestErrors(kMeasured)) {
        const std::wstring label = Widen(longest, CP_UTF8);
        width = std::max(width, ListView_GetStringWidth(window, label.c_str()) + dialog.Scaled(kImage + kPadding));
    }
    ListView_SetColumnWidth(window, kLabel, width);
}

void ErrorList::ShowDetails(bool wanted)
{
    if (wanted == hasDetails) return;
    hasDetails = wanted;
    for (const int column : {kLine, kCall, kObject}) {
        // When a column is deleted, the later ones move up, so the next one to delete is again at kLine.
        wanted ? InsertErrorColumn(window, column) : static_cast<void>(ListView_DeleteColumn(window, kLine));
    }
    if (wanted) {
        ListView_SetColumnOrderArray(window, kColumns, const_cast<int*>(kOrder));
        FitDetails();
    }
    FitColumn();
    InvalidateRect(window, nullptr, TRUE);
}

void ErrorList::FitDetails() const
{
    if (!hasDetails) return;
    constexpr std::size_t kMeasured = 64;
    const auto rows = static_cast<int>(std::min(kMeasured, filter.Count()));
    for (const int column : {kLine, kCall, kObject}) {
        int width = ListView_GetStringWidth(window, kTitles[column]);
        const auto measure = [&](int row) {
            width = std::max(width, ListView_GetStringWidth(window, Text(row, column).c_str()));
        };
        for (int row = 0; row < rows; ++row) measure(row);
        // The last line has the most digits.
        if (rows > 0) measure(static_cast<int>(filter.Count()) - 1);
        ListView_SetColumnWidth(window, column, width + dialog.Scaled(kPadding));
    }
}

bool ErrorList::Filter(const std::wstring& text)
{
    bool complete = true;
    if (!text.empty() || filter.IsActive()) {
        LongTask task(dialog.Window());
        filter.Choose(Narrow(text, CP_UTF8), task);
        complete = !task.Cancelled();
    }
    // The rows now show other errors.
    ListView_SetItemState(window, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    SetCount(0);
    return complete;
}

ItemIndex ErrorList::ItemOf(int row) const
{
    const auto place = static_cast<std::size_t>(row);
    return row >= 0 && place < filter.Count() ? model.Error(filter.Error(place)) : kNoItem;
}

ItemIndex ErrorList::Selected() const { return ItemOf(ListView_GetNextItem(window, -1, LVNI_SELECTED)); }

void ErrorList::Select(std::size_t row) const
{
    constexpr UINT kSelected = LVIS_SELECTED | LVIS_FOCUSED;
    ListView_SetItemState(window, static_cast<int>(row), kSelected, kSelected);
    ListView_EnsureVisible(window, static_cast<int>(row), FALSE);
}

bool ErrorList::OnNotify(const NMHDR& header, LRESULT& result, const std::function<void(ItemIndex)>& chosen)
{
    if (header.code == LVN_GETDISPINFOW) {
        Draw(const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header)));
    }
    if (header.code == NM_CUSTOMDRAW) {
        result = DrawLongLabel(reinterpret_cast<const NMLVCUSTOMDRAW&>(header));
        return true;
    }
    if (header.code == LVN_ITEMCHANGED) {
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
        if ((change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED)) chosen(ItemOf(change.iItem));
    }
    // The row may be selected already, while the tree now shows another item.
    if (header.code == NM_CLICK) chosen(ItemOf(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem));
    return false;
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

// The row must exist.
std::wstring ErrorList::Text(int row, int column) const
{
    const std::size_t error = filter.Error(static_cast<std::size_t>(row));
    if (column == kLine) {
        const int line = model.ErrorLine(error);
        return line > 0 ? std::to_wstring(line) : std::wstring();
    }
    const ItemIndex item = model.Error(error);
    if (column == kLabel) return Widen(model.Label(item), CP_UTF8);
    const ItemIndex call = model.CallAround(item);
    if (call == kNoItem) return {};
    const CallLabel label = SplitCallLabel(model.Label(call));
    return Widen(column == kCall ? label.name : label.object, CP_UTF8);
}

void ErrorList::Draw(NMLVDISPINFOW& request)
{
    const ItemIndex item = ItemOf(request.item.iItem);
    if (item == kNoItem) return;
    if (request.item.mask & LVIF_TEXT) {
        shown = Text(request.item.iItem, request.item.iSubItem);
        request.item.pszText = shown.data();
    }
    if (request.item.mask & LVIF_IMAGE) request.item.iImage = model.Image(item);
}

LRESULT ErrorList::DrawLongLabel(const NMLVCUSTOMDRAW& drawing) const
{
    const auto row = static_cast<int>(drawing.nmcd.dwItemSpec);
    switch (drawing.nmcd.dwDrawStage) {
        case CDDS_PREPAINT: return CDRF_NOTIFYITEMDRAW;
        case CDDS_ITEMPREPAINT: {
            const ItemIndex item = ItemOf(row);
            const bool isLong = item != kNoItem && model.Label(item).size() > kMostShownByList;
            return isLong ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT;
        }
        case CDDS_ITEMPOSTPAINT: DrawWholeLabel(drawing, Text(row, kLabel)); return CDRF_DODEFAULT;
        default: return CDRF_DODEFAULT;
    }
}

}  // namespace zelt
