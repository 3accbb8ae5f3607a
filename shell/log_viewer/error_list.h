// The list of a log's errors and warnings: a virtual list view whose rows are items of the model. Owns no data except the
// label requested last.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>

#include "shell/log_viewer/pages/paged_log.h"
#include "shell/log_viewer/log_tree.h"

namespace zelt {

class Dialog;

class ErrorList {
public:
    ErrorList(Dialog& dialog, const PagedLog& model, LogTree& tree) : dialog(dialog), model(model), tree(tree) {}

    void Attach(HWND listView, HIMAGELIST images);
    HWND Window() const { return window; }

    // Shows as many rows as the model has errors; `flags` are those of LVM_SETITEMCOUNT.
    void SetCount(DWORD flags) const;
    // Makes the column as wide as the longest labels, or as the list.
    void FitColumn() const;

    // The item of a row; kNoItem for a row that does not exist.
    ItemIndex ItemOf(int row) const;
    ItemIndex Selected() const;
    void Select(std::size_t row) const;

    // Handles the list's notifications. Calls `chosen` with the item that the user selects or clicks.
    void OnNotify(const NMHDR& header, const std::function<void(ItemIndex)>& chosen);

private:
    // The list keeps no data for its rows: a row's item data, the tree's item, is supplied on request.
    static LRESULT CALLBACK Procedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR errorList);
    void Draw(NMLVDISPINFOW& request);

    Dialog& dialog;
    const PagedLog& model;
    LogTree& tree;
    HWND window = nullptr;
    std::wstring shown;  // the label that the list requested last
};

}  // namespace zelt
