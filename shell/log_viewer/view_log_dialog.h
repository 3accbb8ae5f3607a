// The window of the log viewer: the log as a tree, its errors and warnings as a list. One thread makes it, loads the log,
// runs its messages and destroys it. Holds a server-process reference until its window is gone. Separate classes read the log
// and manage the tree, the list and the gap between them.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

#include "system/dialogs/dialog.h"
#include "shell/lock_object.h"
#include "shell/log_viewer/errors/error_list.h"
#include "shell/log_viewer/errors/filter_bar.h"
#include "shell/log_viewer/log_tree.h"
#include "shell/log_viewer/pages/paged_log.h"
#include "shell/log_viewer/splitter.h"
#include "shell/log_viewer/tree_filling.h"
#include "shell/log_viewer/tree_search_dialog.h"

namespace zelt {

class CViewLogDlg final : public Dialog {
public:
    CViewLogDlg(std::wstring logPath, Lock processLock);
    ~CViewLogDlg() override;

    // Makes the window, loads the log, and shows the window; if the log is large, as soon as its first page is read. Handles
    // messages until the log is loaded. False if the window cannot be made. Reports in message boxes what is wrong with the
    // log, and shows what it could read.
    bool Open();
    // Runs the window's messages until it has closed.
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
    void Arrange() const;
    void Close();
    void Load();
    void ShowLog();
    void Handle(MSG& message);

    // Commands, in view_log_dialog_commands.cpp.
    void Command(int command);
    void ExpandAll();
    void CollapseAll();
    void RemoveQueries();
    void NextError();
    void ShowErrorDetails(bool wanted);
    void FilterErrors();
    void Find();
    void FindAgain(bool forward);
    void Search();
    void Select(ItemIndex item);
    void CopyLabel() const;
    bool IsCopyKey(const MSG& message) const;
    bool EmptiesFilter(const MSG& message) const;
    bool IsForFilter(const MSG& message) const;

    static constexpr UINT_PTR kFilterTimer = 2;  // TreeFilling uses another

    const std::wstring path;
    Lock lock;
    HWND treeView = nullptr;
    const HACCEL accelerators;
    bool loading = false;
    std::vector<int> waiting;  // commands that came before the log was completely loaded
    bool closed = false;       // or about to close, once the running task has ended
    PagedLog model;
    LogTree tree;
    TreeFilling filling{*this, tree};
    ErrorList errorList{*this, model, tree};
    FilterBar filterBar{*this};
    Splitter splitter{*this, 0.75};
    TreeSearch search;
};

}  // namespace zelt
