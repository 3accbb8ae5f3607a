// Where the parser takes over from the scanner: a place in the log some lines before the line that the scanner does not
// understand. The elements that are open there stand in for all that came before, so the parser need not read that again.
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
    std::int64_t offset = 0;        // of the beginning of a line, in the file; 0 for its beginning
    std::int64_t origin = 0;        // where in the file the parser's document would begin
    int line = 1;                   // of the line at `offset`
    std::vector<OpenElement> open;  // the elements around it, from the outermost; without the root
    // How many beginnings and ends of elements after `offset` the scanner has dealt with, and which elements are open after them.
    std::int64_t done = 0;
    std::vector<OpenElement> openThen;
};

}  // namespace zelt
