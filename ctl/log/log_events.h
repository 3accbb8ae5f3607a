// What a log says, as a stream of events in the order of the file: each call, argument, value and message begins once
// and ends once. The one way in which the commands read logs; it rests on the viewer's reader and keeps nothing of the
// file. The views of an event are valid during the call that brings it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ctl/command.h"
#include "log_reader/log_reader.h"

namespace zelt::ctl {

enum class EventKind : unsigned char { Call, Argument, Value, Info, Warning, Error, Other };

struct LogEvent {
    EventKind kind;
    bool inward;            // of a call: the simulator calls the logged component; of an argument: it is an input
    bool hasChildren;       // something stands inside
    int depth;              // 0 at the top
    int line;               // where it begins, from 1
    std::string_view name;  // of a call or an argument
    std::string_view text;  // the object of a call, the type of an argument, the value, the message; UTF-8

    // The two parts of a call's name.
    std::string_view Interface() const;
    std::string_view Method() const;
};

class LogHandler {
public:
    virtual ~LogHandler() = default;
    virtual void Begin(const LogEvent& event) = 0;
    virtual void End(EventKind, int /*depth*/) {}
    // At the end of a log that is cut off or damaged: the line of each element that is open there, the root first.
    // Their ends have come all the same.
    virtual void LeftOpen(int /*line*/) {}
    // The parser objects to something in this line.
    virtual void ParseError(int /*line*/) {}
};

// Reads a log to its end. False when it is cut off or damaged; `messages` says where then. Throws InputError when the file
// cannot be opened or holds no log.
[[nodiscard]] bool ReadEvents(const std::string& path, LogHandler& handler, Output& messages);

// The same from any input. `name` is for the messages.
[[nodiscard]] bool ReadEvents(LogInput& input, const std::string& name, LogHandler& handler, Output& messages);

// The exit code of a command that read a log: what it found is not the whole answer when the log is cut off or damaged.
inline int CodeOf(bool complete, int answer) { return complete ? answer : kUnreadable; }

}  // namespace zelt::ctl
