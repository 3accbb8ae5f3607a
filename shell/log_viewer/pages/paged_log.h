// A log of any size for a viewer: its items in file order, by number. What was read in pages is read again when it is needed, and
// few pages are kept; what is in no page, such as the whole of a small log, is in a LogModel. Knows nothing about windows.
//
// While the log is read, items are added, and the relatives of some are not known yet. If a page fails its PageCheck when it is
// read again, it keeps its number of items, and each item says that it is no longer there.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shell/log_viewer/log_model.h"
#include "shell/log_viewer/pages/page_file.h"
#include "shell/log_viewer/pages/page_index.h"

namespace zelt {

class PagedLog {
public:
    // For a log that is read in pages. Call first.
    void SetFile(std::unique_ptr<PageFile> pageFile) { file = std::move(pageFile); }
    void AddPages(PageBatch&& batch);
    // In file order, after the pages. Throws std::bad_alloc, leaving the log as it was.
    ItemIndex Add(const TreeRow& row);
    void Finish();
    bool IsFinished() const { return finished; }
    bool HasPages() const { return !pages.empty(); }

    ItemIndex Size() const { return base + rest.Size() - StandIns(); }
    SmallImage Image(ItemIndex item) const;
    // Valid until the next call that may need another page.
    std::string_view Label(ItemIndex item) const;
    bool IsRemoved(ItemIndex item) const;
    // Whether all descendants of the item have been read.
    bool IsComplete(ItemIndex item) const { return finished || End(item) < Size(); }
    // How many outermost items precede the item or its outermost ancestor, to within a page.
    ItemIndex OutermostBefore(ItemIndex item) const;

    // Relatives, without removed items; kNoItem if there is none. To FirstChild, kNoItem means the tree's root.
    ItemIndex Parent(ItemIndex item) const;
    // After the last descendant; Size() if that is not known yet.
    ItemIndex End(ItemIndex item) const;
    ItemIndex FirstChild(ItemIndex item) const;
    ItemIndex NextSibling(ItemIndex item) const;
    bool HasChildren(ItemIndex item) const { return FirstChild(item) != kNoItem; }
    ItemIndex Outermost(ItemIndex item) const;

    // In tree order, wrapping at both ends; kNoItem when nothing is left.
    ItemIndex Next(ItemIndex item) const;
    ItemIndex Previous(ItemIndex item) const;
    ItemIndex First() const { return FirstChild(kNoItem); }

    // The errors and warnings, in tree order.
    std::size_t ErrorCount() const { return pagedErrors + rest.Errors().size(); }
    ItemIndex Error(std::size_t number) const;
    // Its line in the file, from 1; 0 for one that is no longer there.
    int ErrorLine(std::size_t number) const;
    // The innermost call around an item; kNoItem if there is none.
    ItemIndex CallAround(ItemIndex item) const;
    // The number of the first one after an item; ErrorCount if there is none.
    std::size_t FirstErrorAfter(ItemIndex item) const;
    std::vector<std::string> LongestErrors(std::size_t most) const;

    // Removes an item with everything below it. Call it only for items that IsQuery, in order from the first, and skip none.
    // Then call CleanErrors once.
    bool IsQuery(ItemIndex item) const;
    void Remove(ItemIndex item);
    void CleanErrors() { rest.CleanErrors(); }

    // For searches: the items of the page that `item` is in, and that page; or the items of the rest.
    struct Stretch {
        ItemIndex first, end;
        const Page* page;  // null for the rest
    };
    Stretch StretchOf(ItemIndex item) const;
    std::string_view BytesOf(const Page& page) const { return file->Read(page.offset, page.end); }
    const LogModel& Rest() const { return rest; }
    ItemIndex InRest(ItemIndex item) const { return item - base + StandIns(); }

private:
    // A page's items, preceded by a stand-in for each item that is open at its beginning.
    struct LoadedPage {
        std::size_t number;
        LogModel items;
        unsigned used;
    };
    // Where an item is: in the model of its page, or in the rest.
    struct Place {
        const LogModel& items;
        ItemIndex item;
        const std::vector<OpenItem>& open;
        ItemIndex base;
        ItemIndex ToLog(ItemIndex own) const
        {
            return own < open.size() ? open[own].item : own - static_cast<ItemIndex>(open.size()) + base;
        }
    };

    ItemIndex StandIns() const { return static_cast<ItemIndex>(openAtRest.size()); }
    Place PlaceOf(ItemIndex item) const;
    std::size_t PageOf(ItemIndex item) const;
    std::size_t PageOfError(std::size_t number) const;
    const LoadedPage& Load(std::size_t number) const;
    void Read(const Page& page, LogModel& items) const;
    void FillWithLost(const Page& page, LogModel& items) const;
    const LongItem* FindLong(ItemIndex item) const;
    ItemIndex FirstKept(ItemIndex item, ItemIndex end) const;

    std::unique_ptr<PageFile> file;
    std::vector<Page> pages;
    std::vector<LongItem> longItems;  // in order
    std::vector<std::string> longestErrors;
    std::size_t pagedErrors = 0;
    ItemIndex base = 0;  // how many items are in pages
    std::vector<OpenItem> openAtRest;
    LogModel rest;
    bool finished = false;
    ItemIndex removedBefore = 0;  // the items before this one that IsQuery are removed

    mutable std::vector<std::unique_ptr<LoadedPage>> loaded;
    mutable LoadedPage* latest = nullptr;
    mutable unsigned uses = 0;
};

}  // namespace zelt
