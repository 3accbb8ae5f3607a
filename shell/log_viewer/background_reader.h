// A log read on a thread of its own, while the caller's thread makes of it what it shows: the longer of the two works is all
// the time that passes, and the caller is never away from its windows for long. What has been read waits in batches, few
// of them: the memory does not depend on the file.
#pragma once

#include "log_reader/log_reader.h"
#include "shell/log_viewer/shared_log_file.h"

namespace zelt {

// As ReadLog, and the sink is called on the calling thread alone: Continue after each item, and while none comes several
// times a second. Of an item only depth, image, flags and label are to be relied on, and its end is not told. `position` is
// how far the file had been read when the item that the sink has last been given was. What the sink or the reading throws
// passes through, when the reading has ended.
LogReadResult ReadLogInBackground(const SharedLogFile& file, LogSink& sink, long long& position);

}  // namespace zelt
