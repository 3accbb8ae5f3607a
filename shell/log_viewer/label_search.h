// The search through the labels of a log, in tree order, around both ends.
#pragma once

#include "shell/log_viewer/log_model.h"
#include "shell/log_viewer/tree_search_dialog.h"

namespace zelt {

class LongTask;

// The first match behind `start`, or before it when the search goes backward; `start` itself comes last. kNoItem when
// nothing matches, or the task was cancelled.
ItemIndex FindLabel(const LogModel& model, ItemIndex start, const TreeSearch& search, LongTask& task);

}  // namespace zelt
