// A recording as the events of a log, for code that understands logs. Numbers have all their digits. An array becomes the
// sequence of its values, without the bounds that ZELT writes to logs.
#pragma once

#include "log_reader/log_event.h"
#include "recording/record.h"

namespace zelt::ctl {

class RecordedEvents {
public:
    // Passes what the record says to the sink.
    void Take(const recording::Record& record, LogSink& sink);

private:
    void TakeArgument(const recording::ArgumentRecord& argument, LogSink& sink) const;
    void TakeMessage(EventKind kind, std::string_view text, LogSink& sink) const;

    int depth = 0;
};

}  // namespace zelt::ctl
