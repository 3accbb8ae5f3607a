#include "shell/log_viewer/view_log_dialog.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "com/type_info.h"
#include "core/narrow.h"
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
    if (window) DestroyWindow(window);
}

bool CViewLogDlg::Open()
{
    CreateDialogParamW(com::ThisModule(), MAKEINTRESOURCEW(kDialogLogViewer), nullptr, Procedure,
                       reinterpret_cast<LPARAM>(this));
    if (!window) return false;
    loading = true;
    Load();
    loading = false;
    if (closed) {
        Close();
    } else {
        ShowWindow(window, SW_SHOWNORMAL);
    }
    return true;
}

void CViewLogDlg::RunMessages()
{
    const HACCEL accelerators = LoadAcceleratorsW(com::ThisModule(), MAKEINTRESOURCEW(kAccelerators));
    MSG message;
    while (!closed && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.hwnd == window || IsChild(window, message.hwnd)) {
            if (IsCopyKey(message)) {
                CopyLabel();
                continue;
            }
            if (TranslateAcceleratorW(window, accelerators, &message)) continue;
            if (IsDialogMessageW(window, &message)) continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

INT_PTR CALLBACK CViewLogDlg::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        auto* const viewer = reinterpret_cast<CViewLogDlg*>(lParam);
        viewer->window = window;
        viewer->Initialise();
        return TRUE;
    }
    auto* const viewer = reinterpret_cast<CViewLogDlg*>(GetWindowLongPtrW(window, DWLP_USER));
    return viewer ? viewer->Handle(message, wParam, lParam) : FALSE;
}

INT_PTR CViewLogDlg::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
        case WM_COMMAND: Command(LOWORD(wParam)); return TRUE;
        case WM_NOTIFY: return Notified(*reinterpret_cast<const NMHDR*>(lParam));
        case WM_CLOSE: Close(); return TRUE;
        case WM_TIMER: FillMore(); return TRUE;
        case WM_SIZE: Arrange(); return TRUE;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {Scaled(320), Scaled(240)};
            return TRUE;
        case WM_LBUTTONDOWN:
        case WM_MOUSEMOVE:
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED: return Drag(message, lParam);
        case WM_SETCURSOR: {
            POINT point;
            GetCursorPos(&point);
            ScreenToClient(window, &point);
            const RECT gap = Gap();
            if (LongTask::Running() || LOWORD(lParam) != HTCLIENT || !PtInRect(&gap, point)) return FALSE;
            SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
            return Answer(TRUE);
        }
        case WM_NCDESTROY:
            window = nullptr;
            closed = true;
            lock.Reset();
            return TRUE;
        default: return FALSE;
    }
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
            item.lParam = reinterpret_cast<LPARAM>(viewer.items.Handle(viewer.model.Errors()[row]));
        }
    }
    return result;
}

INT_PTR CViewLogDlg::Answer(LRESULT result) const
{
    SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
    return TRUE;
}

void CViewLogDlg::Initialise()
{
    tree = GetDlgItem(window, kLogTree);
    list = GetDlgItem(window, kErrorList);
    SetWindowTextW(window, (L"Log file " + FileName(path) + L":").c_str());
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
}

void CViewLogDlg::SetIcons() const
{
    const auto set = [this](WPARAM which, int width, int height) {
        const HANDLE icon = LoadImageW(com::ThisModule(), MAKEINTRESOURCEW(kIconApplication), IMAGE_ICON,
                                       GetSystemMetrics(width), GetSystemMetrics(height), LR_SHARED);
        SendMessageW(window, WM_SETICON, which, reinterpret_cast<LPARAM>(icon));
    };
    set(ICON_BIG, SM_CXICON, SM_CYICON);
    set(ICON_SMALL, SM_CXSMICON, SM_CYSMICON);
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
    ShowWindow(window, SW_HIDE);
    DestroyWindow(window);
}

INT_PTR CViewLogDlg::Notified(const NMHDR& header)
{
    if (header.hwndFrom == tree) {
        if (header.code == TVN_ITEMEXPANDINGW) {
            const auto& expanding = reinterpret_cast<const NMTREEVIEWW&>(header);
            if (expanding.action & TVE_EXPAND) items.FillChildren(static_cast<ItemIndex>(expanding.itemNew.lParam));
        }
        return FALSE;
    }
    if (header.hwndFrom == list) {
        if (header.code == LVN_GETDISPINFOW) {
            DrawErrorRow(const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header)));
        }
        if (header.code == LVN_ITEMCHANGED && !LongTask::Running()) {
            const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
            const auto row = static_cast<std::size_t>(change.iItem);
            const bool selected = (change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED);
            if (selected && change.iItem >= 0 && row < model.Errors().size()) Select(model.Errors()[row]);
        }
    }
    return FALSE;
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
    if (request.item.mask & LVIF_IMAGE) request.item.iImage = static_cast<int>(model.Image(item));
}

int CViewLogDlg::Scaled(int size) const { return MulDiv(size, static_cast<int>(GetDpiForWindow(window)), 96); }

RECT CViewLogDlg::Gap() const
{
    RECT client;
    GetClientRect(window, &client);
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
    GetClientRect(window, &client);
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
            SetCapture(window);
            return true;
        }
        case WM_MOUSEMOVE: {
            if (!dragging) return false;
            RECT client;
            GetClientRect(window, &client);
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

int CViewLogDlg::Box(const std::wstring& text, const wchar_t* caption, UINT flags) const
{
    return MessageBoxW(window, text.c_str(), caption, MB_OK | flags);
}

}  // namespace zelt
