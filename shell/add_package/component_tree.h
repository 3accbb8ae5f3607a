// The tree of the add-package dialog: the installed components below a heading for each kind, and below each manager its
// packages, which the tree requests when the manager is first expanded. A component that this process cannot use is greyed, with
// the reason. Owns the data of its items, not the tree view.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "packages/package_kinds.h"
#include "packages/package_listing.h"
#include "system/component_scan.h"

namespace zelt {

class ComponentTree {
public:
    struct Package {
        PackageKind kind;
        CLSID classId;
        std::wstring name;
    };

    void Attach(HWND treeView, HIMAGELIST images);
    // The outcome says what could not be searched; the caller shows it.
    Outcome Fill(std::span<const PackageKindRow> kinds, const ClassSources& sources);

    // Greys what cannot be used. Returns the answer to the tree view's NM_CUSTOMDRAW.
    static LRESULT Draw(NMTVCUSTOMDRAW& drawing);

    // Call before an item is expanded. False for a manager that has nothing to show below it.
    bool PrepareExpansion(HTREEITEM item, const ListingFailure& failed);

    // The selected package; null when nothing, a heading, a manager or an unusable component is selected.
    const Package* Selected() const;
    bool HasComponents() const { return !nodes.empty(); }
    // Whether there is a component that only the other edition can host.
    bool NeedsOtherEdition() const { return needsOtherEdition; }

private:
    struct Node {
        Package package;
        bool isManager;
        bool isUsable = true;
    };
    HTREEITEM InsertHeading(const wchar_t* text);
    void InsertComponents(HTREEITEM heading, PackageKind kind, std::span<const ComponentInfo> components);
    HTREEITEM Insert(HTREEITEM parent, const std::wstring& label, int image, Node node);
    const Node* NodeOf(HTREEITEM item) const;

    HWND tree = nullptr;
    std::vector<std::unique_ptr<Node>> nodes;
    bool needsOtherEdition = false;
};

}  // namespace zelt
