// The message boxes after a log closes: one reports that the end of the log is missing, the other offers to open the log.
#pragma once

#include <string>

#include "log/log_document.h"

namespace zelt {

// `openViewer` opens the log on Yes; null opens nothing.
void ShowClosedLog(const ClosedLog& log, void (*openViewer)(const std::wstring& path));

}  // namespace zelt
