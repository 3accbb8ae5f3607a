#include "shell/log_viewer/batch_queue.h"

#include <chrono>
#include <utility>

#include "shell/log_viewer/tree_images.h"
#include "shell/log_viewer/tree_row.h"

namespace zelt {
namespace {

constexpr std::size_t kWaitingBatches = 4;
constexpr std::chrono::milliseconds kPatience{10};

}  // namespace

void Batch::Add(const LogEvent& event)
{
    const std::size_t before = text.size();
    AppendLabel(text, event);
    if (IsError(event)) errorLines.push_back(event.line);
    const int flags = (event.hasChildren ? kHasChildren : 0) | (IsError(event) ? kIsError : 0);
    entries.push_back({static_cast<std::uint32_t>(text.size() - before), static_cast<std::uint16_t>(event.depth),
                       static_cast<std::uint8_t>(ImageOf(event)), static_cast<std::uint8_t>(flags)});
}

bool BatchQueue::Put(Batch& batch)
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

void BatchQueue::End()
{
    const std::lock_guard lock(mutex);
    ended = true;
    changed.notify_one();
}

BatchQueue::Taken BatchQueue::Take(Batch& batch)
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

void BatchQueue::Abandon()
{
    const std::lock_guard lock(mutex);
    abandoned = true;
    changed.notify_one();
}

}  // namespace zelt
