#include "shell/log_viewer/view_log_dialog.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "com/type_info.h"
#include "system/narrow.h"
#include "res/resource.h"
#include "shell/log_viewer/long_task.h"
#include "shell/module.h"

namespace zelt {
namespace {

constexpr int kMargin = 6;
constexpr int kGap = 6;

std::wstring FileName(const std::wstring& path)
{
    const auto slash = path.rfind(L'\\');
    return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

}  // namespace

CViewLogDlg::CViewLogDlg(std::wstring logPath, Lock processLock)
    : path(std::move(logPath)), lock(std::move(processLock))
{}

CViewLogDlg::~CViewLogDlg()
{
    if (Window()) DestroyWindow(Window());
}

bool CViewLogDlg::Open()
{
    if (!CreateModeless(kDialogLogViewer)) return false;
    loading = true;
    Load();
    loading = false;
    if (closed) {
        Close();
    } else {
        ShowWindow(Window(), SW_SHOWNORMAL);
    }
    return true;
}

void CViewLogDlg::RunMessages()
{
    const HACCEL accelerators = LoadAcceleratorsW(com::ThisModule(), MAKEINTRESOURCEW(kAccelerators));
    MSG message;
    while (!closed && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.hwnd == Window() || IsChild(Window(), message.hwnd)) {
            if (IsCopyKey(message)) {
                Guarded([this] { CopyLabel(); });
                continue;
            }
            if (TranslateAcceleratorW(Window(), accelerators, &message)) continue;
            if (IsDialogMessageW(Window(), &message)) continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool CViewLogDlg::OnCommand(int id, int)
{
    Command(id);
    return true;
}

void CViewLogDlg::OnMinMaxInfo(MINMAXINFO& info) { info.ptMinTrackSize = {Scaled(320), Scaled(240)}; }

void CViewLogDlg::OnDestroyed()
{
    closed = true;
    lock.Reset();
}

bool CViewLogDlg::OnOther(UINT message, WPARAM, LPARAM lParam)
{
    switch (message) {
        case WM_CLOSE: Close(); return true;
        case WM_TIMER: FillMore(); return true;
        case WM_LBUTTONDOWN:
        case WM_MOUSEMOVE:
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED: return Drag(message, lParam);
        case WM_SETCURSOR:
            if (LOWORD(lParam) != HTCLIENT || !ShowsGapCursor()) return false;
            SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
            return Answer(TRUE);
        default: return false;
    }
}

bool CViewLogDlg::ShowsGapCursor() const
{
    POINT point;
    GetCursorPos(&point);
    ScreenToClient(Window(), &point);
    const RECT gap = Gap();
    return !LongTask::Running() && PtInRect(&gap, point);
}

LRESULT CALLBACK CViewLogDlg::ListProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                            DWORD_PTR dialog)
{
    const LRESULT result = DefSubclassProc(list, message, wParam, lParam);
    if (message == LVM_GETITEMW || message == LVM_GETITEMA) {
        auto& viewer = *reinterpret_cast<CViewLogDlg*>(dialog);
        // Both forms of the structure begin alike.
        auto& item = *reinterpret_cast<LVITEMW*>(lParam);
        const auto row = static_cast<std::size_t>(item.iItem);
        if ((item.mask & LVIF_PARAM) && row < viewer.model.Errors().size()) {
            viewer.Guarded(
                [&] { item.lParam = reinterpret_cast<LPARAM>(viewer.items.Handle(viewer.model.Errors()[row])); });
        }
    }
    return result;
}

bool CViewLogDlg::OnInit()
{
    tree = Item(kLogTree);
    list = Item(kErrorList);
    SetWindowTextW(Window(), (L"Log file " + FileName(path) + L":").c_str());
    if (const CZELTModule* module = CZELTModule::Instance()) {
        TreeView_SetImageList(tree, module->SmallImages(), TVSIL_NORMAL);
        ListView_SetImageList(list, module->SmallImages(), LVSIL_NORMAL);
        ListView_SetImageList(list, module->SmallImages(), LVSIL_SMALL);
    }
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    wchar_t title[] = L"Errors";
    column.pszText = title;
    ListView_InsertColumn(list, 0, &column);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER);
    SetWindowSubclass(list, ListProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
    items.Attach(tree, model);
    Arrange();
    return true;
}

void CViewLogDlg::Close()
{
    // What runs further down the stack ends first and closes the window then.
    LongTask* const task = LongTask::Running();
    if (task) task->Cancel();
    if (task || loading) {
        closed = true;
        return;
    }
    // Emptying a large tree takes its time, which nobody need watch.
    ShowWindow(Window(), SW_HIDE);
    DestroyWindow(Window());
}

bool CViewLogDlg::OnNotify(const NMHDR& header, LRESULT&)
{
    if (header.hwndFrom == tree) {
        if (header.code == TVN_ITEMEXPANDINGW) {
            const auto& expanding = reinterpret_cast<const NMTREEVIEWW&>(header);
            if (expanding.action & TVE_EXPAND) items.FillChildren(static_cast<ItemIndex>(expanding.itemNew.lParam));
        }
        return false;
    }
    if (header.hwndFrom == list) {
        if (header.code == LVN_GETDISPINFOW) {
            DrawErrorRow(const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header)));
        }
        if (header.code == LVN_ITEMCHANGED) {
            const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
            if ((change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED)) SelectError(change.iItem);
        }
        // The row that is selected already: the tree may have gone elsewhere since.
        if (header.code == NM_CLICK) SelectError(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem);
    }
    return false;
}

void CViewLogDlg::SelectError(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= model.Errors().size() || LongTask::Running()) return;
    Select(model.Errors()[static_cast<std::size_t>(row)]);
}

void CViewLogDlg::DrawErrorRow(NMLVDISPINFOW& request)
{
    const auto row = static_cast<std::size_t>(request.item.iItem);
    if (row >= model.Errors().size()) return;
    const ItemIndex item = model.Errors()[row];
    if (request.item.mask & LVIF_TEXT) {
        shownError = Widen(model.Label(item), CP_UTF8);
        request.item.pszText = shownError.data();
    }
    if (request.item.mask & LVIF_IMAGE) request.item.iImage = model.Image(item);
}

RECT CViewLogDlg::Gap() const
{
    RECT client;
    GetClientRect(Window(), &client);
    const int margin = Scaled(kMargin);
    const int gap = Scaled(kGap);
    const int height = std::max(0, static_cast<int>(client.bottom) - 2 * margin - gap);
    const int top = margin + static_cast<int>(height * share);
    return {margin, top, std::max<LONG>(margin, client.right - margin), top + gap};
}

void CViewLogDlg::Arrange() const
{
    if (!tree) return;
    RECT client;
    GetClientRect(Window(), &client);
    const int margin = Scaled(kMargin);
    const RECT gap = Gap();
    const int width = gap.right - gap.left;
    const HDWP moves = BeginDeferWindowPos(2);
    DeferWindowPos(moves, tree, nullptr, margin, margin, width, gap.top - margin, SWP_NOZORDER | SWP_NOACTIVATE);
    DeferWindowPos(moves, list, nullptr, margin, gap.bottom, width,
                   std::max(0, static_cast<int>(client.bottom - margin - gap.bottom)), SWP_NOZORDER | SWP_NOACTIVATE);
    EndDeferWindowPos(moves);
    FitErrorColumn();
}

bool CViewLogDlg::Drag(UINT message, LPARAM position)
{
    const RECT gap = Gap();
    switch (message) {
        case WM_LBUTTONDOWN: {
            const POINT point = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
            if (!PtInRect(&gap, point)) return false;
            dragging = true;
            SetCapture(Window());
            return true;
        }
        case WM_MOUSEMOVE: {
            if (!dragging) return false;
            RECT client;
            GetClientRect(Window(), &client);
            const int height = client.bottom - 2 * Scaled(kMargin) - Scaled(kGap);
            if (height > 0)
                share =
                    std::clamp<double>(GET_Y_LPARAM(position) - Scaled(kMargin), 0.15 * height, 0.9 * height) / height;
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
