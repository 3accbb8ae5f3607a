#include "shell/add_package/component_tree.h"

#include <utility>

#include "shell/package_images.h"
#include "system/dialogs/thread_dpi.h"

namespace zelt {

namespace {

bool OtherCanHost(REFCLSID classId)
{
    const auto component = DescribeComponent(classId, InstalledClasses(kOtherEdition.width));
    return component && component->obstacle.empty();
}

}  // namespace

void ComponentTree::Attach(HWND treeView, HIMAGELIST images)
{
    tree = treeView;
    TreeView_SetImageList(tree, images, TVSIL_NORMAL);
}

Outcome ComponentTree::Fill(std::span<const PackageKindRow> kinds, const ClassSources& sources)
{
    FoundComponents components = FindPackageComponents(kinds, sources);
    for (std::size_t index = 0; index < kinds.size(); ++index) {
        if (components.lists[index].empty() && components.ofOtherWidth[index].empty()) continue;
        const HTREEITEM heading = InsertHeading(kinds[index].heading);
        InsertComponents(heading, kinds[index].kind, components.ofOtherWidth[index]);
        InsertComponents(heading, kinds[index].kind, components.lists[index]);
        TreeView_Expand(tree, heading, TVE_EXPAND);
    }
    if (nodes.empty()) InsertHeading(L"No CAPE-OPEN packages are installed.");
    TreeView_SelectItem(tree, TreeView_GetRoot(tree));
    TreeView_EnsureVisible(tree, TreeView_GetRoot(tree));
    return std::move(components.outcome);
}

void ComponentTree::InsertComponents(HTREEITEM heading, PackageKind kind, std::span<const ComponentInfo> components)
{
    for (std::size_t index = components.size(); index-- > 0;) {
        const ComponentInfo& component = components[index];
        const bool isUsable = component.obstacle.empty();
        needsOtherEdition = needsOtherEdition || (!isUsable && OtherCanHost(component.classId));
        const std::wstring label =
            isUsable ? component.displayName : component.displayName + L" - " + component.obstacle;
        Insert(heading, label, ImageOfComponent(kind),
               {{kind, component.classId, component.name}, IsManager(kind) && isUsable, isUsable});
    }
}

LRESULT ComponentTree::Draw(NMTVCUSTOMDRAW& drawing)
{
    if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    const auto* node = reinterpret_cast<const Node*>(drawing.nmcd.lItemlParam);
    // A selected item keeps both colours of the selection, which belong together.
    const bool isSelected = (drawing.nmcd.uItemState & CDIS_SELECTED) != 0;
    if (drawing.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && node && !node->isUsable && !isSelected) {
        drawing.clrText = GetSysColor(COLOR_GRAYTEXT);
    }
    return CDRF_DODEFAULT;
}

bool ComponentTree::PrepareExpansion(HTREEITEM item, const ListingFailure& failed)
{
    const Node* manager = NodeOf(item);
    if (!manager || !manager->isManager || TreeView_GetChild(tree, item)) return true;
    // By value: the call may let other messages in.
    const Package source = manager->package;
    const auto names = [&] {
        const ForeignWindowsDpi dpi;
        return ListPackages(source.kind, source.classId, failed);
    }();
    if (!names || TreeView_GetChild(tree, item)) return TreeView_GetChild(tree, item) != nullptr;
    for (std::size_t index = names->size(); index-- > 0;) {
        const std::wstring& name = (*names)[index];
        Insert(item, name, kImagePropertyPackage, {{source.kind, source.classId, name}, false});
    }
    return !names->empty();
}

const ComponentTree::Package* ComponentTree::Selected() const
{
    const Node* node = NodeOf(TreeView_GetSelection(tree));
    return node && !node->isManager && node->isUsable ? &node->package : nullptr;
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
    insertion.hInsertAfter = TVI_FIRST;
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
