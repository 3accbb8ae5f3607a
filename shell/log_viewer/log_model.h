// A whole log in a few words an item: the items in the order of the file, each label's text once. The order makes tree
// order trivial: an item's descendants follow it, up to its end. Removed items stay in place, marked. Owns all of it;
// knows nothing of windows, and does not shrink.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "shell/log_viewer/chunked_array.h"
#include "shell/log_viewer/log_row.h"

namespace zelt {

using ItemIndex = std::uint32_t;
constexpr ItemIndex kNoItem = 0xFFFFFFFF;

class LogModel {
public:
    // Rows come in the order of the file, and each becomes an item. Throws std::bad_alloc, with the model as it was.
    ItemIndex Add(const LogRow& row);
    // To be called after the last item and before anything below.
    void Finish();

    ItemIndex Size() const { return static_cast<ItemIndex>(items.Size()); }
    SmallImage Image(ItemIndex item) const { return static_cast<SmallImage>(items[item].image); }
    std::string_view Label(ItemIndex item) const;
    // Items with equal numbers, which are below LabelCount, have equal labels; so have, rarely, others.
    std::uint32_t LabelNumber(ItemIndex item) const { return items[item].label; }
    std::uint32_t LabelCount() const { return static_cast<std::uint32_t>(labels.Size()); }
    bool IsRemoved(ItemIndex item) const { return items[item].removed; }

    // Family, without the removed; kNoItem where there is none. kNoItem as an argument stands for the tree's root.
    ItemIndex Parent(ItemIndex item) const { return items[item].parent; }
    // Behind the last descendant.
    ItemIndex End(ItemIndex item) const { return items[item].end; }
    ItemIndex FirstChild(ItemIndex item) const;
    ItemIndex NextSibling(ItemIndex item) const;
    bool HasChildren(ItemIndex item) const { return FirstChild(item) != kNoItem; }

    // Tree order, around both ends; kNoItem when nothing is left.
    ItemIndex Next(ItemIndex item) const;
    ItemIndex Previous(ItemIndex item) const;
    ItemIndex First() const { return FirstChild(kNoItem); }

    // The errors and warnings, in tree order.
    const std::vector<ItemIndex>& Errors() const { return errors; }

    // Removes an item with everything below it. CleanErrors follows, once after any number of removals.
    void Remove(ItemIndex item);
    void CleanErrors();

private:
    struct Item {
        std::uint32_t label : 27;
        std::uint32_t image : 4;
        std::uint32_t removed : 1;
        ItemIndex parent;
        ItemIndex end;  // behind the last descendant; kNoItem while the item is open
    };

    // Of the hash table of labels: open addressing, and the hash beside the number, so that few texts are looked at.
    struct Slot {
        std::uint32_t hash;
        std::uint32_t label;  // kNoItem where the slot is free
    };

    std::uint32_t Intern(std::string_view label);
    const char* Store(std::string_view label);
    void GrowTable();
    std::string_view LabelText(std::uint32_t number) const;
    ItemIndex FirstKept(ItemIndex item, ItemIndex end) const;

    ChunkedArray<Item> items;
    std::vector<ItemIndex> open;  // the items whose ends are not known yet, outermost first
    std::vector<ItemIndex> errors;

    ChunkedArray<const char*> labels;  // each its length, then its bytes
    std::vector<std::unique_ptr<char[]>> blocks;
    char* free = nullptr;
    std::size_t left = 0;
    std::vector<Slot> table;
    std::size_t inTable = 0;
};

}  // namespace zelt
