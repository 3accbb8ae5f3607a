// Reads a log in two ways, with the scanner, as every program does, and with the parser alone. Keeps the events of each way
// for comparison.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "log_reader/scan_or_parse.h"

namespace zelt::test {

// Bytes in memory, delivered in blocks like a file's.
class Blocks final : public LogInput {
public:
    Blocks(std::string_view bytes, std::size_t block) : bytes(bytes), block(block) {}
    int Read(char* out, int length) override
    {
        const std::size_t count = bytes.copy(out, std::min(static_cast<std::size_t>(length), block - at % block), at);
        at += count;
        return static_cast<int>(count);
    }

private:
    const std::string_view bytes;
    const std::size_t block;
    std::size_t at = 0;
};

// What a sink may ask for.
struct Wishes {
    bool lines = true;
    unsigned leftOut = 0;    // how many of every 8 calls come without arguments
    std::size_t stopAt = 0;  // stops after this many Ends; 0: never
};

struct Recording {
    std::string events;
    std::vector<int> errors, leftOpen;
    LogReadResult result = LogReadResult::NotReadable;
    bool operator==(const Recording&) const = default;
};

class Recorder final : public LogSink {
public:
    Recorder(Recording& recording, const Wishes& wishes) : recording(recording), wishes(wishes) {}

    void Begin(const LogEvent& event) override
    {
        calls += event.kind == EventKind::Call;
        Add("begin", event.kind, event.depth);
        for (const int part : {event.line, int{event.inward}, int{event.hasChildren}, int{event.isEmpty}}) {
            recording.events.append(std::to_string(part)) += ' ';
        }
        recording.events.append(event.name).append("\t").append(event.text) += '\n';
    }
    void End(EventKind kind, int depth) override
    {
        Add("end", kind, depth);
        recording.events += '\n';
    }
    void ParseError(int line) override { recording.errors.push_back(line); }
    void LeftOpen(int line) override { recording.leftOpen.push_back(line); }
    bool Continue() override { return ++ends != wishes.stopAt; }
    bool WantsLines() const override { return wishes.lines; }
    bool WantsArguments() const override { return calls * 5 % 8 >= wishes.leftOut; }

private:
    void Add(const char* what, EventKind kind, int depth)
    {
        recording.events.append(what).append(" ") += static_cast<char>('0' + static_cast<int>(kind));
        recording.events.append(" ").append(std::to_string(depth)) += ' ';
    }

    Recording& recording;
    const Wishes wishes;
    unsigned calls = 0;
    std::size_t ends = 0;
};

inline Recording RecordByParser(std::string_view bytes, std::size_t block, const Wishes& wishes)
{
    Recording recording;
    Recorder recorder(recording, wishes);
    Blocks input(bytes, block);
    recording.result = ReadByParser(input, recorder);
    return recording;
}

template <class Bytes>
Recording Record(std::string_view bytes, const ScanSizes& sizes, const Wishes& wishes)
{
    Recording recording;
    Recorder recorder(recording, wishes);
    Blocks input(bytes, sizes.block);
    recording.result = ScanOrParse<Bytes>(input, recorder, sizes);
    return recording;
}

}  // namespace zelt::test
