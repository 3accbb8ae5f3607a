// For the writers of arguments: records what they write to the log.
#pragma once

#include <utility>

#include "log/recording/call_recorder.h"
#include "log/log_document.h"

namespace zelt {

// Records the value if there is a recording; see CallRecorder::Argument.
template <class Body>
void RecordArgument(LogDocument& document, std::string_view name, bool isIn, recording::ArgumentKind kind,
                    std::string_view type, Body&& body)
{
    if (CallRecorder* recorder = document.Recorder())
        recorder->Argument(name, isIn, kind, type, std::forward<Body>(body));
}

}  // namespace zelt
