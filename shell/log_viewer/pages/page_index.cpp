#include "shell/log_viewer/pages/page_index.h"

#include <algorithm>
#include <new>
#include <utility>

#include "shell/log_viewer/tree_row.h"

namespace zelt {
namespace {

// As many as the list of errors measures.
constexpr std::size_t kLongestErrors = 16;
// About the room that an element takes in the file besides its texts.
constexpr std::size_t kMarkup = 32;

void KeepIfLong(std::vector<std::string>& longest, std::string_view label)
{
    if (longest.size() == kLongestErrors && label.size() <= longest.back().size()) return;
    if (longest.size() == kLongestErrors) longest.pop_back();
    const auto place = std::find_if(longest.begin(), longest.end(),
                                    [&](const std::string& other) { return other.size() < label.size(); });
    longest.insert(place, std::string(label));
}

}  // namespace

void PageIndexer::Begin(const LogEvent& event)
{
    if (items == kNoItem - 1) throw std::bad_alloc();
    if (event.depth == 0) ++outermost;
    if (IsError(event)) {
        ++errors;
        KeepIfLong(longestErrors, event.text);
    }
    open.push_back({items++, event.kind, false});
    check.Add(event);
    bytes += event.name.size() + event.text.size() + kMarkup;
}

void PageIndexer::End(int depth)
{
    const Open& ended = open[static_cast<std::size_t>(depth)];
    if (ended.isLong) batch.ends.emplace_back(ended.item, items);
    open.resize(static_cast<std::size_t>(depth));
}

void PageIndexer::EndPage(std::int64_t offset, int line)
{
    page.end = offset;
    page.count = items - page.first;
    page.errors = errors - page.firstError;
    page.check = check.Sum();
    if (page.count > 0) batch.pages.push_back(std::move(page));
    page = {offset, offset, items, 0, errors, 0, line, outermost, 0, {}};
    for (std::size_t depth = 0; depth < open.size(); ++depth) {
        page.open.push_back({open[depth].item, open[depth].kind});
        if (open[depth].isLong) continue;
        open[depth].isLong = true;
        batch.longItems.push_back({open[depth].item, depth ? open[depth - 1].item : kNoItem, kNoItem});
    }
    check = {};
    bytes = 0;
}

void PageIndexer::EndPages(std::int64_t offset)
{
    EndPage(offset, 0);
    batch.isLast = true;
    batch.open = page.open;
}

PageBatch PageIndexer::Take()
{
    batch.longestErrors = longestErrors;
    return std::exchange(batch, {});
}

}  // namespace zelt
