// The search through the labels of a log, in tree order, wrapping at both ends.
#pragma once

#include "shell/log_viewer/pages/paged_log.h"
#include "shell/log_viewer/tree_search_dialog.h"

namespace zelt {

class LongTask;

// The first match after `start`, or before it in a backward search; `start` itself comes last. kNoItem if
// nothing matches or the task was cancelled.
ItemIndex FindLabel(const PagedLog& model, ItemIndex start, const TreeSearch& search, LongTask& task);

}  // namespace zelt
