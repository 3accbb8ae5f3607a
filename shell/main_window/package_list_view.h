// The list view of the main window. It has a row for each exported package, in order, with a check box for the package's
// logging flag. Does not change the list of exported packages. Owns neither that list nor the window.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <optional>

#include "packages/exported_package_list.h"

namespace zelt {

class PackageListView {
public:
    struct CheckChange {
        std::size_t row;
        bool checked;
    };

    void Attach(HWND listView, HIMAGELIST images);
    // Replaces all rows; none is selected.
    void Fill(const ExportedPackageList& packages);
    // Makes both columns wide enough for their contents and headers.
    void FitColumns();

    std::optional<std::size_t> Selected() const;
    void Select(std::size_t row);

    // The user's change of a check box; nothing for any other change, and while the rows are being filled.
    std::optional<CheckChange> ChangedCheck(const NMLISTVIEW& change) const;

private:
    HWND list = nullptr;
    bool ready = false;
};

}  // namespace zelt
