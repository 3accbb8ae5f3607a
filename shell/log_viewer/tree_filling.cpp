#include "shell/log_viewer/tree_filling.h"

#include "shell/log_viewer/long_task.h"
#include "system/dialog.h"

namespace zelt {
namespace {

constexpr UINT_PTR kFillTimer = 1;

}  // namespace

void TreeFilling::Begin(HWND treeView)
{
    if (tree.HasAllOutermost()) return;
    window = treeView;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    procedure =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
    SetTimer(dialog.Window(), kFillTimer, USER_TIMER_MINIMUM, nullptr);
}

LRESULT CALLBACK TreeFilling::Procedure(HWND treeView, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto& self = *reinterpret_cast<TreeFilling*>(GetWindowLongPtrW(treeView, GWLP_USERDATA));
    const WNDPROC own = self.procedure;
    self.dialog.Guarded([&] { self.PrepareFor(message, wParam, lParam); });
    return CallWindowProcW(own, treeView, message, wParam, lParam);
}

void TreeFilling::FillMore()
{
    // A running task has the tree to itself.
    if (LongTask::Running()) return;
    if (!tree.HasAllOutermost()) tree.FillSomeOutermost();
    if (!tree.HasAllOutermost()) return;
    KillTimer(dialog.Window(), kFillTimer);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

// Called before the tree view acts on a message, so that a user who goes to the end finds all items there.
void TreeFilling::PrepareFor(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (tree.HasAllOutermost() || LongTask::Running()) return;
    const bool next = message == TVM_GETNEXTITEM && (wParam == TVGN_NEXT || wParam == TVGN_NEXTVISIBLE);
    if (next && tree.IsLastSoFar(reinterpret_cast<HTREEITEM>(lParam))) tree.FillSomeOutermost();
    const bool end = (message == WM_KEYDOWN && wParam == VK_END) ||
                     (message == WM_VSCROLL && LOWORD(wParam) == SB_BOTTOM) ||
                     (message == TVM_GETNEXTITEM && wParam == TVGN_LASTVISIBLE);
    if (!end) return;
    LongTask task(dialog.Window());
    tree.FillAllOutermost(task);
}

}  // namespace zelt
