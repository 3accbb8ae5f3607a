// The text of one entry while it is put together. A logged call appends dozens of short pieces, so appending is inline and mostly
// needs no call. The memory is kept for the next entry. Not thread safe.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace zelt {

class EntryText {
public:
    // Reserves memory for `room` characters; more is allocated when it is needed.
    explicit EntryText(std::size_t room) { Grow(room); }
    EntryText(const EntryText&) = delete;
    EntryText& operator=(const EntryText&) = delete;

    std::string_view View() const { return {text.get(), Size()}; }
    std::size_t Size() const { return static_cast<std::size_t>(end - text.get()); }
    void CutTo(std::size_t size) { end = text.get() + size; }

    [[gnu::always_inline]] void operator+=(std::string_view piece)
    {
        AppendWith(piece.size(), [piece](char* to) {
            Copy(to, piece.data(), piece.size());
            return to + piece.size();
        });
    }
    void operator+=(char character)
    {
        AppendWith(1, [character](char* to) {
            *to = character;
            return to + 1;
        });
    }
    void Blanks(std::size_t count)
    {
        AppendWith(count + kMostPastBlanks, [count](char* to) { return PutBlanks(to, count); });
    }
    // Writes `count` blanks and returns their end. Writes up to kMostPastBlanks more behind them.
    static constexpr std::size_t kMostPastBlanks = 15;
    [[gnu::always_inline]] static char* PutBlanks(char* to, std::size_t count)
    {
        constexpr std::size_t kStep = kMostPastBlanks + 1;
        for (std::size_t at = 0; at < count; at += kStep) std::memcpy(to + at, "                ", kStep);
        return to + count;
    }
    // `write(char*)` writes at most `most` characters and returns their end; null appends nothing.
    template <class Write>
    [[gnu::always_inline]] bool AppendWith(std::size_t most, Write&& write)
    {
        if (static_cast<std::size_t>(limit - end) < most) [[unlikely]]
            Grow(most);
        char* const written = write(end);
        if (written) end = written;
        return written != nullptr;
    }

private:
    void Grow(std::size_t needed);

    // Copies the ends of a short piece by moves of constant size, which may overlap.
    [[gnu::always_inline]] static void Copy(char* to, const char* from, std::size_t size)
    {
        constexpr std::size_t kLong = 256;
        if (__builtin_constant_p(size) || size > kLong) {
            if (size != 0) std::memcpy(to, from, size);
        } else if (size >= 16) {
            for (std::size_t at = 0; at + 16 < size; at += 16) std::memcpy(to + at, from + at, 16);
            std::memcpy(to + size - 16, from + size - 16, 16);
        } else if (size >= 8) {
            CopyEnds<8>(to, from, size);
        } else if (size >= 4) {
            CopyEnds<4>(to, from, size);
        } else {
            for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
        }
    }
    template <std::size_t Part>
    static void CopyEnds(char* to, const char* from, std::size_t size)
    {
        char first[Part], last[Part];
        std::memcpy(first, from, Part);
        std::memcpy(last, from + size - Part, Part);
        std::memcpy(to, first, Part);
        std::memcpy(to + size - Part, last, Part);
    }

    std::unique_ptr<char[]> text;
    char* end = nullptr;
    char* limit = nullptr;  // where the memory ends
};

}  // namespace zelt
