#include "shell/log_viewer/log_model.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>

namespace zelt {
namespace {

constexpr std::size_t kBlockSize = 1 << 20;
constexpr std::uint32_t kMostLabels = 1u << 27;
constexpr std::size_t kFirstTable = 1 << 12;
// A log with more labels than half of this has mostly labels of their own: further ones are not looked for again.
constexpr std::size_t kLargestTable = 1 << 22;

}  // namespace

ItemIndex LogModel::Add(const LogItem& item)
{
    const ItemIndex index = Size();
    if (index == kNoItem) throw std::bad_alloc();
    const auto depth = static_cast<std::size_t>(item.depth);
    open.reserve(depth + 1);
    if (item.isError) {
        if (errors.size() == errors.capacity()) errors.reserve(errors.size() + errors.size() / 2 + 64);
    }
    const ItemIndex parent = depth == 0 ? kNoItem : open[depth - 1];
    items.push_back({Intern(item.label), static_cast<std::uint32_t>(item.image), 0, parent, kNoItem});
    for (std::size_t level = depth; level < open.size(); ++level) items[open[level]].end = index;
    open.resize(depth);
    open.push_back(index);
    if (item.isError) errors.push_back(index);
    return index;
}

void LogModel::Finish()
{
    for (const ItemIndex item : open) items[item].end = Size();
    open.clear();
    table = {};
}

std::string_view LogModel::LabelText(std::uint32_t number) const
{
    std::uint32_t length;
    std::memcpy(&length, labels[number], sizeof length);
    return {labels[number] + sizeof length, length};
}

std::string_view LogModel::Label(ItemIndex item) const { return LabelText(items[item].label); }

std::uint32_t LogModel::Intern(std::string_view label)
{
    if (inTable * 2 >= table.size() && table.size() < kLargestTable) GrowTable();
    const std::size_t mask = table.size() - 1;
    std::size_t slot = std::hash<std::string_view>()(label) & mask;
    for (; table[slot] != kNoItem; slot = (slot + 1) & mask) {
        if (LabelText(table[slot]) == label) return table[slot];
    }
    if (labels.size() == kMostLabels) throw std::bad_alloc();
    const auto number = static_cast<std::uint32_t>(labels.size());
    labels.push_back(Store(label));
    if (inTable * 2 < table.size()) {
        table[slot] = number;
        ++inTable;
    }
    return number;
}

const char* LogModel::Store(std::string_view label)
{
    const auto length = static_cast<std::uint32_t>(label.size());
    const std::size_t size = sizeof length + label.size();
    if (size > left) {
        const std::size_t blockSize = std::max(size, kBlockSize);
        blocks.reserve(blocks.size() + 1);
        blocks.push_back(std::unique_ptr<char[]>(new char[blockSize]));
        free = blocks.back().get();
        left = blockSize;
    }
    char* stored = free;
    std::memcpy(stored, &length, sizeof length);
    if (!label.empty()) std::memcpy(stored + sizeof length, label.data(), label.size());
    free += size;
    left -= size;
    return stored;
}

void LogModel::GrowTable()
{
    std::vector<std::uint32_t> larger(table.empty() ? kFirstTable : table.size() * 2, kNoItem);
    const std::size_t mask = larger.size() - 1;
    for (const std::uint32_t number : table) {
        if (number == kNoItem) continue;
        std::size_t slot = std::hash<std::string_view>()(LabelText(number)) & mask;
        while (larger[slot] != kNoItem) slot = (slot + 1) & mask;
        larger[slot] = number;
    }
    table = std::move(larger);
}

ItemIndex LogModel::FirstKept(ItemIndex item, ItemIndex end) const
{
    while (item < end && items[item].removed) item = items[item].end;
    return item < end ? item : kNoItem;
}

ItemIndex LogModel::FirstChild(ItemIndex item) const
{
    if (item == kNoItem) return FirstKept(0, Size());
    return FirstKept(item + 1, items[item].end);
}

ItemIndex LogModel::NextSibling(ItemIndex item) const
{
    const ItemIndex parent = items[item].parent;
    return FirstKept(items[item].end, parent == kNoItem ? Size() : items[parent].end);
}

ItemIndex LogModel::Next(ItemIndex item) const
{
    const ItemIndex next = FirstKept(item + 1, Size());
    return next != kNoItem ? next : First();
}

ItemIndex LogModel::Previous(ItemIndex item) const
{
    for (ItemIndex steps = 0; steps < Size(); ++steps) {
        item = item == 0 ? Size() - 1 : item - 1;
        if (!items[item].removed) return item;
    }
    return kNoItem;
}

void LogModel::Remove(ItemIndex item)
{
    const ItemIndex end = items[item].end;
    for (; item < end; ++item) items[item].removed = 1;
}

void LogModel::CleanErrors()
{
    std::erase_if(errors, [this](ItemIndex item) { return IsRemoved(item); });
}

}  // namespace zelt
