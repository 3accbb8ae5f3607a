#include "log_reader/log_reader.h"

#include "log_reader/buffered_file.h"
#include "log_reader/scan_or_parse.h"

namespace zelt {

LogReadResult ReadLog(int descriptor, LogSink& sink)
{
    BufferedFile file(descriptor);
    return ReadLog(file, sink);
}

LogReadResult ReadLog(LogInput& input, LogSink& sink) { return ScanOrParse<FastBytes>(input, sink, {}); }

}  // namespace zelt
