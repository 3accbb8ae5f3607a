#include "shell/main_window/package_manager_dialog.h"

#include <commdlg.h>

#include <iterator>
#include <memory>
#include <utility>

#include "com/type_info.h"
#include "system/dialogs/message_box.h"
#include "res/resource.h"
#include "shell/add_package/add_package_dialog.h"
#include "packages/export_name.h"
#include "shell/main_window/about_dialog.h"
#include "shell/main_window/help.h"
#include "shell/main_window/report_dialog.h"
#include "shell/main_window/unit_operation_menu.h"
#include "shell/module.h"
#include "shell/user_interface.h"
#include "unit/installed_unit_operations.h"

namespace zelt {
namespace {

// Pixels between the list and each edge of the window.
constexpr int kMargin = 6;

// Main thread only, like the window.
std::unique_ptr<CPackageManagerDlg> mainWindow;

HIMAGELIST Images()
{
    const CZELTModule* module = CZELTModule::Instance();
    return module ? module->SmallImages() : nullptr;
}

void EnableItem(HMENU menu, UINT command, bool enabled)
{
    EnableMenuItem(menu, command, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
}

void CheckItem(HMENU menu, UINT command, bool checked)
{
    CheckMenuItem(menu, command, MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED));
}

// The position of each popup in the menu that contains it.
enum MenuPosition : int { kPackagePosition = 1, kLogPosition = 2, kOptionsPosition = 3, kUnitOperationPosition = 2 };

}  // namespace

CPackageManagerDlg::CPackageManagerDlg() : lock(MakeLock()) {}

void CPackageManagerDlg::Show()
{
    mainWindow.reset(new CPackageManagerDlg);
    const HWND made = mainWindow->CreateModeless(kMainDialog);
    if (!made) {
        mainWindow.reset();
        return;
    }
    ShowWindow(made, SW_SHOWNORMAL);
    SetForegroundWindow(made);
}

bool CPackageManagerDlg::OnInit()
{
    const HMENU system = GetSystemMenu(Window(), FALSE);
    AppendMenuW(system, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(system, MF_STRING, kCommandSystemAbout,
                (L"&About " + std::wstring(kThisEdition.name) + L"...").c_str());
    const HMENU menu = GetMenu(Window());
    packageMenu = GetSubMenu(menu, kPackagePosition);
    logMenu = GetSubMenu(menu, kLogPosition);
    optionsMenu = GetSubMenu(menu, kOptionsPosition);
    unitOperationMenu = GetSubMenu(optionsMenu, kUnitOperationPosition);

    list.Attach(Item(kPackageList), Images());
    OnSize();
    FillList();
    SetIcons(kIconApplication);
    ExportedPackages().SetRefresh(RefreshIfOpen);
    return true;
}

void CPackageManagerDlg::OnDestroyed()
{
    ExportedPackages().SetRefresh(nullptr);
    CloseHelp();
    // This destroys the object.
    mainWindow.reset();
}

void CPackageManagerDlg::RefreshIfOpen()
{
    if (mainWindow && mainWindow->Window()) mainWindow->FillList();
}

void CPackageManagerDlg::FillList()
{
    list.Fill(ExportedPackages());
    UpdateRemoveItem();
}

void CPackageManagerDlg::UpdateRemoveItem()
{
    EnableItem(packageMenu, kCommandRemovePackage, list.Selected().has_value());
}

bool CPackageManagerDlg::OnCommand(int id, int)
{
    switch (id) {
        case IDOK: return true;
        case IDCANCEL:
        case kCommandClose:
            // An open dialog of this window must close first.
            if (IsWindowEnabled(Window())) DestroyWindow(Window());
            return true;
        case kCommandAddPackage: AddPackage(); return true;
        case kCommandRemovePackage: RemovePackage(); return true;
        case kCommandEnableLogging: ToggleLogging(); return true;
        case kCommandViewLog: ViewLog(); return true;
        case kCommandAutoLogLocation:
            ToggleOption(LogOption::AutoLogLocation, &LogOptions::autoLogLocation);
            return true;
        case kCommandPromptOpenLog: ToggleOption(LogOption::PromptOpenLog, &LogOptions::promptOpenLog); return true;
        case kCommandRecordCalls: ToggleOption(LogOption::RecordCalls, &LogOptions::recordCalls); return true;
        case kCommandAskUser: ChooseUnitOperation(CLSID_NULL); return true;
        case kCommandHelp: OpenHelp(Window()); return true;
        case kCommandAbout: CAboutDlg().Run(Window()); return true;
        case kCommandReport: ReportProblem(); return true;
    }
    if (id < kCommandFirstUnitOperation || id > kCommandUnknownUnitOperation) return false;
    if (const auto classId = UnitOperationOf(id, UnitOperationChoices())) ChooseUnitOperation(*classId);
    return true;
}

bool CPackageManagerDlg::OnSystemCommand(UINT command)
{
    if (command != kCommandSystemAbout) return false;
    CAboutDlg().Run(Window());
    return true;
}

bool CPackageManagerDlg::OnNotify(const NMHDR& header, LRESULT&)
{
    if (header.idFrom != kPackageList || header.code != LVN_ITEMCHANGED) return false;
    if (const auto change = list.ChangedCheck(reinterpret_cast<const NMLISTVIEW&>(header))) TakeCheck(*change);
    if (Window()) UpdateRemoveItem();
    return true;
}

void CPackageManagerDlg::OnPopupMenu(HMENU menu)
{
    if (menu == packageMenu) UpdateRemoveItem();
    if (menu == logMenu) PrepareLogMenu();
    if (menu == optionsMenu) PrepareOptionsMenu();
    if (menu == unitOperationMenu) {
        const WaitCursor wait;
        PrepareUnitOperationMenu(menu, UnitOperationChoices(), TheLogOptions().pravikUnit);
    }
}

void CPackageManagerDlg::OnSize()
{
    RECT client;
    GetClientRect(Window(), &client);
    SetWindowPos(Item(kPackageList), nullptr, kMargin, kMargin, client.right - 2 * kMargin, client.bottom - 2 * kMargin,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void CPackageManagerDlg::OnMinMaxInfo(MINMAXINFO& info) { info.ptMinTrackSize = {Scaled(280), Scaled(160)}; }

void CPackageManagerDlg::OnScaled()
{
    SetIcons(kIconApplication);
    OnSize();
    list.FitColumns();
}

void CPackageManagerDlg::AddPackage()
{
    CAddPackageDlg dialog(Images(), ExportedPackages());
    const HWND active = GetActiveWindow();
    if (dialog.Run(active ? active : Window()) != IDOK) return;
    auto package = std::make_unique<ExportedPackage>(dialog.Result());
    if (IsExported(ExportedPackages(), package->exportedName)) {
        ShowBox(L"The selected property package is already exported", L"Add package:",
                MB_OK | MB_ICONINFORMATION | MB_TOPMOST);
        return;
    }
    ExportedPackages().Append(std::move(package));
    FillList();
    ShowFailure(SavePackages());
}

void CPackageManagerDlg::RemovePackage()
{
    const auto row = list.Selected();
    if (!row || *row >= ExportedPackages().Count()) return;
    ExportedPackages().Remove(*row);
    ShowFailure(SavePackages());
    if (Window()) FillList();
}

void CPackageManagerDlg::ToggleLogging()
{
    const auto row = list.Selected();
    if (!row || *row >= ExportedPackages().Count()) return;
    ExportedPackage& package = ExportedPackages().At(*row);
    package.loggingEnabled = !package.loggingEnabled;
    const PackageIdentity identity = ExportedPackages().IdentityAt(*row);
    // While a message about the registry is open, calls come in and may change the list.
    ShowFailure(SavePackages());
    if (!Window()) return;
    FillList();
    if (const auto place = ExportedPackages().Find(identity)) list.Select(*place);
}

void CPackageManagerDlg::TakeCheck(const PackageListView::CheckChange& change)
{
    if (change.row >= ExportedPackages().Count()) return;
    ExportedPackage& package = ExportedPackages().At(change.row);
    if (package.loggingEnabled == change.checked) return;
    package.loggingEnabled = change.checked;
    ShowFailure(SavePackages());
}

void CPackageManagerDlg::ViewLog()
{
    wchar_t path[1024] = L"";
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = Window();
    dialog.lpstrFilter = L"ZELT Log Files (*.zlg)\0*.zlg\0All files (*.*)\0*.*\0";
    dialog.lpstrFile = path;
    dialog.nMaxFile = static_cast<DWORD>(std::size(path));
    dialog.lpstrTitle = L"View log file:";
    dialog.lpstrDefExt = L"zlg";
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (GetOpenFileNameW(&dialog)) kUserInterface.showLogViewer(path);
}

void CPackageManagerDlg::ReportProblem() { CReportDlg(com::BesideThisModule(kThisEdition.tool)).Run(Window()); }

void CPackageManagerDlg::ToggleOption(LogOption option, bool LogOptions::*field)
{
    LogOptions& options = TheLogOptions();
    // Other processes may have changed the settings in the meantime.
    ShowFailure(options.Load());
    options.*field = !(options.*field);
    ShowFailure(options.Save(option));
}

void CPackageManagerDlg::ChooseUnitOperation(REFCLSID classId)
{
    TheLogOptions().pravikUnit = classId;
    ShowFailure(TheLogOptions().Save(LogOption::PravikUnit));
}

const std::vector<ComponentInfo>& CPackageManagerDlg::UnitOperationChoices()
{
    const InstalledUnits& installed = InstalledUnitOperations();
    if (!std::exchange(searchShown, true)) ShowFailure(installed.outcome);
    return installed.found;
}

void CPackageManagerDlg::PrepareLogMenu()
{
    const auto row = list.Selected();
    const bool selected = row && *row < ExportedPackages().Count();
    EnableItem(logMenu, kCommandEnableLogging, selected);
    CheckItem(logMenu, kCommandEnableLogging, selected && ExportedPackages().At(*row).loggingEnabled);
}

void CPackageManagerDlg::PrepareOptionsMenu()
{
    LogOptions& options = TheLogOptions();
    ShowFailure(options.Load());
    if (!Window()) return;
    CheckItem(optionsMenu, kCommandAutoLogLocation, options.autoLogLocation);
    CheckItem(optionsMenu, kCommandPromptOpenLog, options.promptOpenLog);
    CheckItem(optionsMenu, kCommandRecordCalls, options.recordCalls);
}

}  // namespace zelt
