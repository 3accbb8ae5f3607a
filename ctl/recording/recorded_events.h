// A recording as the events of a log, for code that understands logs. Numbers have all their digits; the values of arrays follow
// each other. The bounds of arrays, which ZELT writes to logs, are left out.
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
