// The tree view of a viewer, filled from the model. A log of up to kFilledItems enters the tree completely, while it is read. In
// a larger one, children enter the tree when their parent is expanded or one of them is selected. The outermost items enter in
// order, some at a time while the window is idle, and as many as needed when the user goes further.
//
// Of a log in pages, only about kIdleOutermost outermost items enter while the window is idle. A user who goes far away from
// them, to a match or to the end, gets a new run of outermost items around that place instead, which grows at both ends as the
// user moves.
//
// Owns the mapping from items to handles, but neither the window nor the model.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include "shell/log_viewer/item_handles.h"
#include "shell/log_viewer/pages/paged_log.h"

namespace zelt {

class LongTask;

class LogTree {
public:
    static constexpr ItemIndex kFilledItems = 100'000;
    // Expanding everything stops before the tree has more nested items than this.
    static constexpr ItemIndex kExpandedItems = 200'000;

    // Of a log in pages: about how many outermost items enter while the window is idle, and about how many may be added to
    // reach an item. For an item further away, a new run begins.
    static constexpr ItemIndex kIdleOutermost = 10'000;

    void Attach(HWND treeView, const PagedLog& log);

    // Call while the log is read. Adds all items up to this one, the model's last.
    void FillUpTo(ItemIndex last, bool lastHasChildren);
    // Call once the model has its first page, or is complete. Adds the rest of a small log, or the first outermost items of a
    // large one.
    void Fill();

    // Whether all outermost items are in the tree.
    bool HasAllOutermost() const { return HasLastOutermost() && HasFirstOutermost(); }
    bool HasLastOutermost() const { return nextOutermost == kNoItem; }
    // Whether the tree has so many outermost items that no more enter while the window is idle.
    bool HasEnoughOutermost() const { return HasLastOutermost() || (model->HasPages() && outer >= kIdleOutermost); }
    // Adds the next outermost items; takes some milliseconds.
    void FillSomeOutermost();
    // Adds some outermost items before the first one in the tree.
    void FillSomeBefore();
    void FillAllOutermost(LongTask& task);
    // Adds some at the beginning or the end of those in the tree, if the user is close to it.
    void FillNearEnds();
    void GoToFirst();
    void GoToLast(LongTask& task);
    // Whether this is the last outermost item in the tree, but not the log's last; or the first, but not the log's first.
    bool IsLastSoFar(HTREEITEM handle) const
    {
        return !HasLastOutermost() && handle && handle == handles.Get(lastOutermost);
    }
    bool IsFirstSoFar(HTREEITEM handle) const
    {
        return !HasFirstOutermost() && handle && handle == handles.Get(firstOutermost);
    }

    // Adds the children of an item that is about to be expanded. False while they are still being read.
    bool FillChildren(ItemIndex item);

    ItemIndex Selected() const;
    // False when the item cannot be put into the tree.
    bool Select(ItemIndex item);
    // Puts the item into the tree if it is not there yet. Null when it cannot be.
    HTREEITEM Handle(ItemIndex item);

    // False when the limit, or a lack of memory, stopped it.
    bool ExpandAll(LongTask& task);
    void CollapseAll(LongTask& task);

    // Erases an item that the model has removed. Call UpdateParent for its parent next.
    void Erase(ItemIndex item);
    void UpdateParent(ItemIndex item);

    // The tree view is not painted while one of these exists.
    class Unpainted {
    public:
        explicit Unpainted(LogTree& tree) : tree(tree) { tree.SetRedraw(false); }
        ~Unpainted() { tree.SetRedraw(true); }
        Unpainted(const Unpainted&) = delete;
        Unpainted& operator=(const Unpainted&) = delete;

    private:
        LogTree& tree;
    };

    void KeepSelectionVisible() const;

private:
    bool HasFirstOutermost() const { return firstOutermost == kNoItem || firstOutermost <= model->First(); }
    bool Insert(ItemIndex item, bool hasChildren, HTREEITEM after = TVI_LAST);
    void CompleteFamilies();
    // False after the last outermost item, and while the file is still being read at the next one.
    bool IsNextComplete() const { return nextOutermost != kNoItem && model->IsComplete(nextOutermost); }
    // Up to the item `last`, and no more than `most`.
    void FillOutermost(ItemIndex last, ItemIndex most);
    ItemIndex OutermostBefore(ItemIndex item) const;
    void BringOutermost(ItemIndex item);
    // Empties the tree and fills it around this outermost item.
    void BeginAround(ItemIndex item);
    bool ExceedsLimit(ItemIndex parent) const;
    // Each "off" needs one "on".
    void SetRedraw(bool on);

    HWND window = nullptr;
    const PagedLog* model = nullptr;
    ItemHandles handles;
    ItemIndex filled = 0;                                         // the items before this one are all in the tree
    ItemIndex nextOutermost = kNoItem;                            // the first after those that are in the tree
    ItemIndex firstOutermost = kNoItem, lastOutermost = kNoItem;  // in the tree
    ItemIndex outer = 0;                                          // outermost items in the tree
    ItemIndex inner = 0;                                          // nested items in the tree
    int paused = 0;                                               // how many times redrawing is off
};

}  // namespace zelt
