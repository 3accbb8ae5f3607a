// Reads a log in parts. The first reading goes through the whole log and shows where parts may begin: after the end of any
// element. Later, any part can be read by itself; it gives the same events again, except that lines count from the part's
// beginning. Only text exactly as ZELT writes it can be read in parts.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "log_reader/log_reader.h"

namespace zelt {

class PartSink : public LogSink {
public:
    // The events before this call come from the bytes before `offset`. Those after it come from the parser and belong to no
    // part.
    virtual void PartsEnd(std::int64_t offset) = 0;

protected:
    // The events delivered until now come from the bytes before this offset. Valid during Continue, before PartsEnd.
    std::int64_t Offset() const { return offset(); }
    // The line that begins at that offset, from 1.
    int Line() const { return line(); }

private:
    friend LogReadResult ReadLogByParts(LogInput& input, PartSink& sink);

    std::function<std::int64_t()> offset;
    std::function<int()> line;
};

// Like ReadLog.
LogReadResult ReadLogByParts(LogInput& input, PartSink& sink);

// `open` are the kinds of the elements around the part, from the outermost. The input ends where the part does. If the bytes
// are not those of a part, the sink gets fewer or different events.
void ReadPart(LogInput& input, const std::vector<EventKind>& open, LogSink& sink);

}  // namespace zelt
