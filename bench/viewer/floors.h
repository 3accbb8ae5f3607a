// What the viewer cannot do without beside reading the file: inserting items into a tree view.
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

// Inserts the items, ready as they are, into the tree view of a window that is not shown. Seconds, without the making and
// the clearing of the window.
double InsertBare(const std::vector<BareItem>& items);

}  // namespace zelt::bench
