// Which calls of a recording have to be replayed before certain calls: those that made the component's state, and those in
// which the component handed out the objects that are called.
#pragma once

#include <cstdint>
#include <vector>

#include "ctl/recording/trimming/call_outline.h"

namespace zelt::ctl {

struct NeededCalls {
    std::vector<bool> calls;    // which of the outermost calls
    std::vector<bool> objects;  // which objects these calls deal with; the index is the object's number, 0 is not used
    std::uint64_t count = 0;    // how many calls, with those inside other calls
    std::size_t last = 0;       // the place of the last one in `calls`
};

// What the calls with the numbers from `first` to `last` need, and these calls themselves. The recording must have calls with
// both numbers.
NeededCalls CallsNeededFor(const CallOutline& outline, std::uint64_t first, std::uint64_t last);

}  // namespace zelt::ctl
