// The list of a log's errors and warnings: a virtual list view whose rows are items of the model, all of them or those that the
// filter chooses. With details, it also has columns for the line, the call around the error and the call's object. Owns no data
// except the filter and the text requested last.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>

#include "shell/log_viewer/errors/error_filter.h"
#include "shell/log_viewer/log_tree.h"
#include "shell/log_viewer/pages/paged_log.h"

namespace zelt {

class Dialog;

class ErrorList {
public:
    ErrorList(Dialog& dialog, const PagedLog& model, LogTree& tree)
        : dialog(dialog), model(model), tree(tree), filter(model)
    {}

    void Attach(HWND listView, HIMAGELIST images);
    HWND Window() const { return window; }

    // Shows as many rows as there are errors to show; `flags` are those of LVM_SETITEMCOUNT.
    void SetCount(DWORD flags) const;
    // Makes the column of labels as wide as the longest of them, and at least as wide as the room that the list has for it.
    void FitColumn() const;
    // Adds the columns of the details, or removes them.
    void ShowDetails(bool wanted);
    bool HasDetails() const { return hasDetails; }
    // Makes the columns of the details as wide as the first rows and the last one need. The others usually look like these.
    void FitDetails() const;
    // Shows the errors with the text; see ErrorFilter. False if the user cancelled.
    bool Filter(const std::wstring& text);

    // How many rows there are.
    std::size_t Count() const { return filter.Count(); }
    bool IsFiltered() const { return filter.IsActive(); }
    // The item of a row; kNoItem for a row that does not exist.
    ItemIndex ItemOf(int row) const;
    ItemIndex Selected() const;
    void Select(std::size_t row) const;
    // The first row after an item; Count if there is none.
    std::size_t FirstAfter(ItemIndex item) const { return filter.FirstAfter(item); }

    // Handles the list's notifications; true when `result` is the answer to one. Calls `chosen` with the item of a row that is
    // selected or clicked, and with kNoItem for a click beside the rows.
    bool OnNotify(const NMHDR& header, LRESULT& result, const std::function<void(ItemIndex)>& chosen);

private:
    // The list keeps no data for its rows: a row's item data, the tree's item, is supplied on request.
    static LRESULT CALLBACK Procedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR errorList);
    std::wstring Text(int row, int column) const;
    void Draw(NMLVDISPINFOW& request);
    LRESULT DrawLongLabel(const NMLVCUSTOMDRAW& drawing) const;

    Dialog& dialog;
    const PagedLog& model;
    LogTree& tree;
    ErrorFilter filter;
    bool hasDetails = false;
    HWND window = nullptr;
    std::wstring shown;  // the text that the list requested last
};

}  // namespace zelt
