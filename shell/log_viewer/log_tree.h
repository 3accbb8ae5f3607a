// The tree view of a viewer, fed from the model. A log of up to kFilledItems is in the tree whole; of a larger one, children
// enter the tree when they are first expanded or selected, which shows no difference. Owns which item has which handle;
// neither the window nor the model.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <unordered_map>

#include "shell/log_viewer/log_model.h"

namespace zelt {

class LongTask;

class LogTree {
public:
    static constexpr ItemIndex kFilledItems = 100'000;
    // Expanding everything stops when the tree holds this many items.
    static constexpr ItemIndex kExpandedItems = 500'000;

    void Attach(HWND treeView, const LogModel& logModel);

    // Once the model is complete: the whole log, or the outermost items of a large one.
    void Fill();

    // When an item is about to be expanded.
    void FillChildren(ItemIndex item);

    ItemIndex Selected() const;
    void Select(ItemIndex item);
    // Puts the item into the tree if it is not there yet.
    HTREEITEM Handle(ItemIndex item);

    // False when the limit stopped it.
    bool ExpandAll(LongTask& task);
    void CollapseAll(LongTask& task);

    // What the model has removed; UpdateParent follows for the item around it.
    void Erase(ItemIndex item);
    void UpdateParent(ItemIndex item);

    void SetRedraw(bool on) const;
    void KeepSelectionVisible() const;

private:
    HTREEITEM Insert(ItemIndex item, HTREEITEM parent, HTREEITEM after, bool hasChildren);

    HWND window = nullptr;
    const LogModel* model = nullptr;
    std::unordered_map<ItemIndex, HTREEITEM> handles;
};

}  // namespace zelt
