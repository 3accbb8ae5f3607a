// Maps items of the model to handles in the tree view. Few items of a large log are in the tree, so it takes memory only for
// their neighbourhoods.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "shell/log_viewer/log_model.h"

namespace zelt {

class ItemHandles {
public:
    // Null for an item that is not in the tree.
    HTREEITEM Get(ItemIndex item) const
    {
        const std::size_t chunk = item >> kBits;
        return chunk < chunks.size() && chunks[chunk] ? chunks[chunk][item & kMask] : nullptr;
    }
    bool Has(ItemIndex item) const { return Get(item) != nullptr; }

    void Set(ItemIndex item, HTREEITEM handle)
    {
        const std::size_t chunk = item >> kBits;
        if (chunk >= chunks.size()) chunks.resize(std::max<std::size_t>(chunk + 1, chunks.size() * 2));
        if (!chunks[chunk]) chunks[chunk].reset(new HTREEITEM[kMask + 1]());
        chunks[chunk][item & kMask] = handle;
    }

    void Clear(ItemIndex item)
    {
        if (Has(item)) Set(item, nullptr);
    }

private:
    static constexpr unsigned kBits = 10;
    static constexpr ItemIndex kMask = (1u << kBits) - 1;

    std::vector<std::unique_ptr<HTREEITEM[]>> chunks;
};

}  // namespace zelt
