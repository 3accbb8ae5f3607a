// The contents of a log file as a stream of events. The reader needs only libxml2, nothing of the user interface, so
// command-line programs can use it too. It reads no other file and uses no network, even if the log refers to them. The caller
// keeps the descriptor.
#pragma once

#include "log_reader/log_event.h"

namespace zelt {

// Where the text of a log comes from.
class LogInput {
public:
    virtual ~LogInput() = default;
    // Returns the number of bytes given, 0 at the end, -1 when nothing can be read. May wait.
    virtual int Read(char* out, int length) = 0;
    // Whether the input waits for a growing log to continue. It inserts a comment before it waits: see ReadLog.
    virtual bool Waits() const { return false; }
};

enum class LogReadResult {
    Complete,
    Incomplete,   // the file is not a well-formed document: cut off, or damaged
    Cancelled,    // at the sink's request
    NotReadable,  // the parser could not be created
};

// Call it once, before the first thread that reads a log starts.
void PrepareLogReader();

// The file is read in pieces of this many bytes, so the descriptor's position is about that far ahead of the events.
constexpr int kReadAhead = 1 << 16;

// Reads from the descriptor's position. A file that is cut off yields everything up to the cut; one that nests deeper than 255
// elements or has an attribute of more than 10 million bytes ends there like a damaged one.
LogReadResult ReadLog(int descriptor, LogSink& sink);

// An input that waits for more text inserts a comment first. The comment makes the reader send all the events that it has read;
// one that waits for its first child then has hasChildren set, although it may have none. Logs themselves contain no comments.
LogReadResult ReadLog(LogInput& input, LogSink& sink);

}  // namespace zelt
