#include "bench/viewer/floors.h"

#include <stdexcept>

#include "bench/rows.h"
#include "com/type_info.h"
#include "system/narrow.h"
#include "res/resource.h"
#include "shell/log_viewer/background_reader.h"

namespace zelt::bench {
namespace {

class ItemCollector final : public RowSink {
public:
    explicit ItemCollector(std::vector<BareItem>& items) : items(items) {}
    void Row(const TreeRow& row) override
    {
        items.push_back({row.depth, row.image, row.hasChildren, Widen(row.label, CP_UTF8)});
    }
    void ParseError(int) override {}
    bool Continue() override { return true; }

private:
    std::vector<BareItem>& items;
};

INT_PTR CALLBACK Ignore(HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG; }

}  // namespace

std::vector<BareItem> ItemsOf(const std::wstring& path)
{
    std::vector<BareItem> items;
    SharedLogFile file;
    if (file.Open(path)) throw std::runtime_error("the log cannot be opened");
    ItemCollector collector(items);
    ReadRows(file, collector);
    return items;
}

double InsertBare(const std::vector<BareItem>& items)
{
    const HWND dialog = CreateDialogParamW(com::ThisModule(), MAKEINTRESOURCEW(kDialogLogViewer), nullptr, Ignore, 0);
    const HWND tree = GetDlgItem(dialog, kLogTree);
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    const Stopwatch watch;
    std::vector<HTREEITEM> open;
    for (const BareItem& item : items) {
        const auto depth = static_cast<std::size_t>(item.depth);
        open.resize(depth + 1);
        TVINSERTSTRUCTW record = {};
        record.hParent = depth ? open[depth - 1] : TVI_ROOT;
        record.hInsertAfter = TVI_LAST;
        record.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_CHILDREN;
        record.item.pszText = const_cast<wchar_t*>(item.label.c_str());
        record.item.iImage = record.item.iSelectedImage = item.image;
        record.item.cChildren = item.hasChildren;
        open[depth] = TreeView_InsertItem(tree, &record);
    }
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
    const double seconds = watch.Seconds();
    DestroyWindow(dialog);
    return seconds;
}

}  // namespace zelt::bench
