#include "shell/main_window/package_list_view.h"

#include "shell/package_images.h"

namespace zelt {
namespace {

enum Column : int { kNameColumn, kTypeColumn, kColumns };

constexpr const wchar_t* kTitles[kColumns] = {L"Package", L"Type"};

void InsertColumn(HWND list, int index)
{
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = const_cast<wchar_t*>(kTitles[index]);
    column.iSubItem = index;
    ListView_InsertColumn(list, index, &column);
}

bool IsChecked(UINT state) { return ((state & LVIS_STATEIMAGEMASK) >> 12) == 2; }

}  // namespace

void PackageListView::Attach(HWND listView, HIMAGELIST images)
{
    list = listView;
    for (int column = 0; column < kColumns; ++column) InsertColumn(list, column);
    constexpr DWORD kStyle = LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
    ListView_SetExtendedListViewStyleEx(list, kStyle, kStyle);
    ListView_SetImageList(list, images, LVSIL_NORMAL);
    ListView_SetImageList(list, images, LVSIL_SMALL);
}

void PackageListView::Fill(const ExportedPackageList& packages)
{
    ready = false;
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    ListView_DeleteAllItems(list);
    for (std::size_t index = 0; index < packages.Count(); ++index) {
        const ExportedPackage& package = packages.At(index);
        LVITEMW item = {};
        item.mask = LVIF_TEXT | LVIF_IMAGE;
        item.iItem = static_cast<int>(index);
        item.pszText = const_cast<wchar_t*>(package.exportedName.c_str());
        item.iImage = ImageOfPackage(package.kind);
        const int row = ListView_InsertItem(list, &item);
        ListView_SetItemText(list, row, kTypeColumn, const_cast<wchar_t*>(PackageType(package.kind)));
        ListView_SetCheckState(list, row, package.loggingEnabled);
    }
    FitColumns();
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
    ready = true;
}

void PackageListView::FitColumns()
{
    for (int column = 0; column < kColumns; ++column) {
        ListView_SetColumnWidth(list, column, LVSCW_AUTOSIZE_USEHEADER);
        // Not every version of the list view leaves room for the header's margins.
        const int header = ListView_GetStringWidth(list, kTitles[column]) + 3 * GetSystemMetrics(SM_CXSMICON) / 2;
        if (ListView_GetColumnWidth(list, column) < header) ListView_SetColumnWidth(list, column, header);
    }
}

std::optional<std::size_t> PackageListView::Selected() const
{
    const int row = ListView_GetNextItem(list, -1, LVNI_SELECTED);
    if (row < 0) return {};
    return static_cast<std::size_t>(row);
}

void PackageListView::Select(std::size_t row)
{
    constexpr UINT kSelected = LVIS_SELECTED | LVIS_FOCUSED;
    ListView_SetItemState(list, static_cast<int>(row), kSelected, kSelected);
    ListView_EnsureVisible(list, static_cast<int>(row), FALSE);
}

std::optional<PackageListView::CheckChange> PackageListView::ChangedCheck(const NMLISTVIEW& change) const
{
    if (!ready || change.iItem < 0 || !(change.uChanged & LVIF_STATE)) return {};
    if (!((change.uNewState ^ change.uOldState) & LVIS_STATEIMAGEMASK)) return {};
    return CheckChange{static_cast<std::size_t>(change.iItem), IsChecked(change.uNewState)};
}

}  // namespace zelt
