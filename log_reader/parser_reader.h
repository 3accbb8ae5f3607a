// The parse of a log by libxml2: of any file, whatever is in it. What it makes of damage is what a reader of logs reports.
#pragma once

#include "log_reader/log_reader.h"
#include "log_reader/resume_point.h"

namespace zelt {

// `start` is where the input begins in the log, which the scanner has read up to there. Events that it has delivered are not
// delivered again.
LogReadResult ReadByParser(LogInput& input, LogSink& sink, const ResumePoint& start = {});

}  // namespace zelt
