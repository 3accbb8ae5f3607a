// How CViewLogDlg loads its log.
#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <optional>

#include "system/exception_text.h"
#include "system/narrow.h"
#include "system/system_text.h"
#include "res/resource.h"
#include "shell/log_viewer/background_reader.h"
#include "shell/log_viewer/file_progress_dialog.h"
#include "shell/log_viewer/long_task.h"
#include "shell/log_viewer/shared_log_file.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace zelt {
namespace {

// A log of more bytes shows how far it has been read.
constexpr long long kLengthWithProgress = 50000;
constexpr UINT_PTR kFillTimer = 1;

// What a log is read into: the model, and the tree as long as the log promises to be in it whole.
class ViewerSink final : public RowSink {
public:
    ViewerSink(LogModel& model, LogTree& tree, const SharedLogFile& file, CFileProgressDialog* progress,
               const bool& closed, std::function<void(int)> report)
        : model(model),
          tree(tree),
          length(file.Size()),
          progress(progress),
          closed(closed),
          report(std::move(report)),
          position(file.Size())
    {}

    long long& Position() { return position; }

    void Row(const LogRow& row) override
    {
        const ItemIndex index = model.Add(row);
        if (index + 1 == nextEstimate) Estimate(index + 1);
        if (filling) tree.FillUpTo(index, row.hasChildren);
    }
    void ParseError(int line) override { report(line); }
    bool Continue() override
    {
        return !progress || (progress->Advance([this] { return static_cast<double>(position) / length; }) && !closed);
    }

private:
    // The file has at most as many items as its beginning lets expect. Where that is too many, more of the file may tell
    // better; a promise that is broken ends at the limit.
    void Estimate(ItemIndex items)
    {
        // The whole of a short file is read at once.
        const double read =
            position < length ? static_cast<double>(position - kReadAhead) : std::min<double>(length, kReadAhead);
        filling = items < LogTree::kFilledItems && items * length <= LogTree::kFilledItems * read;
        nextEstimate = filling ? LogTree::kFilledItems : items * 2;
    }

    LogModel& model;
    LogTree& tree;
    const double length;
    CFileProgressDialog* const progress;
    const bool& closed;
    const std::function<void(int)> report;
    // How far the file had been read when the last item was.
    long long position;
    bool filling = false;
    ItemIndex nextEstimate = 1024;
};

}  // namespace

void CViewLogDlg::Load()
{
    SharedLogFile file;
    if (const DWORD error = file.Open(path)) {
        ShowBox(L"Failed to open \"" + path + L"\" for reading: " + Widen(SystemText(static_cast<HRESULT>(error))),
                L"File error:", MB_ICONERROR);
        SetIcons(kIconApplication);
        return;
    }
    std::optional<LogTree::Unpainted> unpainted(items);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    std::unique_ptr<CFileProgressDialog> progress;
    if (file.Size() > kLengthWithProgress) progress = std::make_unique<CFileProgressDialog>(Window());

    try {
        ViewerSink sink(model, items, file, progress.get(), closed, [this](int line) { ReportParseError(line); });
        switch (progress ? ReadRowsInBackground(file, sink, sink.Position()) : ReadRows(file, sink)) {
            case LogReadResult::NotReadable:
                ShowBox(L"Failed to open file for reading", L"Error:", MB_ICONERROR);
                break;
            case LogReadResult::Incomplete:
                ShowBox(L"XML parse error in \"" + path + L"\"", L"Parse Error:", MB_ICONERROR);
                break;
            default: break;
        }
    } catch (const std::bad_alloc&) {
        ShowBox(L"The log is larger than the memory for it. Its beginning is shown.", L"Error:", MB_ICONWARNING);
    } catch (...) {
        ShowBox(L"Reading the log failed: " + TextOfException(), L"Error:", MB_ICONERROR);
    }
    model.Finish();
    items.Fill();

    progress.reset();
    ListView_SetItemCountEx(list, static_cast<int>(model.Errors().size()), LVSICF_NOINVALIDATEALL);
    unpainted.reset();
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    FitErrorColumn();
    SetIcons(kIconApplication);
    if (!items.HasAllOutermost()) BeginFilling();
}

void CViewLogDlg::BeginFilling()
{
    SetWindowLongPtrW(tree, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    treeProcedure =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(tree, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TreeProcedure)));
    SetTimer(Window(), kFillTimer, USER_TIMER_MINIMUM, nullptr);
}

LRESULT CALLBACK CViewLogDlg::TreeProcedure(HWND tree, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto& viewer = *reinterpret_cast<CViewLogDlg*>(GetWindowLongPtrW(tree, GWLP_USERDATA));
    const WNDPROC own = viewer.treeProcedure;
    viewer.Guarded([&] { viewer.PrepareTreeFor(message, wParam, lParam); });
    return CallWindowProcW(own, tree, message, wParam, lParam);
}

void CViewLogDlg::FillMore()
{
    // What runs has the tree for itself.
    if (LongTask::Running()) return;
    if (!items.HasAllOutermost()) items.FillSomeOutermost();
    if (!items.HasAllOutermost()) return;
    KillTimer(Window(), kFillTimer);
    SetWindowLongPtrW(tree, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(treeProcedure));
}

// Asked before the tree view acts on a message: to whoever goes to its end, it has the end.
void CViewLogDlg::PrepareTreeFor(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (items.HasAllOutermost() || LongTask::Running()) return;
    const bool next = message == TVM_GETNEXTITEM && (wParam == TVGN_NEXT || wParam == TVGN_NEXTVISIBLE);
    if (next && items.IsLastSoFar(reinterpret_cast<HTREEITEM>(lParam))) items.FillSomeOutermost();
    const bool end = (message == WM_KEYDOWN && wParam == VK_END) ||
                     (message == WM_VSCROLL && LOWORD(wParam) == SB_BOTTOM) ||
                     (message == TVM_GETNEXTITEM && wParam == TVGN_LASTVISIBLE);
    if (!end) return;
    LongTask task(Window());
    items.FillAllOutermost(task);
}

void CViewLogDlg::ReportParseError(int line) const
{
    ShowBox(L"Parse error in \"" + path + L"\", line " + std::to_wstring(line), L"Parse error:", MB_ICONERROR);
}

void CViewLogDlg::FitErrorColumn() const
{
    // The list holds no rows of its own to measure. The longest labels in bytes stand for the widest.
    constexpr std::size_t kMeasured = 16;
    std::vector<ItemIndex> longest(std::min(kMeasured, model.Errors().size()));
    std::partial_sort_copy(model.Errors().begin(), model.Errors().end(), longest.begin(), longest.end(),
                           [this](ItemIndex a, ItemIndex b) { return model.Label(a).size() > model.Label(b).size(); });
    RECT client;
    GetClientRect(list, &client);
    int width = client.right;
    for (const ItemIndex item : longest) {
        const std::wstring label = Widen(model.Label(item), CP_UTF8);
        width = std::max(width, ListView_GetStringWidth(list, label.c_str()) + Scaled(16 + 12));
    }
    ListView_SetColumnWidth(list, 0, width);
}

}  // namespace zelt
