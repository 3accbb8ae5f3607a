#include "shell/add_package/add_package_dialog.h"

#include <windowsx.h>

#include "res/resource.h"
#include "packages/export_name.h"
#include "shell/add_package/other_edition.h"

namespace zelt {
namespace {

constexpr LayoutRow kLayout[] = {
    {kComponentTree, kLeft | kTop | kRight | kBottom},
    {kExportNameLabel, kLeft | kBottom},
    {kExportName, kLeft | kRight | kBottom},
    {kLoggingEnabled, kLeft | kBottom},
    {kOpenOtherEdition, kLeft | kBottom},
    {IDOK, kRight | kBottom},
    {IDCANCEL, kRight | kBottom},
};

std::span<const PackageKindRow> KindsOf(PackageChoice choice)
{
    return choice == PackageChoice::PropertyPackages10 ? PackageKindRows().subspan(2, 2) : PackageKindRows();
}

}  // namespace

CAddPackageDlg::CAddPackageDlg(HIMAGELIST images, const ExportedPackageList& exported, PackageChoice choice,
                               const ClassSources& sources)
    : images(images), exported(exported), choice(choice), sources(sources)
{}

INT_PTR CAddPackageDlg::Run(HWND owner) { return RunModal(kAddPackageDialog, owner); }

bool CAddPackageDlg::OnInit()
{
    const WaitCursor wait;
    if (choice == PackageChoice::PropertyPackages10) {
        SetWindowTextW(Window(), L"ZELT version 1.0 Property Package:");
    }
    SetIcons(kIconApplication);
    layout.Attach(Window(), kLayout);
    SendMessageW(Item(kExportName), EM_SETLIMITTEXT, kLongestExportName, 0);
    components.Attach(Item(kComponentTree), images);
    const Outcome filled = components.Fill(KindsOf(choice), sources);
    if (components.NeedsOtherEdition()) OfferOtherEdition();
    ProposeName();
    if (!filled) ShowBox(filled.Failure().text, filled.Failure().caption, filled.Failure().flags);
    return true;
}

bool CAddPackageDlg::OnCommand(int id, int notification)
{
    if (id == kExportName && notification == EN_CHANGE) {
        EnableOk();
        return true;
    }
    if (id == kOpenOtherEdition) {
        if (!ShowOtherEdition()) ShowFailure(L"The other ZELT cannot be started");
        return true;
    }
    // The Return key reaches a dialog even if its default button is disabled.
    if (id == IDOK && !AcceptSelection()) return true;
    return Dialog::OnCommand(id, notification);
}

bool CAddPackageDlg::OnNotify(const NMHDR& header, LRESULT& answer)
{
    if (header.idFrom != kComponentTree) return false;
    switch (header.code) {
        case TVN_SELCHANGEDW: ProposeName(); return true;
        case TVN_ITEMEXPANDINGW: {
            const auto& change = reinterpret_cast<const NMTREEVIEWW&>(header);
            if (change.action == TVE_COLLAPSE) return false;
            const WaitCursor wait;
            // True leaves the item unexpanded, so that the user can retry a manager that failed.
            answer = !components.PrepareExpansion(change.itemNew.hItem,
                                                  [this](const std::wstring& text) { ShowFailure(text); });
            return true;
        }
        case NM_CUSTOMDRAW:
            answer = ComponentTree::Draw(reinterpret_cast<NMTVCUSTOMDRAW&>(const_cast<NMHDR&>(header)));
            return true;
        case NM_DBLCLK: {
            if (!components.Selected()) return false;
            PostMessageW(Window(), WM_COMMAND, IDOK, 0);
            return true;
        }
        default: return false;
    }
}

bool CAddPackageDlg::AcceptSelection()
{
    const ComponentTree::Package* package = components.Selected();
    const std::wstring name = ItemText(kExportName);
    if (!package || !CanBeExportName(name)) return false;
    result.classId = package->classId;
    result.kind = package->kind;
    result.sourceName = package->name;
    result.exportedName = name;
    result.loggingEnabled = IsDlgButtonChecked(Window(), kLoggingEnabled) == BST_CHECKED;
    return true;
}

void CAddPackageDlg::OfferOtherEdition()
{
    if (OtherEditionProgram().empty()) return;
    SetDlgItemTextW(Window(), kOpenOtherEdition, (L"Open &" + std::wstring(kOtherEdition.name)).c_str());
    ShowWindow(Item(kOpenOtherEdition), SW_SHOW);
}

void CAddPackageDlg::ProposeName()
{
    const ComponentTree::Package* package = components.Selected();
    SetDlgItemTextW(Window(), kExportName, package ? UniqueExportName(exported, package->name).c_str() : L"");
    Edit_Enable(Item(kExportName), package != nullptr);
    EnableOk();
}

void CAddPackageDlg::EnableOk()
{
    EnableWindow(Item(IDOK), components.Selected() && CanBeExportName(ItemText(kExportName)));
}

}  // namespace zelt
