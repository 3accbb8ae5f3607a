// The floor for what the viewer does besides reading the file: inserting items into a tree view.
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

// Inserts the items into the tree view of a hidden window. Returns the seconds that this takes, not counting the making and
// clearing of the window.
double InsertBare(const std::vector<BareItem>& items);

}  // namespace zelt::bench
