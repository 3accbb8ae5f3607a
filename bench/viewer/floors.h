// What the viewer must do besides reading the file: insert items into a tree view.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace zelt::bench {

struct BareItem {
    int depth;
    int image;
    bool hasChildren;
    std::wstring label;
};

std::vector<BareItem> ItemsOf(const std::wstring& path);

// Inserts the items, which are ready to insert, into the tree view of a hidden window. Returns the seconds that this takes,
// without making and clearing the window.
double InsertBare(const std::vector<BareItem>& items);

}  // namespace zelt::bench
