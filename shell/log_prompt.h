// The message boxes about a log that was closed: that its end is missing, and the offer to open it.
#pragma once

#include <string>

#include "core/log_document.h"

namespace zelt {

// `openViewer` opens the log on Yes; null opens nothing.
void ShowClosedLog(const ClosedLog& log, void (*openViewer)(const std::wstring& path));

}  // namespace zelt
