// Reads a log in parts: once from its beginning to its end, to learn where parts of it may begin, and later any part by itself,
// which gives the same events again, but with lines that count from the part's beginning. Only text exactly as ZELT writes it
// has parts. A part may begin after the end of any element.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "log_reader/log_reader.h"

namespace zelt {

class PartSink : public LogSink {
public:
    // All events before this call are those of the bytes before `offset`. The events after it come from the parser and are in
    // no part.
    virtual void PartsEnd(std::int64_t offset) = 0;

protected:
    // Where the bytes of the events that have been delivered end. Valid during Continue, before PartsEnd.
    std::int64_t Offset() const { return offset(); }
    // The line that begins there, from 1.
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
