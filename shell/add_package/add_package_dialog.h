// CAddPackageDlg: the user picks one installed CAPE-OPEN package and names it for the export; the result is a record of it.
// Changes nothing itself: the caller checks whether the name is still free, and decides what to do with the record.
#pragma once

#include "shell/add_package/component_tree.h"
#include "system/dialogs/dialog.h"
#include "system/dialogs/dialog_layout.h"
#include "packages/exported_package_list.h"

namespace zelt {

// The packages that the dialog offers.
enum class PackageChoice {
    All,
    PropertyPackages10,  // Those that a Thermo System can serve.
};

class CAddPackageDlg final : public Dialog {
public:
    // Borrows `images` and `exported`, which must outlive the dialog.
    CAddPackageDlg(HIMAGELIST images, const ExportedPackageList& exported, PackageChoice choice = PackageChoice::All,
                   const ClassSources& sources = InstalledClasses());

    // IDOK when the user has chosen a package.
    INT_PTR Run(HWND owner);
    // The chosen package; only after IDOK.
    const ExportedPackage& Result() const { return result; }

private:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    bool OnNotify(const NMHDR& header, LRESULT& answer) override;
    void OnSize() override { layout.Apply(); }
    void OnMinMaxInfo(MINMAXINFO& info) override { layout.Limit(info); }
    void OnScaled() override { layout.Apply(); }

    bool AcceptSelection();
    // Shows the button that opens the other edition, if its program is found.
    void OfferOtherEdition();
    void ProposeName();
    void EnableOk();
    void ShowFailure(const std::wstring& text) const { ShowBox(text, L"Error:", MB_OK | MB_ICONERROR); }

    const HIMAGELIST images;
    const ExportedPackageList& exported;
    const PackageChoice choice;
    const ClassSources sources;
    DialogLayout layout;
    ComponentTree components;
    ExportedPackage result;
};

}  // namespace zelt
