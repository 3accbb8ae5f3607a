// What a log says, as a stream of events in the order of the file: each call, argument, value and message begins once and
// ends once. Whoever reads logs is a sink of these events. The views of an event belong to the reader and are valid during
// the call that brings it.
#pragma once

#include <string_view>

namespace zelt {

enum class EventKind : unsigned char { Call, Argument, Value, Info, Warning, Error, Other };

struct LogEvent {
    EventKind kind;
    bool inward;            // of a call: the simulator calls the logged component; of an argument: it is an input
    bool hasChildren;       // something stands inside, and the next event is its first child
    int depth;              // 0 for what stands directly in the root element, which itself is no event
    int line;               // of the start tag's end, from 1; 0 unless the sink wants lines
    std::string_view name;  // of a call or an argument, in UTF-8; empty elsewhere
    // The object of a call, the type of an argument, the value, the message; of an element that logs do not have all that
    // it says. In UTF-8.
    std::string_view text;
    bool isEmpty = false;  // an element without an end tag, as logs have messages and values

    // The two parts of a call's name.
    std::string_view Interface() const;
    std::string_view Method() const;
};

// Receives the stream. What it throws passes through the reader.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void Begin(const LogEvent& event) = 0;
    // The event of this depth that began last is complete. Each has one end, and so have those that a damaged file leaves
    // open.
    virtual void End(EventKind, int /*depth*/) {}
    // The parser objects to something in this line. Reported after the step of reading that met it.
    virtual void ParseError(int /*line*/) {}
    // At the end of a damaged file, for each element that is still open, the root first: the line of its start tag. Their
    // ends have come all the same.
    virtual void LeftOpen(int /*line*/) {}
    // Called after each end. False ends the reading.
    virtual bool Continue() { return true; }
    // Lines of events are counted on demand, because counting takes a tenth of the reading's time.
    virtual bool WantsLines() const { return false; }
};

}  // namespace zelt
