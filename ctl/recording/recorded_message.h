// A recorded sentence as the log shows it.
#pragma once

#include <string>

#include "log_reader/log_event.h"
#include "recording/record.h"

namespace zelt::ctl {

struct RecordedMessage {
    EventKind kind = EventKind::Info;  // Info also for a sentence that this program does not know
    std::string text;

    // The event that the log's reader would deliver, but without its depth and line. It refers to `text`.
    LogEvent Event() const { return {kind, false, false, 0, 0, {}, text}; }
};

RecordedMessage MessageOf(const recording::SentenceRecord& sentence);
// The message that the log has for a failure: "ECapeUnknownHR: no answer".
RecordedMessage MessageOf(const recording::ResultRecord& result);

}  // namespace zelt::ctl
