// Reads a log with the scanner; where that stops before the end, the parser takes over. A template, so that tests can read with
// either way of searching bytes and with pieces of any size.
#pragma once

#include "log_reader/log_scanner.h"
#include "log_reader/parser_reader.h"
#include "log_reader/resumed_input.h"

namespace zelt {

template <class Bytes>
LogReadResult ScanOrParse(LogInput& input, LogSink& sink, const ScanSizes& sizes)
{
    LogScanner<Bytes> scanner(input, sink, sizes);
    if (const auto result = scanner.Scan()) return *result;
    const ResumePoint start = scanner.Resume();
    ResumedInput rest(input, start, scanner.Read(), scanner.Last(), sizes.block);
    return ReadByParser(rest, sink, start);
}

}  // namespace zelt
