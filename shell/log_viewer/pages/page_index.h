// What a viewer keeps of each page of a log, a part of about 256 KB: the numbers of its items, and what is needed to read it
// again. Built while the log is read for the first time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "log_reader/log_markup.h"
#include "log_reader/log_parts.h"
#include "shell/log_viewer/log_model.h"

namespace zelt {

// Sums up the kinds, the depths and the lengths of a page's items. A page that is read again must give the same sum.
class PageCheck {
public:
    void Add(const LogEvent& event)
    {
        const auto shape = static_cast<std::uint32_t>(event.kind) + 16 * static_cast<std::uint32_t>(event.depth);
        Mix(shape);
        Mix(static_cast<std::uint32_t>(event.name.size()) + 0x10001 * static_cast<std::uint32_t>(event.text.size()));
    }
    std::uint32_t Sum() const { return sum; }

private:
    void Mix(std::uint32_t value) { sum = (sum ^ value) * 0x01000193 + (sum >> 15); }

    std::uint32_t sum = 0x811C9DC5;
};

// An item that is open where a page begins, with its kind.
struct OpenItem {
    ItemIndex item;
    EventKind kind;  // Call, Argument or Value
};

struct Page {
    std::int64_t offset, end;  // in the file
    ItemIndex first, count;    // its items
    ItemIndex firstError, errors;
    int firstLine;             // from 1
    ItemIndex firstOutermost;  // how many outermost items precede it
    std::uint32_t check;
    std::vector<OpenItem> open;  // the items that are open where it begins, from the outermost
};

// An item that is open where some page begins: its relatives are in several pages.
struct LongItem {
    ItemIndex item, parent;
    ItemIndex end;  // after the last descendant; kNoItem while it is not known
};

// What is new since the last batch.
struct PageBatch {
    std::vector<Page> pages;
    std::vector<LongItem> longItems;                    // those that are new
    std::vector<std::pair<ItemIndex, ItemIndex>> ends;  // of long items: the item and its end
    std::vector<std::string> longestErrors;             // of the log up to here; replaces the previous ones
    bool isLast = false;                                // the rows that follow are in no page
    std::vector<OpenItem> open;                         // if isLast: the items that are open where these rows begin

    bool IsEmpty() const { return pages.empty() && !isLast; }
};

// Sees the events of a log and cuts them into pages.
class PageIndexer {
public:
    static constexpr std::size_t kPageBytes = 256 * 1024;

    void Begin(const LogEvent& event);
    void End(int depth);
    // Whether the page is long enough to end here. Call it after the end of an element.
    bool IsPageFull() const { return bytes >= kPageBytes && (open.empty() || bytes >= 2 * kPageBytes); }
    // Call at the beginning of a line.
    void EndPage(std::int64_t offset, int line);
    // Ends the last page; what follows comes as rows.
    void EndPages(std::int64_t offset);

    // Hands over what is new.
    PageBatch Take();

private:
    struct Open {
        ItemIndex item;
        EventKind kind;
        bool isLong;
    };

    PageBatch batch;
    std::vector<Open> open;
    std::vector<std::string> longestErrors;
    Page page = {kLogHeader.size(), 0, 0, 0, 0, 0, 3, 0, 0, {}};
    PageCheck check;
    ItemIndex items = 0, errors = 0, outermost = 0;
    std::size_t bytes = 0;  // of the page, roughly
};

}  // namespace zelt
