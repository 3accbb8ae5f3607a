// Where the time of a recording's calls went: totals and distributions by member and by object, in memory that does not depend
// on the number of calls.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ctl/recording/call_times.h"

namespace zelt::ctl {

// Counts durations in classes that are at most 1.6 % wide.
class Distribution {
public:
    void Add(std::uint64_t nanoseconds);
    // The duration that the fraction `part` of all durations does not exceed, to within 0.8 %. 0 when there are none.
    std::uint64_t At(double part) const;

private:
    std::vector<std::uint32_t> counts;
    std::uint64_t total = 0;
};

struct CallFigures {
    long long calls = 0, failures = 0;
    std::uint64_t total = 0;  // with the calls nested in them
    std::uint64_t self = 0;   // in the called object alone
    Distribution times;
};

// How the time of the outermost calls is divided. A recording cannot separate the simulator's own work from the way to the
// simulator and back. The shortest call to the simulator is taken to do no work: `transport` is its time, multiplied by the
// number of calls to the simulator. This is an upper limit.
struct TimeShares {
    std::uint64_t all = 0, component = 0, simulator = 0, transport = 0, zelt = 0;
};

class CallProfile {
public:
    explicit CallProfile(std::size_t slowest) : mostSlowest(slowest) {}

    void Add(const TimedCall& call);

    const std::map<std::string, CallFigures>& Members() const { return members; }
    const std::map<std::string, CallFigures>& Objects() const { return objects; }
    const CallFigures& Total() const { return total; }
    TimeShares Shares() const;
    // The longest first.
    const std::vector<TimedCall>& Slowest() const { return slowest; }

private:
    static void AddTo(CallFigures& figures, const TimedCall& call, std::uint64_t self);

    const std::size_t mostSlowest;
    std::map<std::string, CallFigures> members, objects;
    CallFigures total;
    TimeShares shares;  // `simulator` still includes the transport
    std::uint64_t outwardCalls = 0, shortestOutward = 0;
    std::vector<TimedCall> slowest;
};

}  // namespace zelt::ctl
