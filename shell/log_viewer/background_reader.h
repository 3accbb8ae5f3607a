// A log read on a thread of its own, while the caller's thread makes of it what it shows: the longer of the two works is all
// the time that passes, and the caller is never away from its windows for long. What has been read waits in batches, few
// of them: the memory does not depend on the file.
#pragma once

#include "log_reader/log_reader.h"
#include "shell/log_viewer/log_row.h"
#include "shell/log_viewer/shared_log_file.h"

namespace zelt {

// As ReadLog, on the calling thread.
LogReadResult ReadRows(const SharedLogFile& file, RowSink& sink);

// The same with a thread, and the sink is called on the calling thread alone: Continue after each row, and while none comes
// several times a second. `position` is how far the file had been read when the row that the sink has last been given was.
// What the sink or the reading throws passes through, when the reading has ended.
LogReadResult ReadRowsInBackground(const SharedLogFile& file, RowSink& sink, long long& position);

}  // namespace zelt
