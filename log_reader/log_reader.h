// The parse of a log file as a stream of items, in the order of the file: what a viewer shows as its tree. Knows nothing
// of windows and needs nothing but libxml2, so that programs without windows use it too. The descriptor stays its
// caller's; nothing of an item outlives the call that it is handed to. Reads no other file and no network, whatever the
// log says.
#pragma once

#include <cstddef>
#include <string_view>

namespace zelt {

// Indices into the strip of small images; the strip's other images belong to other windows.
enum class LogImage : unsigned char {
    Info = 2,
    Error = 3,
    InwardCall = 4,
    OutwardCall = 5,
    InArgument = 6,
    OutArgument = 7,
    Value = 8,
    Warning = 10,
};

struct LogItem {
    int depth;  // 0 for the items below the root element, which itself is none
    LogImage image;
    bool hasChildren;        // the next item is its first child
    bool isError;            // an error or a warning as logs have it, without children
    std::string_view label;  // UTF-8
    // What follows is for programs that answer questions about a log.
    std::size_t nameLength;  // of the name that begins the label of a call or an argument; 0 elsewhere
    bool known;              // an element that logs have
    int line;                // of the start tag's end, from 1; 0 unless the sink wants lines
};

// What a sink asks about the parts of an item: the name of a call or an argument, and what stands behind it, which is the
// object of a call and the type of an argument.
std::string_view NameOf(const LogItem& item);
std::string_view ObjectOrTypeOf(const LogItem& item);

// Receives the stream. What it throws passes through ReadLog.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void Item(const LogItem& item) = 0;
    // The parser objects to something in this line. Reported after the step of reading that met it.
    virtual void ParseError(int line) = 0;
    // Called after each element's end. False ends the reading.
    virtual bool Continue() = 0;

    // The item of this depth that came last is complete. Each item has one end, and so have those that a damaged file
    // leaves open.
    virtual void ItemEnd(int) {}
    // At the end of a damaged file, for each element that is still open, the root first: the line of its start tag.
    virtual void LeftOpen(int) {}
    // Lines of items are counted on demand, because counting takes a tenth of the reading's time.
    virtual bool WantsLines() const { return false; }
};

// Where the text comes from, if not from a file.
class LogInput {
public:
    virtual ~LogInput() = default;
    // The number of bytes given, 0 at the end, -1 when nothing can be read. May wait.
    virtual int Read(char* out, int length) = 0;
};

enum class LogReadResult {
    Complete,
    Incomplete,   // the file is no well-formed document: cut off, or damaged
    Cancelled,    // as the sink wanted
    NotReadable,  // the parser could not be made
};

// Call once, before the first thread that reads a log starts.
void PrepareLogReader();

// How far the descriptor's position may be ahead of the items, in bytes.
constexpr int kReadAhead = 1 << 16;

// Reads from the descriptor's position. A file that is cut off gives everything up to the cut; one that nests deeper than
// 255 elements or has an attribute of more than 10 million bytes ends there like a damaged one.
LogReadResult ReadLog(int descriptor, LogSink& sink);

// A comment in the text lets out what has been read so far, a call's item with hasChildren although none may come: an input
// that waits for more puts one there. Logs have none.
LogReadResult ReadLog(LogInput& input, LogSink& sink);

}  // namespace zelt
