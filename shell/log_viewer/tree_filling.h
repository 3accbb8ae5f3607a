// The filling of a large log's tree after the log is read: the outermost items enter some at a time while the window is idle, and
// at once when somebody goes to their end. Owns nothing but the subclass of the tree view.
#pragma once

#include <windows.h>

#include "shell/log_viewer/log_tree.h"

namespace zelt {

class Dialog;

class TreeFilling {
public:
    TreeFilling(Dialog& dialog, LogTree& tree) : dialog(dialog), tree(tree) {}

    // Begins if items are left; the dialog's timer then calls FillMore.
    void Begin(HWND treeView);
    void FillMore();

private:
    // Not a subclass of the common controls library: a tree view is sent a message for each item.
    static LRESULT CALLBACK Procedure(HWND treeView, UINT message, WPARAM wParam, LPARAM lParam);
    void PrepareFor(UINT message, WPARAM wParam, LPARAM lParam);

    Dialog& dialog;
    LogTree& tree;
    HWND window = nullptr;
    WNDPROC procedure = nullptr;  // the tree view's own
};

}  // namespace zelt
