#include "log_reader/log_parts.h"

#include "log_reader/log_scanner.h"
#include "log_reader/parser_reader.h"
#include "log_reader/resumed_input.h"

namespace zelt {

LogReadResult ReadLogByParts(LogInput& input, PartSink& sink)
{
    const ScanSizes sizes;
    LogScanner<FastBytes> scanner(input, sink, sizes);
    sink.offset = [&scanner] { return scanner.Offset(); };
    sink.line = [&scanner] { return scanner.Line(); };
    const auto result = scanner.Scan();
    sink.PartsEnd(scanner.Offset());
    if (result) return *result;
    const ResumePoint start = scanner.Resume();
    ResumedInput rest(input, start, scanner.Read(), scanner.Last(), sizes.block);
    return ReadByParser(rest, sink, start);
}

void ReadPart(LogInput& input, const std::vector<EventKind>& open, LogSink& sink)
{
    LogScanner<FastBytes> scanner(input, sink);
    scanner.BeginInside(open);
    scanner.Scan();
}

}  // namespace zelt
