// Maps items of the model to handles in the tree view. Few items of a large log are in the tree, and they may be far apart, so
// this is a hash table.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <vector>

#include "shell/log_viewer/log_model.h"

namespace zelt {

class ItemHandles {
public:
    // Null for an item that is not in the tree.
    HTREEITEM Get(ItemIndex item) const
    {
        if (slots.empty()) return nullptr;
        for (std::size_t slot = Home(item);; slot = (slot + 1) & mask) {
            if (slots[slot].item == item) return slots[slot].handle;
            if (slots[slot].item == kNoItem) return nullptr;
        }
    }
    bool Has(ItemIndex item) const { return Get(item) != nullptr; }

    void Set(ItemIndex item, HTREEITEM handle);
    void Clear(ItemIndex item);
    void ClearAll();

    // The items that are in the tree, in order.
    std::vector<ItemIndex> Items() const;

private:
    struct Slot {
        ItemIndex item;
        HTREEITEM handle;
    };

    std::size_t Home(ItemIndex item) const { return (item * 0x9E3779B1u >> 7) & mask; }
    void Grow();

    std::vector<Slot> slots;  // at most half of them taken
    std::size_t mask = 0;
    std::size_t count = 0;
};

}  // namespace zelt
