// The window of the log viewer: the log as a tree, its errors and warnings as a list. One thread makes it, loads the log,
// runs its messages and destroys it. Holds a server-process reference until its window is gone. Parsing, the model and
// the tree are others' business.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>

#include "system/dialog.h"
#include "shell/lock_object.h"
#include "shell/log_viewer/log_model.h"
#include "shell/log_viewer/log_tree.h"
#include "shell/log_viewer/tree_search_dialog.h"

namespace zelt {

class CViewLogDlg final : public Dialog {
public:
    CViewLogDlg(std::wstring logPath, Lock processLock);
    ~CViewLogDlg() override;

    // Makes the window, loads the log, and shows the window. False if there can be no window. What is wrong with the log
    // is told in message boxes; what could be read of it is shown.
    bool Open();
    // Messages of the window, until it has closed.
    void RunMessages();

private:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    bool OnNotify(const NMHDR& header, LRESULT& result) override;
    void OnSize() override { Arrange(); }
    void OnScaled() override { Arrange(); }
    void OnMinMaxInfo(MINMAXINFO& info) override;
    void OnDestroyed() override;
    bool OnOther(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool ShowsGapCursor() const;
    // The list keeps no data of its rows: a row's item data, the tree's item, is given when it is asked for.
    static LRESULT CALLBACK ListProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                          DWORD_PTR dialog);
    // While the outermost items are not all in the tree. Not a subclass of the common controls library: a tree view is sent
    // a message for each item.
    static LRESULT CALLBACK TreeProcedure(HWND tree, UINT message, WPARAM wParam, LPARAM lParam);
    void SelectError(int row);
    void DrawErrorRow(NMLVDISPINFOW& request);
    void Close();

    // Loading.
    void Load();
    void ReportParseError(int line) const;
    void FitErrorColumn() const;
    void BeginFilling();
    void FillMore();
    void PrepareTreeFor(UINT message, WPARAM wParam, LPARAM lParam);

    // Layout: the tree above, the errors below, and a gap between them that can be dragged.
    void Arrange() const;
    RECT Gap() const;
    bool Drag(UINT message, LPARAM position);

    // Commands.
    void Command(int command);
    void ExpandAll();
    void CollapseAll();
    void RemoveQueries();
    void NextError();
    void Find();
    void FindAgain(bool forward);
    void Search();
    void Select(ItemIndex item);
    void CopyLabel() const;
    bool IsCopyKey(const MSG& message) const;

    const std::wstring path;
    Lock lock;
    HWND tree = nullptr;
    HWND list = nullptr;
    WNDPROC treeProcedure = nullptr;  // the tree view's own
    bool loading = false;
    bool closed = false;  // or about to be, once what runs has ended
    bool dragging = false;
    double share = 0.75;  // of the height, for the tree
    LogModel model;
    LogTree items;
    TreeSearch search;
    std::wstring shownError;  // the label that the list asked for last
};

}  // namespace zelt
