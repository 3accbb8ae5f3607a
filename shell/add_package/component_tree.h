// The tree of the add-package dialog: the installed components below a heading for each kind, and below a manager its
// packages, which are asked for when it is first expanded. Owns what its items stand for, not the tree view.
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
    // What could not be searched is the caller's to show.
    Outcome Fill(std::span<const PackageKindRow> kinds, const ClassSources& sources);

    // To be called before an item is expanded. False when there is nothing to be shown below it.
    bool PrepareExpansion(HTREEITEM item, const ListingFailure& failed);

    // The package that is selected; null when the selection is a heading or a manager, and without one.
    const Package* Selected() const;
    bool HasComponents() const { return !nodes.empty(); }

private:
    struct Node {
        Package package;
        bool isManager;
    };
    HTREEITEM InsertHeading(const wchar_t* text);
    HTREEITEM Insert(HTREEITEM parent, const std::wstring& label, int image, Node node);
    const Node* NodeOf(HTREEITEM item) const;

    HWND tree = nullptr;
    std::vector<std::unique_ptr<Node>> nodes;
};

}  // namespace zelt
