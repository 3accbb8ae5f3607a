// The one way in which the commands read logs: the reader's events with their lines, and its failures as messages that end a
// command. Keeps nothing of the file.
#pragma once

#include <string>

#include "ctl/command.h"
#include "log_reader/log_reader.h"

namespace zelt::ctl {

using zelt::EventKind;
using zelt::LogEvent;

// Reads a log to its end, whatever the sink's Continue would return. False when it is cut off or damaged; `messages` then says
// where. Throws InputError when the file cannot be opened or contains no log.
[[nodiscard]] bool ReadEvents(const std::string& path, LogSink& sink, Output& messages);

// The same from any input. `name` is for the messages.
[[nodiscard]] bool ReadEvents(LogInput& input, const std::string& name, LogSink& sink, Output& messages);

// The exit code of a command that read a log: its findings are not the whole answer when the log is cut off or damaged.
inline int CodeOf(bool complete, int answer) { return complete ? answer : kUnreadable; }

}  // namespace zelt::ctl
