// Reads a log on a second thread, while the caller's thread prepares what it shows. Together they take only as long as the
// slower of the two, and the caller's windows stay responsive. Only a few batches wait between the threads, so the memory that
// they need does not grow with the file.
#pragma once

#include "log_reader/log_reader.h"
#include "shell/log_viewer/tree_row.h"
#include "shell/log_viewer/shared_log_file.h"

namespace zelt {

// Like ReadLog, on the calling thread.
LogReadResult ReadRows(const SharedLogFile& file, RowSink& sink);

// The same with a second thread. Calls the sink on the calling thread only. Calls its Continue after each row, parse error and
// batch of pages, and many times a second while it waits for more. `position` is how far the file had been read when the batch
// with the sink's latest row was complete. Exceptions from the sink or the reading pass through once the reading has ended.
// With `inPages`, the part of the log that is exactly as ZELT writes it comes as pages, and only the rest as rows.
// If no second thread can be started, does what ReadRows does, without pages or `position`.
LogReadResult ReadRowsInBackground(const SharedLogFile& file, RowSink& sink, long long& position, bool inPages = false);

}  // namespace zelt
