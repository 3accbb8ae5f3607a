// The one way in which the commands read logs. Passes on the reader's events with their line numbers. Throws InputError for a
// file that is not a log; returns false for a log that is cut off or damaged.
#pragma once

#include <string>

#include "ctl/command.h"
#include "log_reader/log_reader.h"

namespace zelt::ctl {

using zelt::EventKind;
using zelt::LogEvent;

// Reads a log, or standard input for "-", to its end; the sink's Continue is not called. False when the log is cut off or
// damaged; `messages` then says where. Throws InputError when the file cannot be opened or contains no log.
[[nodiscard]] bool ReadEvents(const std::string& path, LogSink& sink, Output& messages);

// The same from any input. `name` is for the messages.
[[nodiscard]] bool ReadEvents(LogInput& input, const std::string& name, LogSink& sink, Output& messages);

// Throws InputError when the file cannot be opened or does not begin like a log.
void RequireLog(const std::string& path);

// A log that is read more than once. What comes from standard input is kept in a temporary file as long as this object lives.
class RereadableLog {
public:
    // Throws InputError when standard input cannot be read or kept.
    explicit RereadableLog(const std::string& path);
    ~RereadableLog();
    RereadableLog(const RereadableLog&) = delete;
    RereadableLog& operator=(const RereadableLog&) = delete;

    // As ReadEvents.
    [[nodiscard]] bool Read(LogSink& sink, Output& messages) const;

private:
    const std::string path;
    std::string copy;  // the path of the temporary file, if there is one
};

// The exit code of a command that read a log. A log that is cut off or damaged is a finding for every command.
inline int CodeOf(bool complete, int answer) { return complete ? answer : kFinding; }

}  // namespace zelt::ctl
