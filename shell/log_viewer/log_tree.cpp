#include "shell/log_viewer/log_tree.h"

#include <vector>

#include "core/narrow.h"
#include "shell/log_viewer/long_task.h"

namespace zelt {

void LogTree::Attach(HWND treeView, const LogModel& logModel)
{
    window = treeView;
    model = &logModel;
}

void LogTree::SetRedraw(bool on) const { SendMessageW(window, WM_SETREDRAW, on, 0); }

HTREEITEM LogTree::Insert(ItemIndex item, HTREEITEM parent, HTREEITEM after, bool hasChildren)
{
    TVINSERTSTRUCTW record = {};
    record.hParent = parent;
    record.hInsertAfter = after;
    record.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_CHILDREN;
    // The item keeps its text whole; text asked for on demand would be cut to the length that is drawn.
    std::wstring label = Widen(model->Label(item), CP_UTF8);
    record.item.pszText = label.data();
    record.item.iImage = record.item.iSelectedImage = static_cast<int>(model->Image(item));
    record.item.cChildren = hasChildren;
    record.item.lParam = static_cast<LPARAM>(item);
    const HTREEITEM handle = TreeView_InsertItem(window, &record);
    if (handle) handles[item] = handle;
    return handle;
}

void LogTree::Fill()
{
    FillChildren(kNoItem);
    if (model->Size() > kFilledItems) return;
    for (ItemIndex item = 0; item < model->Size(); ++item) FillChildren(item);
}

void LogTree::FillChildren(ItemIndex item)
{
    const ItemIndex first = model->FirstChild(item);
    // Siblings enter the tree together or not at all.
    if (first == kNoItem || handles.contains(first)) return;
    std::vector<ItemIndex> children;
    for (ItemIndex child = first; child != kNoItem; child = model->NextSibling(child)) children.push_back(child);
    const HTREEITEM parent = item == kNoItem ? TVI_ROOT : handles.at(item);
    for (const ItemIndex child : children) {
        if (!Insert(child, parent, TVI_LAST, model->HasChildren(child))) return;
    }
}

ItemIndex LogTree::Selected() const
{
    TVITEMW item = {};
    item.mask = TVIF_PARAM;
    item.hItem = TreeView_GetSelection(window);
    if (!item.hItem || !TreeView_GetItem(window, &item)) return kNoItem;
    return static_cast<ItemIndex>(item.lParam);
}

HTREEITEM LogTree::Handle(ItemIndex item)
{
    if (const auto known = handles.find(item); known != handles.end()) return known->second;
    const ItemIndex parent = model->Parent(item);
    if (parent != kNoItem) Handle(parent);
    FillChildren(parent);
    const auto filled = handles.find(item);
    return filled != handles.end() ? filled->second : nullptr;
}

void LogTree::Select(ItemIndex item)
{
    const HTREEITEM handle = Handle(item);
    if (!handle) return;
    TreeView_SelectItem(window, handle);
    TreeView_EnsureVisible(window, handle);
}

void LogTree::KeepSelectionVisible() const
{
    if (const HTREEITEM selected = TreeView_GetSelection(window)) TreeView_EnsureVisible(window, selected);
}

bool LogTree::ExpandAll(LongTask& task)
{
    SetRedraw(false);
    bool all = true;
    for (ItemIndex item = model->First(); item != kNoItem && task.Continue();) {
        if (model->HasChildren(item)) {
            if (handles.size() >= kExpandedItems && !handles.contains(model->FirstChild(item))) {
                all = false;
                break;
            }
            Handle(item);
            FillChildren(item);
            TreeView_Expand(window, handles.at(item), TVE_EXPAND);
        }
        const ItemIndex next = model->Next(item);
        if (next <= item) break;
        item = next;
    }
    SetRedraw(true);
    KeepSelectionVisible();
    return all;
}

void LogTree::CollapseAll(LongTask& task)
{
    // A selection inside of what collapses goes to the outermost item around it.
    ItemIndex selected = Selected();
    while (selected != kNoItem && model->Parent(selected) != kNoItem) selected = model->Parent(selected);
    SetRedraw(false);
    if (selected != kNoItem) TreeView_SelectItem(window, handles.at(selected));
    // From the end to the front: an item collapses before the one around it.
    for (ItemIndex item = model->Size(); item-- > 0 && task.Continue();) {
        if (model->IsRemoved(item) || !model->HasChildren(item)) continue;
        if (const auto known = handles.find(item); known != handles.end()) {
            TreeView_Expand(window, known->second, TVE_COLLAPSE);
        }
    }
    SetRedraw(true);
    KeepSelectionVisible();
}

void LogTree::Erase(ItemIndex item)
{
    const auto known = handles.find(item);
    if (known == handles.end()) return;
    TreeView_DeleteItem(window, known->second);
    const ItemIndex end = model->End(item);
    for (; item < end; ++item) handles.erase(item);
}

void LogTree::UpdateParent(ItemIndex item)
{
    const auto known = handles.find(item);
    if (known == handles.end() || model->HasChildren(item)) return;
    TVITEMW record = {};
    record.mask = TVIF_CHILDREN;
    record.hItem = known->second;
    TreeView_SetItem(window, &record);
}

}  // namespace zelt
