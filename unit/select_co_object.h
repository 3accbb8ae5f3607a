// CSelectCOObject: the user picks one of the CAPE-OPEN components that are registered under a category. It only lists and asks;
// the component may still fail to be created.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "system/component_scan.h"
#include "system/dialogs/dialog.h"

namespace zelt {

class CSelectCOObject final : public Dialog {
public:
    // Searches for the components. If the search fails, tells the user; the list is then incomplete.
    CSelectCOObject(std::wstring title, const wchar_t* category, REFCLSID leftOut,
                    const ClassSources& sources = InstalledClasses());

    // IDOK when a component was chosen.
    INT_PTR DoModal(HWND owner);

    // In the order of the registry; the list box may show another order.
    const std::vector<ComponentInfo>& Components() const { return components; }
    // The index of the choice among them; valid after IDOK.
    int Selection() const { return selection; }

private:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    void Accept();

    std::wstring title;
    std::vector<ComponentInfo> components;
    int selection = -1;
};

// Asks the user for an installed unit operation other than the class `leftOut`; nothing when cancelled.
std::optional<CLSID> SelectUnitOperation(const std::wstring& title, REFCLSID leftOut);

// A test replaces the function and answers itself; nothing else does. Returns the previous function; null restores the dialog.
using UnitSelector = std::optional<CLSID> (*)(const std::wstring& title, REFCLSID leftOut);
UnitSelector SetUnitSelector(UnitSelector selector);

}  // namespace zelt
