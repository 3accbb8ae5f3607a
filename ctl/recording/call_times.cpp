#include "ctl/recording/call_times.h"

#include "ctl/recording/value_summary.h"

namespace zelt::ctl {

using namespace recording;

const TimedCall* CallTimes::Take(const Record& record)
{
    if (const auto* call = std::get_if<CallRecord>(&record)) {
        // Time begins with the first call.
        if (hasBegun) now += call->start;
        hasBegun = true;
        TimedCall timed;
        timed.number = ++calls;
        timed.member = call->member;
        timed.object = call->object;
        timed.isOutward = call->isOutward;
        timed.start = now;
        timed.depth = static_cast<int>(open.size());
        open.push_back(std::move(timed));
        return nullptr;
    }
    if (const auto* argument = std::get_if<ArgumentRecord>(&record)) {
        if (wantsInputs && !argument->isOut && !open.empty()) AppendSummary(open.back().inputs, *argument);
        return nullptr;
    }
    const auto* result = std::get_if<ResultRecord>(&record);
    if (!result || open.empty()) return nullptr;
    ended = std::move(open.back());
    open.pop_back();
    ended.duration = result->duration;
    ended.inside = result->inside;
    ended.status = result->status;
    now = ended.start + ended.duration;
    if (!open.empty()) open.back().nested += ended.duration;
    return &ended;
}

}  // namespace zelt::ctl
