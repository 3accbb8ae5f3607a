// CPackageManagerDlg: the window of an interactive start. It shows and edits the exported packages and the log
// options, and saves each change at once. Keeps the process alive while it is open. The list of packages belongs to
// the process: calls from simulators may change it whenever messages are pumped, and the window follows.
#pragma once

#include "system/component_scan.h"
#include "log/log_options.h"
#include "system/dialogs/dialog.h"
#include "packages/exported_package_list.h"
#include "shell/lock_object.h"
#include "shell/main_window/package_list_view.h"

namespace zelt {

class CPackageManagerDlg final : public Dialog {
public:
    // Makes and shows the one main window. The object ends with the window.
    static void Show();

private:
    CPackageManagerDlg();

    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    bool OnNotify(const NMHDR& header, LRESULT& answer) override;
    bool OnSystemCommand(UINT command) override;
    void OnPopupMenu(HMENU menu) override;
    void OnSize() override;
    void OnMinMaxInfo(MINMAXINFO& info) override;
    void OnScaled() override;
    void OnDestroyed() override;

    static void RefreshIfOpen();
    void FillList();
    void UpdateRemoveItem();

    void AddPackage();
    void RemovePackage();
    void ToggleLogging();
    void TakeCheck(const PackageListView::CheckChange& change);
    void ViewLog();
    void ReportProblem();
    void ToggleOption(LogOption option, bool LogOptions::*field);
    void ChooseUnitOperation(REFCLSID classId);
    // The installed unit operations. Shows the user, the first time only, what went wrong with the search for them.
    const std::vector<ComponentInfo>& UnitOperationChoices();

    void PrepareLogMenu();
    void PrepareOptionsMenu();

    Lock lock;
    PackageListView list;
    bool searchShown = false;
    HMENU packageMenu = nullptr, logMenu = nullptr, optionsMenu = nullptr, unitOperationMenu = nullptr;
};

}  // namespace zelt
