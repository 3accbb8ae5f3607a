// Fills a large log's tree after the log, or its first page, is read: the outermost items enter some at a time while the window
// is idle, and more of them when the user comes near the first or the last item that is there. Owns only the subclass of the
// tree view.
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
    // Not installed with SetWindowSubclass, which costs time for each message: a tree view receives one for each item.
    static LRESULT CALLBACK Procedure(HWND treeView, UINT message, WPARAM wParam, LPARAM lParam);
    void PrepareFor(UINT message, WPARAM wParam, LPARAM lParam);

    Dialog& dialog;
    LogTree& tree;
    HWND window = nullptr;
    WNDPROC procedure = nullptr;  // the tree view's own
};

}  // namespace zelt
