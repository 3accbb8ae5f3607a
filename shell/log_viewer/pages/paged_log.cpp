#include "shell/log_viewer/pages/paged_log.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "shell/log_viewer/tree_images.h"

namespace zelt {
namespace {

constexpr std::size_t kLoadedPages = 12;
constexpr std::string_view kLost = "<no longer in the file>";

class BytesInput final : public LogInput {
public:
    explicit BytesInput(std::string_view bytes) : rest(bytes) {}

    int Read(char* out, int length) override
    {
        const std::size_t count = rest.copy(out, static_cast<std::size_t>(length));
        rest.remove_prefix(count);
        return static_cast<int>(count);
    }

private:
    std::string_view rest;
};

// Adds the events of a page that is read again to a model. Stops when there are more than the page had before.
class PageBuilder final : public LogSink {
public:
    PageBuilder(LogModel& items, const Page& page) : items(items), left(page.count), linesBefore(page.firstLine - 1) {}

    void Begin(const LogEvent& event) override
    {
        if (left == 0) {
            isOther = true;
            return;
        }
        --left;
        check.Add(event);
        label.clear();
        AppendLabel(label, event);
        items.Add({event.depth, ImageOf(event), event.hasChildren, IsError(event), label, linesBefore + event.line});
    }
    bool WantsLines() const override { return true; }
    bool Continue() override { return !isOther; }
    bool IsSame(std::uint32_t sum) const { return !isOther && left == 0 && check.Sum() == sum; }

private:
    LogModel& items;
    ItemIndex left;
    const int linesBefore;
    bool isOther = false;
    PageCheck check;
    std::string label;
};

void AddStandIns(LogModel& items, std::size_t count)
{
    for (std::size_t depth = 0; depth < count; ++depth) {
        items.Add({static_cast<int>(depth), kImageValue, true, false, {}});
    }
}

bool IsQueryLabel(std::string_view label)
{
    // Only a label's first 1023 characters count.
    return label.substr(0, 1023).find("QueryInterface") != std::string_view::npos;
}

}  // namespace

void PagedLog::AddPages(PageBatch&& batch)
{
    // The long items first: a page may contain the end of an item that begins in another page of the batch.
    longItems.insert(longItems.end(), batch.longItems.begin(), batch.longItems.end());
    for (const auto& [item, end] : batch.ends) const_cast<LongItem*>(FindLong(item))->end = end;
    pages.insert(pages.end(), std::make_move_iterator(batch.pages.begin()), std::make_move_iterator(batch.pages.end()));
    if (!pages.empty()) {
        base = pages.back().first + pages.back().count;
        pagedErrors = pages.back().firstError + pages.back().errors;
    }
    longestErrors = std::move(batch.longestErrors);
    if (batch.isLast) {
        openAtRest = std::move(batch.open);
        AddStandIns(rest, openAtRest.size());
    }
}

ItemIndex PagedLog::Add(const TreeRow& row)
{
    if (Size() >= kNoItem - 1) throw std::bad_alloc();
    rest.Add(row);
    return Size() - 1;
}

void PagedLog::Finish()
{
    rest.Finish();
    finished = true;
}

std::size_t PagedLog::PageOf(ItemIndex item) const
{
    const auto after = std::upper_bound(pages.begin(), pages.end(), item,
                                        [](ItemIndex wanted, const Page& page) { return wanted < page.first; });
    return static_cast<std::size_t>(after - pages.begin()) - 1;
}

PagedLog::Place PagedLog::PlaceOf(ItemIndex item) const
{
    if (item >= base) return {rest, InRest(item), openAtRest, base};
    const LoadedPage* found = latest;
    if (!found || item - pages[found->number].first >= pages[found->number].count) found = &Load(PageOf(item));
    const Page& page = pages[found->number];
    return {found->items, item - page.first + static_cast<ItemIndex>(page.open.size()), page.open, page.first};
}

const PagedLog::LoadedPage& PagedLog::Load(std::size_t number) const
{
    auto place =
        std::find_if(loaded.begin(), loaded.end(), [number](const auto& one) { return one->number == number; });
    if (place == loaded.end()) {
        auto read = std::make_unique<LoadedPage>();
        read->number = number;
        Read(pages[number], read->items);
        if (loaded.size() < kLoadedPages) {
            place = loaded.insert(loaded.end(), std::move(read));
        } else {
            place = std::min_element(loaded.begin(), loaded.end(),
                                     [](const auto& a, const auto& b) { return a->used < b->used; });
            *place = std::move(read);
        }
    }
    latest = place->get();
    latest->used = ++uses;
    return *latest;
}

void PagedLog::Read(const Page& page, LogModel& items) const
{
    std::vector<EventKind> kinds;
    for (const OpenItem& item : page.open) kinds.push_back(item.kind);
    AddStandIns(items, kinds.size());
    PageBuilder builder(items, page);
    const std::string_view bytes = BytesOf(page);
    if (bytes.size() == static_cast<std::size_t>(page.end - page.offset)) {
        BytesInput input(bytes);
        ReadPart(input, kinds, builder);
    }
    if (!builder.IsSame(page.check)) {
        items = LogModel();
        FillWithLost(page, items);
    }
    items.Finish();
    const auto own = static_cast<ItemIndex>(page.open.size());
    for (ItemIndex item = own; item < items.Size() && item - own + page.first < removedBefore; ++item) {
        if (items.Image(item) == kImageInfo && IsQueryLabel(items.Label(item))) items.Remove(item);
    }
}

// Adds as many items as the page had. Items that continue in the next pages keep the later items of this page inside them.
void PagedLog::FillWithLost(const Page& page, LogModel& items) const
{
    AddStandIns(items, page.open.size());
    int depth = static_cast<int>(page.open.size());
    for (ItemIndex item = page.first; item < page.first + page.count; ++item) {
        items.Add({depth, kImageWarning, false, item - page.first < page.errors, kLost});
        if (FindLong(item)) ++depth;
    }
}

const LongItem* PagedLog::FindLong(ItemIndex item) const
{
    const auto found = std::lower_bound(longItems.begin(), longItems.end(), item,
                                        [](const LongItem& one, ItemIndex wanted) { return one.item < wanted; });
    return found != longItems.end() && found->item == item ? &*found : nullptr;
}

SmallImage PagedLog::Image(ItemIndex item) const
{
    const Place place = PlaceOf(item);
    return place.items.Image(place.item);
}

std::string_view PagedLog::Label(ItemIndex item) const
{
    const Place place = PlaceOf(item);
    return place.items.Label(place.item);
}

bool PagedLog::IsRemoved(ItemIndex item) const
{
    if (item < base && removedBefore == 0) return false;
    const Place place = PlaceOf(item);
    return place.items.IsRemoved(place.item);
}

ItemIndex PagedLog::OutermostBefore(ItemIndex item) const
{
    if (pages.empty()) return 0;
    return pages[PageOf(std::min(item, base - 1))].firstOutermost;
}

ItemIndex PagedLog::Parent(ItemIndex item) const
{
    const Place place = PlaceOf(item);
    const ItemIndex parent = place.items.Parent(place.item);
    return parent == kNoItem ? kNoItem : place.ToLog(parent);
}

ItemIndex PagedLog::End(ItemIndex item) const
{
    if (item < base) {
        if (const LongItem* known = FindLong(item)) {
            if (known->end != kNoItem) return known->end;
            // It is open where the rest begins.
            for (ItemIndex own = 0; own < StandIns(); ++own) {
                if (openAtRest[own].item != item) continue;
                const ItemIndex end = rest.End(own);
                return end == kNoItem ? Size() : end - StandIns() + base;
            }
            return Size();
        }
    }
    const Place place = PlaceOf(item);
    const ItemIndex end = place.items.End(place.item);
    return end == kNoItem ? Size() : place.ToLog(end);
}

ItemIndex PagedLog::FirstKept(ItemIndex item, ItemIndex end) const
{
    while (item < end && IsRemoved(item)) item = End(item);
    return item < end ? item : kNoItem;
}

ItemIndex PagedLog::FirstChild(ItemIndex item) const
{
    return item == kNoItem ? FirstKept(0, Size()) : FirstKept(item + 1, End(item));
}

ItemIndex PagedLog::NextSibling(ItemIndex item) const
{
    const ItemIndex parent = Parent(item);
    return FirstKept(End(item), parent == kNoItem ? Size() : End(parent));
}

ItemIndex PagedLog::Outermost(ItemIndex item) const
{
    for (ItemIndex parent; (parent = Parent(item)) != kNoItem;) item = parent;
    return item;
}

ItemIndex PagedLog::CallAround(ItemIndex item) const
{
    do item = Parent(item);
    while (item != kNoItem && Image(item) != kImageCallIn && Image(item) != kImageCallOut);
    return item;
}

ItemIndex PagedLog::Next(ItemIndex item) const
{
    const ItemIndex next = FirstKept(item + 1, Size());
    return next != kNoItem ? next : First();
}

ItemIndex PagedLog::Previous(ItemIndex item) const
{
    for (ItemIndex steps = 0; steps < Size(); ++steps) {
        item = item == 0 ? Size() - 1 : item - 1;
        if (!IsRemoved(item)) return item;
    }
    return kNoItem;
}

std::size_t PagedLog::PageOfError(std::size_t number) const
{
    const auto after = std::upper_bound(pages.begin(), pages.end(), number,
                                        [](std::size_t wanted, const Page& page) { return wanted < page.firstError; });
    return static_cast<std::size_t>(after - pages.begin()) - 1;
}

ItemIndex PagedLog::Error(std::size_t number) const
{
    if (number >= pagedErrors) return rest.Errors()[number - pagedErrors] - StandIns() + base;
    const std::size_t at = PageOfError(number);
    const Page& page = pages[at];
    return Load(at).items.Errors()[number - page.firstError] - static_cast<ItemIndex>(page.open.size()) + page.first;
}

int PagedLog::ErrorLine(std::size_t number) const
{
    if (number >= pagedErrors) return rest.ErrorLines()[number - pagedErrors];
    const std::size_t page = PageOfError(number);
    return Load(page).items.ErrorLines()[number - pages[page].firstError];
}

std::size_t PagedLog::FirstErrorAfter(ItemIndex item) const
{
    const auto after = [](const LogModel& items, ItemIndex own) {
        return static_cast<std::size_t>(std::upper_bound(items.Errors().begin(), items.Errors().end(), own) -
                                        items.Errors().begin());
    };
    if (item >= base) return pagedErrors + after(rest, InRest(item));
    const Page& page = pages[PageOf(item)];
    if (page.errors == 0) return page.firstError;
    const Place place = PlaceOf(item);
    return page.firstError + after(place.items, place.item);
}

std::vector<std::string> PagedLog::LongestErrors(std::size_t most) const
{
    std::vector<ItemIndex> longest(std::min(most, rest.Errors().size()));
    std::partial_sort_copy(rest.Errors().begin(), rest.Errors().end(), longest.begin(), longest.end(),
                           [this](ItemIndex a, ItemIndex b) { return rest.Label(a).size() > rest.Label(b).size(); });
    std::vector<std::string> labels = longestErrors;
    for (const ItemIndex item : longest) labels.emplace_back(rest.Label(item));
    return labels;
}

bool PagedLog::IsQuery(ItemIndex item) const
{
    const Place place = PlaceOf(item);
    return place.items.Image(place.item) == kImageInfo && IsQueryLabel(place.items.Label(place.item));
}

void PagedLog::Remove(ItemIndex item)
{
    removedBefore = item + 1;
    if (item >= base) {
        rest.Remove(InRest(item));
        return;
    }
    PlaceOf(item);
    latest->items.Remove(item - pages[latest->number].first +
                         static_cast<ItemIndex>(pages[latest->number].open.size()));
}

PagedLog::Stretch PagedLog::StretchOf(ItemIndex item) const
{
    if (item >= base) return {base, Size(), nullptr};
    const Page& page = pages[PageOf(item)];
    return {page.first, page.first + page.count, &page};
}

}  // namespace zelt
