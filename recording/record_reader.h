// Reads a recording record by record, in memory that depends only on its longest record and its tables. A recording that is cut
// off or damaged is read up to that place.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "recording/record.h"

namespace zelt::recording {

enum class ReadEnd {
    None,      // there is more
    Complete,  // after a whole record: at the end of the file, or at a 0, where a program that records puts the next one
    CutOff,    // in the middle of a record
    Damaged,   // at bytes that are no record
};

class RecordReader {
public:
    // Puts up to `count` bytes into `bytes` and returns how many; 0 at the end.
    using Input = std::function<std::size_t(char* bytes, std::size_t count)>;

    explicit RecordReader(Input input) : input(std::move(input)) {}

    // The next record; null when there is no more, and End then says why.
    const Record* Next();
    ReadEnd End() const { return end; }
    // Where the latest record begins, in bytes from the beginning of the file.
    std::uint64_t Offset() const { return offset; }

private:
    // Makes the bytes of the next record available in `buffer` from `begin` on. False if there is none; `end` then says why.
    bool Load(std::size_t& length);
    bool Fill(std::size_t count);
    // False for a record that only fills a table, or that is unknown.
    bool Decode(std::string_view bytes);
    CallRecord WithName(CallRecord call);
    std::uint64_t Nanoseconds(std::uint64_t ticks) const;

    static constexpr std::uint64_t kSecond = 1'000'000'000;  // in nanoseconds

    Input input;
    std::string buffer;
    std::size_t begin = 0;  // of the unread bytes in the buffer
    std::uint64_t offset = 0, nextOffset = 0;
    std::size_t recordLength = 0;  // of the latest record, without the length that precedes it
    ReadEnd end = ReadEnd::None;
    bool isAtEndOfFile = false;
    std::deque<std::string> texts;
    std::vector<std::uint64_t> pointers;
    std::vector<std::string_view> objectNames;  // of each object's latest call, by number, from 1
    std::uint64_t frequency = kSecond;
    Record record;
};

}  // namespace zelt::recording
