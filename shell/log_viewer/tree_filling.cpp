#include "shell/log_viewer/tree_filling.h"

#include "shell/log_viewer/long_task.h"
#include "system/dialogs/dialog.h"

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
    if (!tree.HasEnoughOutermost()) tree.FillSomeOutermost();
    if (!tree.HasEnoughOutermost()) return;
    KillTimer(dialog.Window(), kFillTimer);
    if (tree.HasAllOutermost()) SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

// Called before the tree view acts on a message, so that a user who goes to an end finds the items there.
void TreeFilling::PrepareFor(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (tree.HasAllOutermost() || LongTask::Running()) return;
    const bool next = message == TVM_GETNEXTITEM && (wParam == TVGN_NEXT || wParam == TVGN_NEXTVISIBLE);
    if (next && tree.IsLastSoFar(reinterpret_cast<HTREEITEM>(lParam))) tree.FillSomeOutermost();
    const bool previous = message == TVM_GETNEXTITEM && (wParam == TVGN_PREVIOUS || wParam == TVGN_PREVIOUSVISIBLE);
    if (previous && tree.IsFirstSoFar(reinterpret_cast<HTREEITEM>(lParam))) tree.FillSomeBefore();
    const bool key = message == WM_KEYDOWN, scroll = message == WM_VSCROLL, item = message == TVM_GETNEXTITEM;
    if ((key && wParam == VK_HOME) || (scroll && LOWORD(wParam) == SB_TOP) || (item && wParam == TVGN_ROOT)) {
        tree.GoToFirst();
    } else if ((key && wParam == VK_END) || (scroll && LOWORD(wParam) == SB_BOTTOM) ||
               (item && wParam == TVGN_LASTVISIBLE)) {
        LongTask task(dialog.Window());
        tree.GoToLast(task);
    } else if (key || scroll || message == WM_MOUSEWHEEL) {
        tree.FillNearEnds();
    }
}

}  // namespace zelt
