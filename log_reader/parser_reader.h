// Parses a log, or any other file, with libxml2. What libxml2 reads from a damaged file is what the programs show.
#pragma once

#include "log_reader/log_reader.h"
#include "log_reader/resume_point.h"

namespace zelt {

// `start` is where the input begins in the log. Events after that place that the scanner has already delivered are not delivered
// again.
LogReadResult ReadByParser(LogInput& input, LogSink& sink, const ResumePoint& start = {});

}  // namespace zelt
