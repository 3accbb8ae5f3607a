#include "shell/log_viewer/item_handles.h"

#include <algorithm>
#include <utility>

namespace zelt {
namespace {

constexpr std::size_t kFirstSlots = 1024;

}  // namespace

void ItemHandles::Set(ItemIndex item, HTREEITEM handle)
{
    if (2 * count >= slots.size()) Grow();
    std::size_t slot = Home(item);
    while (slots[slot].item != item && slots[slot].item != kNoItem) slot = (slot + 1) & mask;
    if (slots[slot].item == kNoItem) ++count;
    slots[slot] = {item, handle};
}

// Later entries that the item had displaced move back into the gap, so that no search ends before it reaches them.
void ItemHandles::Clear(ItemIndex item)
{
    if (!Has(item)) return;
    std::size_t free = Home(item);
    while (slots[free].item != item) free = (free + 1) & mask;
    for (std::size_t slot = (free + 1) & mask; slots[slot].item != kNoItem; slot = (slot + 1) & mask) {
        const std::size_t home = Home(slots[slot].item);
        if (((slot - home) & mask) < ((slot - free) & mask)) continue;
        slots[free] = slots[slot];
        free = slot;
    }
    slots[free] = {kNoItem, nullptr};
    --count;
}

void ItemHandles::ClearAll()
{
    slots = {};
    mask = count = 0;
}

std::vector<ItemIndex> ItemHandles::Items() const
{
    std::vector<ItemIndex> items;
    items.reserve(count);
    for (const Slot& slot : slots) {
        if (slot.item != kNoItem) items.push_back(slot.item);
    }
    std::sort(items.begin(), items.end());
    return items;
}

void ItemHandles::Grow()
{
    std::vector<Slot> before(slots.empty() ? kFirstSlots : 2 * slots.size(), Slot{kNoItem, nullptr});
    std::swap(before, slots);
    mask = slots.size() - 1;
    count = 0;
    for (const Slot& slot : before) {
        if (slot.item != kNoItem) Set(slot.item, slot.handle);
    }
}

}  // namespace zelt
