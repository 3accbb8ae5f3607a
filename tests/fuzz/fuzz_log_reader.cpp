// Any bytes are a log to the reader. What it gives is a tree whose items each end once and whose labels are UTF-8; how the
// bytes come and who gives up when makes no difference.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "memory_input.h"

namespace zelt::test {
namespace {

bool IsUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto first = static_cast<unsigned char>(text[i]);
        if (first == 0 || (first >= 0x80 && first < 0xC2)) return false;
        std::uint32_t code = first < 0xE0 ? first & 0x1F : first < 0xF0 ? first & 0x0F : first & 0x07;
        const int more = first < 0x80 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
        for (int left = more; left > 0; --left) {
            if (++i == text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return false;
            code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
        }
        if (more == 2 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) return false;
        if (more == 3 && (code < 0x10000 || code > 0x10FFFF)) return false;
    }
    return true;
}

struct Seen {
    LogReadResult result = LogReadResult::NotReadable;
    std::vector<std::size_t> items;  // a number for each that stands for all that it says
    bool operator==(const Seen&) const = default;
};

class Watcher final : public LogSink {
public:
    // `mayLack`: comments let out a call before it is known whether it has children.
    Watcher(Seen& seen, bool mayLack, bool wantsLines, std::size_t stopAt)
        : seen(seen), mayLack(mayLack), wantsLines(wantsLines), stopAt(stopAt)
    {}

    void Item(const LogItem& item) override
    {
        CHECK(static_cast<std::size_t>(item.depth) == open);
        CHECK(isParent || item.depth <= depth);
        CHECK(!isParent || mayLack || item.depth == depth + 1);
        CHECK(IsUtf8(item.label));
        CHECK(item.nameLength <= item.label.size());
        const bool hasParts = item.image >= LogImage::InwardCall && item.image <= LogImage::OutArgument;
        if (hasParts) CHECK(NameOf(item).size() + ObjectOrTypeOf(item).size() < item.label.size());
        CHECK(!(item.isError && item.hasChildren));
        CHECK(wantsLines ? item.line > 0 : item.line == 0);
        depth = item.depth;
        isParent = item.hasChildren;
        ++open;
        std::size_t hash = std::hash<std::string_view>()(item.label);
        for (const std::size_t part : {static_cast<std::size_t>(item.depth), static_cast<std::size_t>(item.image),
                                       static_cast<std::size_t>(item.hasChildren), item.nameLength}) {
            hash = hash * 31 + part;
        }
        seen.items.push_back(hash);
    }
    void ItemEnd(int itemDepth) override
    {
        CHECK(open == static_cast<std::size_t>(itemDepth) + 1);
        --open;
    }
    void ParseError(int line) override { CHECK(line >= 0); }
    bool Continue() override { return ++ends != stopAt; }
    bool WantsLines() const override { return wantsLines; }

    void Finish() const
    {
        CHECK(seen.items.empty() || !isParent || mayLack || seen.result == LogReadResult::Cancelled);
        CHECK(open == 0 || seen.result == LogReadResult::Cancelled);
    }
    std::size_t Ends() const { return ends; }

private:
    Seen& seen;
    const bool mayLack, wantsLines;
    const std::size_t stopAt;
    std::size_t open = 0, ends = 0;
    int depth = -1;
    bool isParent = true;
};

}  // namespace

void Test(std::string_view bytes)
{
    const bool mayLack = bytes.find("<!--") != std::string_view::npos;
    Seen whole;
    Watcher watcher(whole, mayLack, false, 0);
    whole.result = ReadLog(MemoryFile(bytes).descriptor, watcher);
    CHECK(whole.result == LogReadResult::Complete || whole.result == LogReadResult::Incomplete);
    watcher.Finish();

    // Other pieces with other bytes; the number of bytes decides which.
    Seen again;
    Watcher second(again, mayLack, true, 0);
    Pieces pieces(bytes, 1 + bytes.size() % 700);
    again.result = ReadLog(pieces, second);
    second.Finish();
    // How far the parser gets behind what damages a log depends on how much of it is there at once.
    CHECK(again.result == whole.result);
    CHECK(again == whole || whole.result == LogReadResult::Incomplete);

    if (watcher.Ends() == 0) return;
    Seen part;
    Watcher third(part, mayLack, false, 1 + bytes.size() % watcher.Ends());
    Pieces rest(bytes, bytes.size());
    part.result = ReadLog(rest, third);
    third.Finish();
    CHECK(part.result == LogReadResult::Cancelled);
    CHECK(part.items.size() <= whole.items.size() &&
          std::equal(part.items.begin(), part.items.end(), whole.items.begin()));
}

}  // namespace zelt::test
