// What the viewer cannot do without: reading the file with libxml2's reader, and inserting items into a tree view.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace zelt::bench {

// Reads every node of the file and looks at none. Seconds.
double ReadBare(const std::wstring& path);

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
