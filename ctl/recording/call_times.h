// The calls of a recording with their times. Each is delivered when it has ended.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recording/record.h"

namespace zelt::ctl {

// Times are in nanoseconds; `start` counts from the start of the recording's first call.
struct TimedCall {
    long long number = 0;  // in the order in which calls begin, from 1
    std::string member, object;
    bool isOutward = false;  // from the component to the simulator
    std::uint64_t start = 0, duration = 0;
    std::uint64_t inside = 0;  // in the called object, with what it called itself
    std::uint64_t nested = 0;  // the duration of the calls inside of it
    std::uint32_t status = 0;
    int depth = 0;
    std::string inputs;  // what went in, as text; empty unless CallTimes was asked for it
};

class CallTimes {
public:
    explicit CallTimes(bool wantsInputs) : wantsInputs(wantsInputs) {}

    // Takes the next record. Returns the call that it ends; null if it ends none.
    const TimedCall* Take(const recording::Record& record);
    // The time of the latest beginning or end of a call.
    std::uint64_t Now() const { return now; }
    std::size_t Open() const { return open.size(); }

private:
    const bool wantsInputs;
    std::vector<TimedCall> open;
    TimedCall ended;
    long long calls = 0;
    std::uint64_t now = 0;
    bool hasBegun = false;
};

}  // namespace zelt::ctl
