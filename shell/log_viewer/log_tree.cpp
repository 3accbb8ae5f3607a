#include "shell/log_viewer/log_tree.h"

#include <vector>

#include "system/narrow.h"
#include "shell/log_viewer/long_task.h"

namespace zelt {
namespace {

// More rows than a screen shows.
constexpr ItemIndex kShown = 256;

}  // namespace

void LogTree::Attach(HWND treeView, const PagedLog& log)
{
    window = treeView;
    model = &log;
}

void LogTree::SetRedraw(bool on)
{
    if (on ? --paused == 0 : paused++ == 0) SendMessageW(window, WM_SETREDRAW, on, 0);
}

bool LogTree::Insert(ItemIndex item, bool hasChildren, HTREEITEM after)
{
    const ItemIndex parent = model->Parent(item);
    TVINSERTSTRUCTW record = {};
    record.hParent = parent == kNoItem ? TVI_ROOT : handles.Get(parent);
    // A tree view takes null for its root.
    if (!record.hParent) return false;
    record.hInsertAfter = after;
    record.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_CHILDREN;
    // The item keeps its whole text; text supplied on demand would be cut to the length that is drawn.
    std::wstring label = Widen(model->Label(item), CP_UTF8);
    record.item.pszText = label.data();
    record.item.iImage = record.item.iSelectedImage = model->Image(item);
    record.item.cChildren = hasChildren;
    record.item.lParam = static_cast<LPARAM>(item);
    const HTREEITEM handle = TreeView_InsertItem(window, &record);
    if (!handle) return false;
    handles.Set(item, handle);
    if (parent == kNoItem) {
        ++outer;
        if (after == TVI_FIRST || firstOutermost == kNoItem) firstOutermost = item;
        if (after != TVI_FIRST) lastOutermost = item;
    } else {
        ++inner;
    }
    return true;
}

void LogTree::FillUpTo(ItemIndex last, bool lastHasChildren)
{
    for (; filled <= last; ++filled) {
        Insert(filled, filled == last ? lastHasChildren : model->Parent(filled + 1) == filled);
    }
}

void LogTree::Fill()
{
    const ItemIndex size = model->Size();
    if (size == 0) return;
    if (size <= kFilledItems && !model->HasPages()) {
        FillUpTo(size - 1, false);
        // If the reading was cancelled, the last item may lack the children that it has in the file.
        UpdateParent(size - 1);
        return;
    }
    CompleteFamilies();
    FillOutermost(kNoItem, kShown);
}

// If filling stopped inside an outermost item, adds the missing siblings of the last items in the tree.
void LogTree::CompleteFamilies()
{
    ItemIndex item = filled;
    while (item != kNoItem && model->Parent(item) != kNoItem) {
        ItemIndex parent = model->Parent(item);
        for (; item != kNoItem; item = model->NextSibling(item)) Insert(item, model->HasChildren(item));
        do {
            item = model->NextSibling(parent);
            parent = model->Parent(parent);
        } while (item == kNoItem && parent != kNoItem);
    }
    nextOutermost = item;
}

void LogTree::FillOutermost(ItemIndex last, ItemIndex most)
{
    if (!IsNextComplete()) return;
    const Unpainted unpainted(*this);
    for (; nextOutermost <= last && IsNextComplete() && most > 0; --most) {
        if (!model->IsRemoved(nextOutermost) && !Insert(nextOutermost, model->HasChildren(nextOutermost))) {
            // Out of memory. What is in the tree stays usable.
            nextOutermost = kNoItem;
            break;
        }
        nextOutermost = model->NextSibling(nextOutermost);
    }
}

void LogTree::FillSomeOutermost()
{
    constexpr ItemIndex kSome = 2000;
    UpdateWindow(window);
    // Rows below the visible ones do not change the picture.
    RECT row = {}, client;
    GetClientRect(window, &client);
    const HTREEITEM last = handles.Get(lastOutermost);
    const bool below = last && TreeView_GetItemRect(window, last, &row, FALSE) && row.top >= client.bottom;
    FillOutermost(kNoItem, kSome);
    if (below) ValidateRect(window, nullptr);
}

// The outermost item before `item`, which must be outermost, too. Before the first comes the last. kNoItem if all are removed.
ItemIndex LogTree::OutermostBefore(ItemIndex item) const
{
    const ItemIndex before = model->Previous(item);
    return before == kNoItem ? kNoItem : model->Outermost(before);
}

void LogTree::FillSomeBefore()
{
    constexpr ItemIndex kSome = 500;
    const HTREEITEM top = TreeView_GetFirstVisible(window);
    {
        const Unpainted unpainted(*this);
        for (ItemIndex some = 0; some < kSome && !HasFirstOutermost(); ++some) {
            const ItemIndex item = OutermostBefore(firstOutermost);
            if (!Insert(item, model->HasChildren(item), TVI_FIRST)) break;
        }
    }
    if (top) TreeView_Select(window, top, TVGN_FIRSTVISIBLE);
}

void LogTree::FillNearEnds()
{
    RECT row = {}, client;
    GetClientRect(window, &client);
    const HTREEITEM first = HasFirstOutermost() ? nullptr : handles.Get(firstOutermost);
    if (first && TreeView_GetItemRect(window, first, &row, FALSE) && row.bottom > -client.bottom) FillSomeBefore();
    const HTREEITEM last = HasLastOutermost() ? nullptr : handles.Get(lastOutermost);
    if (last && TreeView_GetItemRect(window, last, &row, FALSE) && row.top < 2 * client.bottom) FillSomeOutermost();
}

void LogTree::FillAllOutermost(LongTask& task)
{
    const Unpainted unpainted(*this);
    while (!HasLastOutermost() && model->IsFinished() && task.Continue()) FillOutermost(kNoItem, 100);
}

void LogTree::GoToFirst()
{
    if (!HasFirstOutermost()) BeginAround(model->First());
}

void LogTree::GoToLast(LongTask& task)
{
    if (!model->HasPages()) {
        FillAllOutermost(task);
    } else if (model->IsFinished() && !HasLastOutermost() && model->First() != kNoItem) {
        BringOutermost(OutermostBefore(model->First()));
    }
}

void LogTree::BringOutermost(ItemIndex item)
{
    if (handles.Has(item) || !model->IsComplete(item)) return;
    const bool isBefore = firstOutermost != kNoItem && item < firstOutermost;
    const bool isFar = lastOutermost != kNoItem &&
                       model->OutermostBefore(item) > model->OutermostBefore(lastOutermost) + kIdleOutermost;
    if (model->HasPages() && (isBefore || isFar)) {
        BeginAround(item);
    } else {
        FillOutermost(item, kNoItem);
    }
}

void LogTree::BeginAround(ItemIndex item)
{
    const bool isSelected = TreeView_GetSelection(window) != nullptr;
    {
        const Unpainted unpainted(*this);
        TreeView_DeleteAllItems(window);
        handles.ClearAll();
        inner = outer = 0;
        firstOutermost = lastOutermost = kNoItem;
        nextOutermost = item;
        for (ItemIndex before = 0; before < kShown && nextOutermost > model->First(); ++before) {
            nextOutermost = OutermostBefore(nextOutermost);
        }
        FillOutermost(item, kNoItem);
        FillOutermost(kNoItem, kShown);
    }
    // Keys act on the selected item.
    if (isSelected) TreeView_SelectItem(window, handles.Get(item));
    KeepSelectionVisible();
}

bool LogTree::FillChildren(ItemIndex item)
{
    const ItemIndex first = model->FirstChild(item);
    // Siblings enter the tree together, so the first one tells whether they are in it.
    if (first == kNoItem || handles.Has(first)) return true;
    if (!model->IsComplete(item)) return false;
    const Unpainted unpainted(*this);
    for (ItemIndex child = first; child != kNoItem; child = model->NextSibling(child)) {
        if (!Insert(child, model->HasChildren(child))) break;
    }
    return true;
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
    if (const HTREEITEM known = handles.Get(item)) return known;
    const ItemIndex parent = model->Parent(item);
    if (parent == kNoItem) {
        BringOutermost(item);
    } else if (Handle(parent)) {
        FillChildren(parent);
    }
    return handles.Get(item);
}

bool LogTree::Select(ItemIndex item)
{
    const HTREEITEM handle = Handle(item);
    if (!handle) return false;
    TreeView_SelectItem(window, handle);
    TreeView_EnsureVisible(window, handle);
    return true;
}

void LogTree::KeepSelectionVisible() const
{
    if (const HTREEITEM selected = TreeView_GetSelection(window)) TreeView_EnsureVisible(window, selected);
}

// Whether the children would exceed kExpandedItems. Counts no further than necessary.
bool LogTree::ExceedsLimit(ItemIndex parent) const
{
    ItemIndex child = model->FirstChild(parent);
    if (handles.Has(child)) return false;
    ItemIndex count = inner;
    for (; child != kNoItem && count <= kExpandedItems; child = model->NextSibling(child)) ++count;
    return count > kExpandedItems;
}

bool LogTree::ExpandAll(LongTask& task)
{
    bool all = true;
    {
        const Unpainted unpainted(*this);
        GoToFirst();
        for (ItemIndex item = model->First(); item != kNoItem && task.Continue();) {
            // The outermost items enter one after the other, so that none of them begins a new run.
            if (model->HasPages() && model->Parent(item) == kNoItem) FillOutermost(item, kNoItem);
            if (model->HasChildren(item)) {
                all = !ExceedsLimit(item) && Handle(item);
                if (!all) break;
                FillChildren(item);
                TreeView_Expand(window, handles.Get(item), TVE_EXPAND);
            }
            const ItemIndex next = model->Next(item);
            if (next <= item) break;
            item = next;
        }
    }
    KeepSelectionVisible();
    return all;
}

void LogTree::CollapseAll(LongTask& task)
{
    // A selection inside a collapsing item moves to its outermost ancestor.
    ItemIndex selected = Selected();
    while (selected != kNoItem && model->Parent(selected) != kNoItem) selected = model->Parent(selected);
    {
        const Unpainted unpainted(*this);
        if (selected != kNoItem) TreeView_SelectItem(window, handles.Get(selected));
        // From last to first: an item collapses before its parent.
        const std::vector<ItemIndex> items = handles.Items();
        for (auto item = items.rbegin(); item != items.rend() && task.Continue(); ++item) {
            // An item without children in the tree was never expanded.
            const HTREEITEM handle = handles.Get(*item);
            if (TreeView_GetChild(window, handle)) TreeView_Expand(window, handle, TVE_COLLAPSE);
        }
    }
    KeepSelectionVisible();
}

void LogTree::Erase(ItemIndex item)
{
    const HTREEITEM known = handles.Get(item);
    if (!known) return;
    TreeView_DeleteItem(window, known);
    if (item == firstOutermost) firstOutermost = model->NextSibling(item);
    if (item == lastOutermost) lastOutermost = OutermostBefore(item);
    if (model->Parent(item) == kNoItem) --outer;
    const ItemIndex end = model->End(item);
    for (; item < end; ++item) {
        if (handles.Has(item) && model->Parent(item) != kNoItem) --inner;
        handles.Clear(item);
    }
}

void LogTree::UpdateParent(ItemIndex item)
{
    const HTREEITEM known = handles.Get(item);
    if (!known || model->HasChildren(item)) return;
    TVITEMW record = {};
    record.mask = TVIF_CHILDREN;
    record.hItem = known;
    TreeView_SetItem(window, &record);
}

}  // namespace zelt
