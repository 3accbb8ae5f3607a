// Passes a log from the thread that reads it to another thread, in batches. Only a few wait at a time, so the memory that they
// need does not grow with the file.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "log_reader/log_event.h"
#include "shell/log_viewer/pages/page_index.h"

namespace zelt {

// Rows and pages in transit. Rows are as small as possible, because many millions of them move from one core to another.
struct Batch {
    struct Entry {
        std::uint32_t length;  // of the label, which follows the previous label; or the line of a parse error
        std::uint16_t depth;
        std::uint8_t image;
        std::uint8_t flags;
    };
    // The fields have room for what the parser admits: ten million bytes for each of a label's two texts, and a nesting of 256.
    static_assert(sizeof(Entry) == 8);
    enum Flags : std::uint8_t { kHasChildren = 1, kIsError = 2, kIsObjection = 4 };

    std::vector<Entry> entries;
    std::string text;
    std::vector<int> errorLines;  // of the rows that are errors, in order
    PageBatch pages;              // before the rows
    long long position = 0;

    void Add(const LogEvent& event);
    void AddObjection(int line) { entries.push_back({static_cast<std::uint32_t>(line), 0, 0, kIsObjection}); }
    void Clear()
    {
        entries.clear();
        text.clear();
        errorLines.clear();
        pages = {};
    }
};

// Passes batches from one thread to the other, and empty ones back.
class BatchQueue {
public:
    // Takes the batch's content; false once nobody wants more.
    bool Put(Batch& batch);
    void End();

    enum class Taken { Batch, NothingYet, Nothing };
    // Gives back the batch that was taken before. Waits a moment for the next one.
    Taken Take(Batch& batch);
    void Abandon();

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Batch> full;
    std::vector<Batch> spare;
    bool ended = false;
    bool abandoned = false;
};

}  // namespace zelt
