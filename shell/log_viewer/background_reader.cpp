#include "shell/log_viewer/background_reader.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "log_reader/buffered_file.h"
#include "log_reader/log_parts.h"
#include "shell/log_viewer/batch_queue.h"
#include "shell/log_viewer/pages/page_index.h"

namespace zelt {
namespace {

// The first batches are small, so that the viewer need not wait for the beginning. Each later one has as many rows as all
// before it, up to a size at which handing one over costs next to nothing.
constexpr std::size_t kFirstBatchRows = 1024;
constexpr std::size_t kMostBatchRows = 16 * kFirstBatchRows;
// A single label may be megabytes long.
constexpr std::size_t kMostBatchText = 4 << 20;
// The first page goes to the viewer at once, the others several at a time.
constexpr std::size_t kBatchPages = 16;

// False once the sink wants no more.
bool Deliver(Batch& batch, RowSink& sink)
{
    if (!batch.pages.IsEmpty()) {
        sink.Pages(std::move(batch.pages));
        if (!sink.Continue()) return false;
    }
    std::string_view rest = batch.text;
    auto line = batch.errorLines.begin();
    for (const Batch::Entry& entry : batch.entries) {
        if (entry.flags & Batch::kIsObjection) {
            sink.ParseError(static_cast<int>(entry.length));
        } else {
            const bool isError = (entry.flags & Batch::kIsError) != 0;
            sink.Row({entry.depth, static_cast<SmallImage>(entry.image), (entry.flags & Batch::kHasChildren) != 0,
                      isError, rest.substr(0, entry.length), isError ? *line++ : 0});
            rest.remove_prefix(entry.length);
        }
        if (!sink.Continue()) return false;
    }
    return true;
}

// Collects rows into batches, on the reading thread.
class Collector final : public LogSink {
public:
    Collector(BatchQueue& queue, const SharedLogFile& file) : queue(queue), file(file) {}

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
    bool WantsLines() const override { return true; }
    void HandOver() { HandOver({}); }
    void HandOver(PageBatch&& pages)
    {
        batch.pages = std::move(pages);
        nextHandOver = rows + std::min(std::max(rows, kFirstBatchRows), kMostBatchRows);
        batch.position = file.Position();
        if (!wanted || !queue.Put(batch)) {
            // The reading ends at its next step.
            wanted = false;
            batch.Clear();
        }
    }

private:
    BatchQueue& queue;
    const SharedLogFile& file;
    Batch batch;
    std::size_t rows = 0;
    std::size_t nextHandOver = kFirstBatchRows;
    bool wanted = true;
};

// Cuts the log into pages, on the reading thread. Passes the rows that are in no page to a Collector.
class PageCollector final : public PartSink {
public:
    PageCollector(BatchQueue& queue, const SharedLogFile& file) : collector(queue, file) {}

    void Begin(const LogEvent& event) override { inPages ? indexer.Begin(event) : collector.Begin(event); }
    void End(EventKind, int depth) override
    {
        if (inPages) indexer.End(depth);
    }
    void ParseError(int line) override { collector.ParseError(line); }
    bool Continue() override
    {
        if (inPages && indexer.IsPageFull()) {
            indexer.EndPage(Offset(), Line());
            if (pages++ % kBatchPages == 0) collector.HandOver(indexer.Take());
        }
        return collector.Continue();
    }
    bool WantsLines() const override { return true; }
    void PartsEnd(std::int64_t offset) override
    {
        inPages = false;
        indexer.EndPages(offset);
        collector.HandOver(indexer.Take());
    }
    void HandOver() { collector.HandOver(); }

private:
    Collector collector;
    PageIndexer indexer;
    bool inPages = true;
    std::size_t pages = 0;
};

// Owns the reading thread, which always ends before this object does, even if the caller takes no more batches.
class Reading {
public:
    Reading(const SharedLogFile& file, bool inPages) : thread([this, &file, inPages] { Run(file, inPages); }) {}
    ~Reading()
    {
        queue.Abandon();
        if (thread.joinable()) thread.join();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    BatchQueue& Rows() { return queue; }
    LogReadResult Result()
    {
        thread.join();
        if (failure) std::rethrow_exception(failure);
        return result;
    }

private:
    void Run(const SharedLogFile& file, bool inPages)
    {
        try {
            if (inPages) {
                PageCollector collector(queue, file);
                BufferedFile input(file.Descriptor());
                result = ReadLogByParts(input, collector);
                collector.HandOver();
            } else {
                Collector collector(queue, file);
                result = ReadLog(file.Descriptor(), collector);
                collector.HandOver();
            }
        } catch (...) {
            failure = std::current_exception();
        }
        queue.End();
    }

    BatchQueue queue;
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

LogReadResult ReadRowsInBackground(const SharedLogFile& file, RowSink& sink, long long& position, bool inPages)
{
    std::optional<Reading> reading;
    try {
        reading.emplace(file, inPages);
    } catch (const std::system_error&) {
        // No thread can be started.
        return ReadRows(file, sink);
    }
    Batch batch;
    while (true) {
        const BatchQueue::Taken taken = reading->Rows().Take(batch);
        if (taken == BatchQueue::Taken::Nothing) return reading->Result();
        if (taken == BatchQueue::Taken::NothingYet) {
            if (!sink.Continue()) return LogReadResult::Cancelled;
            continue;
        }
        position = batch.position;
        if (!Deliver(batch, sink)) return LogReadResult::Cancelled;
    }
}

}  // namespace zelt
