#include "shell/log_viewer/log_model.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace zelt {
namespace {

constexpr std::size_t kBlockSize = 1 << 18;
constexpr std::uint32_t kMostLabels = 1u << 27;
constexpr std::size_t kFirstTable = 1 << 12;
// In a log with more labels than half of this, most labels are unique: later ones do not enter the table.
constexpr std::size_t kLargestTable = 1 << 22;
// A label not found within this many slots is stored again. This limits the cost of a log whose labels are made to collide.
constexpr int kMostProbes = 32;

std::uint32_t HashOf(std::string_view text)
{
    constexpr std::uint32_t kFactor = 0x9E3779B1;
    const auto mix = [](std::uint32_t hash) { return hash ^ (hash >> 15); };
    const char* bytes = text.data();
    std::size_t rest = text.size();
    auto hash = static_cast<std::uint32_t>(rest) * kFactor;
    for (; rest >= 4; rest -= 4, bytes += 4) {
        std::uint32_t word;
        std::memcpy(&word, bytes, sizeof word);
        hash = mix((hash ^ word) * kFactor);
    }
    std::uint32_t last = 0;
    for (; rest > 0; --rest, ++bytes) last = last << 8 | static_cast<unsigned char>(*bytes);
    return mix((hash ^ last) * kFactor);
}

// Called only for texts with equal hashes, so they seldom differ.
bool AreEqual(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    std::size_t at = 0;
    for (; at + 4 <= a.size(); at += 4) {
        std::uint32_t left, right;
        std::memcpy(&left, a.data() + at, sizeof left);
        std::memcpy(&right, b.data() + at, sizeof right);
        if (left != right) return false;
    }
    for (; at < a.size(); ++at) {
        if (a[at] != b[at]) return false;
    }
    return true;
}

}  // namespace

ItemIndex LogModel::Add(const TreeRow& row)
{
    const ItemIndex index = Size();
    if (index == kNoItem) throw std::bad_alloc();
    const auto depth = static_cast<std::size_t>(row.depth);
    if (open.capacity() <= depth) open.reserve(2 * depth + 16);
    if (row.isError) {
        const std::size_t room = errors.size() + errors.size() / 2 + 64;
        if (errors.size() == errors.capacity()) errors.reserve(room);
        if (errorLines.size() == errorLines.capacity()) errorLines.reserve(room);
    }
    const ItemIndex parent = depth == 0 ? kNoItem : open[depth - 1];
    items.Add({Intern(row.label), static_cast<std::uint32_t>(row.image), 0, parent, kNoItem});
    for (std::size_t level = depth; level < open.size(); ++level) items[open[level]].end = index;
    open.resize(depth);
    open.push_back(index);
    if (row.isError) {
        errors.push_back(index);
        errorLines.push_back(row.line);
    }
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
    const std::uint32_t hash = HashOf(label);
    std::size_t slot = hash & mask;
    int probes = 0;
    for (; table[slot].label != kNoItem && probes < kMostProbes; slot = (slot + 1) & mask, ++probes) {
        if (table[slot].hash == hash && AreEqual(LabelText(table[slot].label), label)) return table[slot].label;
    }
    if (labels.Size() == kMostLabels) throw std::bad_alloc();
    const auto number = static_cast<std::uint32_t>(labels.Size());
    labels.Add(Store(label));
    if (probes < kMostProbes && inTable * 2 < table.size()) {
        table[slot] = {hash, number};
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
    std::vector<Slot> larger(table.empty() ? kFirstTable : table.size() * 2, Slot{0, kNoItem});
    const std::size_t mask = larger.size() - 1;
    for (const Slot& known : table) {
        if (known.label == kNoItem) continue;
        std::size_t slot = known.hash & mask;
        while (larger[slot].label != kNoItem) slot = (slot + 1) & mask;
        larger[slot] = known;
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
    std::size_t kept = 0;
    for (std::size_t number = 0; number < errors.size(); ++number) {
        if (IsRemoved(errors[number])) continue;
        errors[kept] = errors[number];
        errorLines[kept++] = errorLines[number];
    }
    errors.resize(kept);
    errorLines.resize(kept);
}

}  // namespace zelt
