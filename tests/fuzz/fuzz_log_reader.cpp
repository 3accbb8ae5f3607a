// The reader accepts any bytes. Its events form a tree, and their names and texts are UTF-8, no matter in which pieces the
// bytes arrive or when the caller cancels.
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
    std::vector<std::size_t> events;  // a hash of each event
    bool operator==(const Seen&) const = default;
};

class Watcher final : public LogSink {
public:
    // `mayLack`: an event that should have children may have none, because a comment makes the reader report a call before
    // it knows whether the call has children.
    Watcher(Seen& seen, bool mayLack, bool wantsLines, std::size_t stopAt)
        : seen(seen), mayLack(mayLack), wantsLines(wantsLines), stopAt(stopAt)
    {}

    void Begin(const LogEvent& event) override
    {
        CHECK(static_cast<std::size_t>(event.depth) == open.size());
        CHECK(isParent || event.depth <= depth);
        CHECK(!isParent || mayLack || event.depth == depth + 1);
        CHECK(IsUtf8(event.name));
        CHECK(IsUtf8(event.text));
        CHECK(event.kind <= EventKind::Other);
        const bool hasName = event.kind == EventKind::Call || event.kind == EventKind::Argument;
        CHECK(hasName || (event.name.empty() && !event.inward));
        CHECK(!(event.isEmpty && event.hasChildren));
        CHECK(wantsLines ? event.line > 0 : event.line == 0);
        depth = event.depth;
        isParent = event.hasChildren;
        open.push_back(event.kind);
        const std::hash<std::string_view> hashOf;
        std::size_t hash = hashOf(event.text);
        for (const std::size_t part :
             {hashOf(event.name), static_cast<std::size_t>(event.depth), static_cast<std::size_t>(event.kind),
              static_cast<std::size_t>(event.inward), static_cast<std::size_t>(event.hasChildren)}) {
            hash = hash * 31 + part;
        }
        seen.events.push_back(hash);
    }
    void End(EventKind kind, int eventDepth) override
    {
        CHECK(open.size() == static_cast<std::size_t>(eventDepth) + 1);
        CHECK(open.back() == kind);
        open.pop_back();
    }
    void ParseError(int line) override { CHECK(line >= 0); }
    bool Continue() override { return ++ends != stopAt; }
    bool WantsLines() const override { return wantsLines; }

    void Finish() const
    {
        CHECK(seen.events.empty() || !isParent || mayLack || seen.result == LogReadResult::Cancelled);
        CHECK(open.empty() || seen.result == LogReadResult::Cancelled);
    }
    std::size_t Ends() const { return ends; }

private:
    Seen& seen;
    const bool mayLack, wantsLines;
    const std::size_t stopAt;
    std::vector<EventKind> open;
    std::size_t ends = 0;
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

    // Reads in pieces whose length depends on the number of bytes.
    Seen again;
    Watcher second(again, mayLack, true, 0);
    Pieces pieces(bytes, 1 + bytes.size() % 700);
    again.result = ReadLog(pieces, second);
    second.Finish();
    // How far the parser gets after damage depends on the size of the pieces.
    CHECK(again.result == whole.result);
    CHECK(again == whole || whole.result == LogReadResult::Incomplete);

    if (watcher.Ends() == 0) return;
    Seen part;
    Watcher third(part, mayLack, false, 1 + bytes.size() % watcher.Ends());
    Pieces rest(bytes, bytes.size());
    part.result = ReadLog(rest, third);
    third.Finish();
    CHECK(part.result == LogReadResult::Cancelled);
    CHECK(part.events.size() <= whole.events.size() &&
          std::equal(part.events.begin(), part.events.end(), whole.events.begin()));
}

}  // namespace zelt::test
