// A recorded sentence as the log shows it.
#pragma once

#include <string>

#include "log_reader/log_event.h"
#include "recording/record.h"

namespace zelt::ctl {

struct RecordedMessage {
    EventKind kind = EventKind::Info;  // also of a sentence that this program does not know
    std::string text;

    // As the log's reader would give it. Valid as long as this is.
    LogEvent Event() const { return {kind, false, false, 0, 0, {}, text}; }
};

RecordedMessage MessageOf(const recording::SentenceRecord& sentence);
// The message that the log has of a failure: "ECapeUnknownHR: no answer".
RecordedMessage MessageOf(const recording::ResultRecord& result);

}  // namespace zelt::ctl
