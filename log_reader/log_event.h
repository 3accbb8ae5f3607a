// What a log says, as a stream of events in the order of the file: each call, argument, value and message begins once and ends
// once. Code that reads logs is a sink of these events. The views of an event belong to the reader and are valid during the
// call that delivers it.
#pragma once

#include <string_view>

namespace zelt {

enum class EventKind : unsigned char { Call, Argument, Value, Info, Warning, Error, Other };

struct LogEvent {
    EventKind kind;
    bool inward;            // of a call: the simulator calls the logged component; of an argument: it is an input
    bool hasChildren;       // it contains something, and the next event is its first child
    int depth;              // 0 directly inside the root element, which is not an event itself
    int line;               // of the start tag's end, from 1; 0 unless the sink wants lines
    std::string_view name;  // of a call or an argument, in UTF-8; empty for other kinds
    // The object of a call, the type of an argument, the value, the message; for any other element, its name and attributes. In
    // UTF-8.
    std::string_view text;
    bool isEmpty = false;  // an element without an end tag: in logs, each message, and each value without children

    // The two parts of a call's name.
    std::string_view Interface() const;
    std::string_view Method() const;
};

// Receives the stream. Exceptions that it throws pass through the reader.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void Begin(const LogEvent& event) = 0;
    // The latest event of this depth is complete. Each event has one end, even one that a damaged file leaves open.
    virtual void End(EventKind, int /*depth*/) {}
    // The parser objects to something in this line. The parser reads ahead, so the report may come before the line's own
    // events. A sink that stops the reading may miss later errors.
    virtual void ParseError(int /*line*/) {}
    // Called at the end of a damaged file for each element that is still open, the root first, with the line of its start tag
    // (0 unless the sink wants lines). End has been called for these elements, too.
    virtual void LeftOpen(int /*line*/) {}
    // Called after each end. False stops the reading.
    virtual bool Continue() { return true; }
    // Whether the sink needs the lines of events. They are counted only then, because counting takes a tenth of the reading
    // time.
    virtual bool WantsLines() const { return false; }
    // Asked before each argument. False leaves out the events of the argument and of its values. Messages inside it are still
    // delivered, with the depth that they have in the file.
    virtual bool WantsArguments() const { return true; }
};

}  // namespace zelt
