// Which calls of a recording have to be made again so that some of them can be: those that made the component's state, and those that
// brought the objects that are called.
#pragma once

#include <cstdint>
#include <vector>

#include "ctl/recording/trimming/call_outline.h"

namespace zelt::ctl {

struct NeededCalls {
    std::vector<bool> calls;    // of the outermost ones
    std::vector<bool> objects;  // that these calls have to do with, by number, from 1
    std::uint64_t count = 0;    // with the calls inside of them
    std::size_t last = 0;       // the place of the last one
};

// For the calls with the numbers from `first` to `last`, with all that the recording has between them. Both exist.
NeededCalls CallsNeededFor(const CallOutline& outline, std::uint64_t first, std::uint64_t last);

}  // namespace zelt::ctl
