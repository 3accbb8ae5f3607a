#include "shell/log_viewer/background_reader.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "shell/log_viewer/tree_images.h"

namespace zelt {
namespace {

// The first batches are small, so that the viewer need not wait for the beginning. Later ones double the rows read so far,
// until handing one over costs next to nothing.
constexpr std::size_t kFirstBatchRows = 1024;
constexpr std::size_t kMostBatchRows = 16 * kFirstBatchRows;
// Labels may be megabytes long each.
constexpr std::size_t kMostBatchText = 4 << 20;
constexpr std::size_t kWaitingBatches = 4;
constexpr std::chrono::milliseconds kPatience{50};

// Rows in transit, as small as possible: many millions move from one core's memory to the other's.
struct Batch {
    struct Entry {
        std::uint32_t length;  // of the label, which follows the previous label; or the line of an objection
        std::uint16_t depth;
        std::uint8_t image;
        std::uint8_t flags;
    };
    // A label is shorter than the parser's limit of ten million bytes, and nothing is nested deeper than its 256.
    static_assert(sizeof(Entry) == 8);
    enum Flags : std::uint8_t { kHasChildren = 1, kIsError = 2, kIsObjection = 4 };

    std::vector<Entry> entries;
    std::string text;
    long long position = 0;

    void Add(const LogEvent& event)
    {
        const std::size_t before = text.size();
        AppendLabel(text, event);
        const int flags = (event.hasChildren ? kHasChildren : 0) | (IsError(event) ? kIsError : 0);
        entries.push_back({static_cast<std::uint32_t>(text.size() - before), static_cast<std::uint16_t>(event.depth),
                           static_cast<std::uint8_t>(ImageOf(event)), static_cast<std::uint8_t>(flags)});
    }
    void AddObjection(int line) { entries.push_back({static_cast<std::uint32_t>(line), 0, 0, kIsObjection}); }
    void Clear()
    {
        entries.clear();
        text.clear();
    }
};

// Takes batches from one thread to the other, and empty ones back.
class Queue {
public:
    // Takes the batch's content; false once nobody wants more.
    bool Put(Batch& batch)
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return abandoned || full.size() < kWaitingBatches; });
        if (abandoned) return false;
        full.push_back(std::move(batch));
        batch = {};
        if (!spare.empty()) {
            batch = std::move(spare.back());
            spare.pop_back();
        }
        changed.notify_one();
        return true;
    }
    void End()
    {
        const std::lock_guard lock(mutex);
        ended = true;
        changed.notify_one();
    }

    enum class Taken { Batch, NothingYet, Nothing };
    // Gives back the batch that was taken before.
    Taken Take(Batch& batch)
    {
        batch.Clear();
        std::unique_lock lock(mutex);
        if (batch.entries.capacity() > 0) spare.push_back(std::move(batch));
        changed.wait_for(lock, kPatience, [this] { return ended || !full.empty(); });
        if (full.empty()) return ended ? Taken::Nothing : Taken::NothingYet;
        batch = std::move(full.front());
        full.pop_front();
        changed.notify_one();
        return Taken::Batch;
    }
    void Abandon()
    {
        const std::lock_guard lock(mutex);
        abandoned = true;
        changed.notify_one();
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Batch> full;
    std::vector<Batch> spare;
    bool ended = false;
    bool abandoned = false;
};

// False once the sink wants no more.
bool Deliver(const Batch& batch, RowSink& sink)
{
    std::string_view rest = batch.text;
    for (const Batch::Entry& entry : batch.entries) {
        if (entry.flags & Batch::kIsObjection) {
            sink.ParseError(static_cast<int>(entry.length));
        } else {
            sink.Row({entry.depth, static_cast<SmallImage>(entry.image), (entry.flags & Batch::kHasChildren) != 0,
                      (entry.flags & Batch::kIsError) != 0, rest.substr(0, entry.length)});
            rest.remove_prefix(entry.length);
        }
        if (!sink.Continue()) return false;
    }
    return true;
}

// On the reading thread.
class Collector final : public LogSink {
public:
    Collector(Queue& queue, const SharedLogFile& file) : queue(queue), file(file) {}

    void Begin(const LogEvent& event) override
    {
        batch.Add(event);
        if (++rows == nextHandOver || batch.text.size() >= kMostBatchText) HandOver();
    }
    void ParseError(int line) override
    {
        batch.AddObjection(line);
        HandOver();
    }
    bool Continue() override { return wanted; }
    void HandOver()
    {
        nextHandOver = rows + std::min(std::max(rows, kFirstBatchRows), kMostBatchRows);
        batch.position = file.Position();
        if (!wanted || !queue.Put(batch)) {
            // The reading ends at its next step.
            wanted = false;
            batch.Clear();
        }
    }

private:
    Queue& queue;
    const SharedLogFile& file;
    Batch batch;
    std::size_t rows = 0;
    std::size_t nextHandOver = kFirstBatchRows;
    bool wanted = true;
};

// The thread ends before this object does, whatever ends the taking.
class Reading {
public:
    explicit Reading(const SharedLogFile& file) : thread([this, &file] { Run(file); }) {}
    ~Reading()
    {
        queue.Abandon();
        if (thread.joinable()) thread.join();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    Queue& Rows() { return queue; }
    LogReadResult Result()
    {
        thread.join();
        if (failure) std::rethrow_exception(failure);
        return result;
    }

private:
    void Run(const SharedLogFile& file)
    {
        try {
            Collector collector(queue, file);
            result = ReadLog(file.Descriptor(), collector);
            collector.HandOver();
        } catch (...) {
            failure = std::current_exception();
        }
        queue.End();
    }

    Queue queue;
    LogReadResult result = LogReadResult::NotReadable;
    std::exception_ptr failure;
    std::thread thread;
};

}  // namespace

LogReadResult ReadRows(const SharedLogFile& file, RowSink& sink)
{
    RowBuilder builder(sink);
    return ReadLog(file.Descriptor(), builder);
}

LogReadResult ReadRowsInBackground(const SharedLogFile& file, RowSink& sink, long long& position)
{
    std::optional<Reading> reading;
    try {
        reading.emplace(file);
    } catch (const std::system_error&) {
        // No thread can be started.
        return ReadRows(file, sink);
    }
    Batch batch;
    while (true) {
        const Queue::Taken taken = reading->Rows().Take(batch);
        if (taken == Queue::Taken::Nothing) return reading->Result();
        if (taken == Queue::Taken::NothingYet) {
            if (!sink.Continue()) return LogReadResult::Cancelled;
            continue;
        }
        position = batch.position;
        if (!Deliver(batch, sink)) return LogReadResult::Cancelled;
    }
}

}  // namespace zelt
