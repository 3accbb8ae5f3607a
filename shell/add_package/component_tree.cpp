#include "shell/add_package/component_tree.h"

#include <utility>

#include "shell/package_images.h"

namespace zelt {

void ComponentTree::Attach(HWND treeView, HIMAGELIST images)
{
    tree = treeView;
    TreeView_SetImageList(tree, images, TVSIL_NORMAL);
}

Outcome ComponentTree::Fill(std::span<const PackageKindRow> kinds, const ClassSources& sources)
{
    FoundComponents components = FindPackageComponents(kinds, sources);
    const auto& found = components.lists;
    for (std::size_t index = 0; index < kinds.size(); ++index) {
        if (found[index].empty()) continue;
        const PackageKindRow& row = kinds[index];
        const HTREEITEM heading = InsertHeading(row.heading);
        for (const ComponentInfo& component : found[index]) {
            Insert(heading, component.displayName, ImageOfComponent(row.kind),
                   {{row.kind, component.classId, component.name}, IsManager(row.kind)});
        }
        TreeView_Expand(tree, heading, TVE_EXPAND);
    }
    if (found.empty() || nodes.empty()) InsertHeading(L"No CAPE-OPEN packages are installed.");
    TreeView_SelectItem(tree, TreeView_GetRoot(tree));
    TreeView_EnsureVisible(tree, TreeView_GetRoot(tree));
    return std::move(components.outcome);
}

bool ComponentTree::PrepareExpansion(HTREEITEM item, const ListingFailure& failed)
{
    const Node* manager = NodeOf(item);
    if (!manager || !manager->isManager || TreeView_GetChild(tree, item)) return true;
    // By value: the call may let other messages in.
    const Package source = manager->package;
    const auto names = ListPackages(source.kind, source.classId, failed);
    if (!names || TreeView_GetChild(tree, item)) return TreeView_GetChild(tree, item) != nullptr;
    for (const std::wstring& name : *names) {
        Insert(item, name, kImagePropertyPackage, {{source.kind, source.classId, name}, false});
    }
    return !names->empty();
}

const ComponentTree::Package* ComponentTree::Selected() const
{
    const Node* node = NodeOf(TreeView_GetSelection(tree));
    return node && !node->isManager ? &node->package : nullptr;
}

HTREEITEM ComponentTree::InsertHeading(const wchar_t* text)
{
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = TVI_ROOT;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insertion.item.pszText = const_cast<wchar_t*>(text);
    insertion.item.iImage = insertion.item.iSelectedImage = kImageGroup;
    return TreeView_InsertItem(tree, &insertion);
}

HTREEITEM ComponentTree::Insert(HTREEITEM parent, const std::wstring& label, int image, Node node)
{
    nodes.push_back(std::make_unique<Node>(std::move(node)));
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN | TVIF_PARAM;
    insertion.item.pszText = const_cast<wchar_t*>(label.c_str());
    insertion.item.iImage = insertion.item.iSelectedImage = image;
    insertion.item.cChildren = nodes.back()->isManager ? 1 : 0;
    insertion.item.lParam = reinterpret_cast<LPARAM>(nodes.back().get());
    return TreeView_InsertItem(tree, &insertion);
}

const ComponentTree::Node* ComponentTree::NodeOf(HTREEITEM item) const
{
    if (!item) return nullptr;
    TVITEMW query = {};
    query.mask = TVIF_PARAM;
    query.hItem = item;
    return TreeView_GetItem(tree, &query) ? reinterpret_cast<const Node*>(query.lParam) : nullptr;
}

}  // namespace zelt
