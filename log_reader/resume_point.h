// Where the parser takes over from the scanner: a place in the log some lines before the line that the scanner does not
// understand. The elements that are open there stand in for all that came before, so the parser need not read the earlier text
// again.
#pragma once

#include <cstdint>
#include <vector>

#include "log_reader/log_event.h"

namespace zelt {

struct OpenElement {
    EventKind kind;  // Call, Argument or Value
    bool isLeftOut;  // its events are not delivered
    int line;
};

struct ResumePoint {
    std::int64_t offset = 0;        // where a line begins in the file; 0 at the file's beginning
    std::int64_t origin = 0;        // the place in the file that stands for the beginning of the parser's document
    int line = 1;                   // of the line at `offset`
    std::vector<OpenElement> open;  // the elements around it, from the outermost; without the root
    // How many beginnings and ends of elements after `offset` the scanner has dealt with, and which elements are open after
    // them.
    std::int64_t done = 0;
    std::vector<OpenElement> openThen;
};

}  // namespace zelt
