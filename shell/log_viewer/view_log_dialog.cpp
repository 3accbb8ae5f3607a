#include "shell/log_viewer/view_log_dialog.h"

#include <utility>

#include "com/type_info.h"
#include "res/resource.h"
#include "shell/log_viewer/errors/details_setting.h"
#include "shell/log_viewer/log_loader.h"
#include "shell/log_viewer/long_task.h"
#include "shell/module.h"

namespace zelt {
namespace {

constexpr UINT kFilterPause = 300;  // milliseconds

std::wstring FileName(const std::wstring& path)
{
    const auto slash = path.rfind(L'\\');
    return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

}  // namespace

CViewLogDlg::CViewLogDlg(std::wstring logPath, Lock processLock)
    : path(std::move(logPath)),
      lock(std::move(processLock)),
      accelerators(LoadAcceleratorsW(com::ThisModule(), MAKEINTRESOURCEW(kAccelerators)))
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
        return true;
    }
    ShowWindow(Window(), SW_SHOWNORMAL);
    errorList.FitDetails();
    for (const int command : waiting) PostMessageW(Window(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    return true;
}

void CViewLogDlg::RunMessages()
{
    MSG message;
    while (!closed && GetMessageW(&message, nullptr, 0, 0) > 0) Handle(message);
}

void CViewLogDlg::Handle(MSG& message)
{
    if (message.hwnd == Window() || IsChild(Window(), message.hwnd)) {
        if (IsCopyKey(message)) {
            Guarded([this] { CopyLabel(); });
            return;
        }
        if (EmptiesFilter(message)) {
            filterBar.Clear();
            return;
        }
        if (!IsForFilter(message) && TranslateAcceleratorW(Window(), accelerators, &message)) return;
        if (IsDialogMessageW(Window(), &message)) return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

bool CViewLogDlg::OnCommand(int id, int notification)
{
    if (id != kErrorFilter) {
        Command(id);
    } else if (notification == EN_CHANGE) {
        // The filter follows when the user pauses.
        if (LongTask::Running()) LongTask::Running()->Cancel();
        SetTimer(Window(), kFilterTimer, kFilterPause, nullptr);
    }
    return true;
}

void CViewLogDlg::OnMinMaxInfo(MINMAXINFO& info) { info.ptMinTrackSize = {Scaled(320), Scaled(240)}; }

void CViewLogDlg::OnDestroyed()
{
    closed = true;
    lock.Reset();
}

bool CViewLogDlg::OnOther(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
        case WM_CLOSE: Close(); return true;
        case WM_TIMER: wParam == kFilterTimer ? FilterErrors() : filling.FillMore(); return true;
        case WM_LBUTTONDOWN:
        case WM_MOUSEMOVE:
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED:
            if (!splitter.Drag(message, lParam)) return false;
            filterBar.Place(splitter.Free());
            errorList.FitColumn();
            return true;
        case WM_SETCURSOR:
            if (LOWORD(lParam) != HTCLIENT || LongTask::Running() || !splitter.IsUnderMouse()) return false;
            SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
            return Answer(TRUE);
        default: return false;
    }
}

bool CViewLogDlg::OnInit()
{
    treeView = Item(kLogTree);
    SetWindowTextW(Window(), (L"Log file " + FileName(path) + L":").c_str());
    const CZELTModule* module = CZELTModule::Instance();
    const HIMAGELIST images = module ? module->SmallImages() : nullptr;
    if (images) TreeView_SetImageList(treeView, images, TVSIL_NORMAL);
    tree.Attach(treeView, model);
    errorList.Attach(Item(kErrorList), images);
    filterBar.Attach(Item(kErrorFilterLabel), Item(kErrorFilter), Item(kErrorFilterCount));
    splitter.Attach(treeView, errorList.Window());
    WantsErrorDetails() ? ShowErrorDetails(true) : Arrange();
    return true;
}

void CViewLogDlg::Arrange() const
{
    if (!treeView) return;
    splitter.Arrange();
    filterBar.Place(splitter.Free());
    errorList.FitColumn();
}

void CViewLogDlg::Load()
{
    SendMessageW(errorList.Window(), WM_SETREDRAW, FALSE, 0);
    SetIcons(kIconApplication);
    const LogLoader::Viewer viewer = {
        [this] {
            ShowLog();
            ShowWindow(Window(), SW_SHOWNORMAL);
            UpdateWindow(Window());
        },
        [this] { errorList.SetCount(LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL); },
        [this](MSG& message) { Handle(message); },
    };
    if (LogLoader(*this, path, model, tree, closed, viewer).Load()) {
        errorList.SetCount(LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
        if (!model.HasPages()) ShowLog();
    } else {
        SendMessageW(errorList.Window(), WM_SETREDRAW, TRUE, 0);
    }
    errorList.FitColumn();
}

void CViewLogDlg::ShowLog()
{
    errorList.SetCount(LVSICF_NOINVALIDATEALL);
    SendMessageW(errorList.Window(), WM_SETREDRAW, TRUE, 0);
    errorList.FitColumn();
    filling.Begin(treeView);
}

void CViewLogDlg::Close()
{
    // A task or the loading, further down the stack, ends first; then the window closes.
    LongTask* const task = LongTask::Running();
    if (task) task->Cancel();
    if (task || loading) {
        closed = true;
        return;
    }
    // Emptying a large tree takes time, and nobody need watch it.
    ShowWindow(Window(), SW_HIDE);
    DestroyWindow(Window());
}

bool CViewLogDlg::OnNotify(const NMHDR& header, LRESULT& result)
{
    if (header.hwndFrom == treeView && header.code == TVN_ITEMEXPANDINGW) {
        const auto& expanding = reinterpret_cast<const NMTREEVIEWW&>(header);
        if ((expanding.action & TVE_EXPAND) && !tree.FillChildren(static_cast<ItemIndex>(expanding.itemNew.lParam))) {
            // It can be expanded once its children are all there.
            result = TRUE;
            return true;
        }
    }
    if (header.hwndFrom == errorList.Window() && errorList.Window()) {
        return errorList.OnNotify(header, result, [this](ItemIndex item) {
            if (item != kNoItem && !LongTask::Running()) Select(item);
        });
    }
    return false;
}

}  // namespace zelt
