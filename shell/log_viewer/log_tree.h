// The tree view of a viewer, fed from the model. A log of up to kFilledItems is in the tree whole, and enters it while it
// is read. Of a larger one, children enter the tree when they are first expanded or selected, and the outermost items from
// the first on, some at a time while the window is idle; whoever goes further finds the rest there. Owns which item has
// which handle; neither the window nor the model.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include "shell/log_viewer/item_handles.h"
#include "shell/log_viewer/log_model.h"

namespace zelt {

class LongTask;

class LogTree {
public:
    static constexpr ItemIndex kFilledItems = 100'000;
    // Expanding everything stops rather than have more items than this inside of others in the tree.
    static constexpr ItemIndex kExpandedItems = 200'000;

    void Attach(HWND treeView, const LogModel& logModel);

    // While the log is read: the whole of it up to this item, the model's last.
    void FillUpTo(ItemIndex last, bool lastHasChildren);
    // Once the model is complete: the rest of a small log, or the first outermost items of a large one.
    void Fill();

    // The outermost items are all in the tree.
    bool HasAllOutermost() const { return nextOutermost == kNoItem; }
    // The next of them; some milliseconds.
    void FillSomeOutermost();
    void FillAllOutermost(LongTask& task);
    // This is the last outermost item that is in the tree, though not the log's last.
    bool IsLastSoFar(HTREEITEM handle) const
    {
        return !HasAllOutermost() && handle && handle == handles.Get(lastOutermost);
    }

    // When an item is about to be expanded.
    void FillChildren(ItemIndex item);

    ItemIndex Selected() const;
    // False when the item cannot be put into the tree.
    bool Select(ItemIndex item);
    // Puts the item into the tree if it is not there yet. Null when it cannot be.
    HTREEITEM Handle(ItemIndex item);

    // False when the limit stopped it.
    bool ExpandAll(LongTask& task);
    void CollapseAll(LongTask& task);

    // What the model has removed; UpdateParent follows for the item around it.
    void Erase(ItemIndex item);
    void UpdateParent(ItemIndex item);

    // Off as often as on.
    void SetRedraw(bool on);
    void KeepSelectionVisible() const;

private:
    bool Insert(ItemIndex item, bool hasChildren);
    void CompleteFamilies();
    // Up to the item `last`, and no more than `most`.
    void FillOutermost(ItemIndex last, ItemIndex most);
    bool ExceedsLimit(ItemIndex parent) const;

    HWND window = nullptr;
    const LogModel* model = nullptr;
    ItemHandles handles;
    ItemIndex filled = 0;               // so many items, from the first on, are in the tree whole
    ItemIndex nextOutermost = kNoItem;  // the first that is not in the tree
    ItemIndex lastOutermost = kNoItem;
    ItemIndex inner = 0;  // items in the tree that are inside of others
    int paused = 0;       // redrawing
};

}  // namespace zelt
