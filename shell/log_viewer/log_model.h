// A log, or a page of one, in a few words per item: the items in file order, and each label's text once. This makes tree
// order trivial: an item's descendants follow it, up to its end. Removed items stay in place, marked. Owns all its data,
// knows nothing about windows, and does not shrink.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "shell/log_viewer/chunked_array.h"
#include "shell/log_viewer/tree_row.h"

namespace zelt {

using ItemIndex = std::uint32_t;
constexpr ItemIndex kNoItem = 0xFFFFFFFF;

class LogModel {
public:
    // Rows come in file order, and each becomes an item. Throws std::bad_alloc, leaving the model as it was.
    ItemIndex Add(const TreeRow& row);
    // Call after the last item. Until then, the items still open have no end, so do not ask for children or siblings.
    void Finish();

    ItemIndex Size() const { return static_cast<ItemIndex>(items.Size()); }
    SmallImage Image(ItemIndex item) const { return static_cast<SmallImage>(items[item].image); }
    std::string_view Label(ItemIndex item) const;
    // Below LabelCount. Items with equal numbers have equal labels. In rare cases, different numbers have equal labels, too.
    std::uint32_t LabelNumber(ItemIndex item) const { return items[item].label; }
    std::uint32_t LabelCount() const { return static_cast<std::uint32_t>(labels.Size()); }
    bool IsRemoved(ItemIndex item) const { return items[item].removed; }

    // Relatives, without removed items; kNoItem if there is none. To FirstChild, kNoItem means the tree's root.
    ItemIndex Parent(ItemIndex item) const { return items[item].parent; }
    // After the last descendant.
    ItemIndex End(ItemIndex item) const { return items[item].end; }
    ItemIndex FirstChild(ItemIndex item) const;
    ItemIndex NextSibling(ItemIndex item) const;
    bool HasChildren(ItemIndex item) const { return FirstChild(item) != kNoItem; }

    // In tree order, wrapping at both ends; kNoItem when nothing is left.
    ItemIndex Next(ItemIndex item) const;
    ItemIndex Previous(ItemIndex item) const;
    ItemIndex First() const { return FirstChild(kNoItem); }

    // The errors and warnings, in tree order.
    const std::vector<ItemIndex>& Errors() const { return errors; }
    // Their lines in the file, in the same order.
    const std::vector<int>& ErrorLines() const { return errorLines; }

    // Removes an item with everything below it. After any number of removals, call CleanErrors once.
    void Remove(ItemIndex item);
    void CleanErrors();

private:
    struct Item {
        std::uint32_t label : 27;
        std::uint32_t image : 4;
        std::uint32_t removed : 1;
        ItemIndex parent;
        ItemIndex end;  // after the last descendant; kNoItem while the item is open
    };

    // For the hash table of labels: open addressing, with the hash beside the number, so that few texts are compared.
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
    std::vector<ItemIndex> open;  // the items whose ends are still unknown, outermost first
    std::vector<ItemIndex> errors;
    std::vector<int> errorLines;

    ChunkedArray<const char*> labels;  // each its length, then its bytes
    std::vector<std::unique_ptr<char[]>> blocks;
    char* free = nullptr;
    std::size_t left = 0;
    std::vector<Slot> table;
    std::size_t inTable = 0;
};

}  // namespace zelt
