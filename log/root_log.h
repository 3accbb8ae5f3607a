// The log of a new root that a simulator has asked for: reads the options again, opens the log, and tells the user what went
// wrong. The dialog that asks for the place lets calls in, and so do the messages.
#pragma once

#include "log/log_options.h"
#include "log/open_log.h"

namespace zelt {

// Like OpenLog; holds nothing when there is no log.
DocumentHold OpenRootLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                         std::string_view objectType);

// Like OpenRecording; does not read the options again.
DocumentHold OpenRootRecording(LogOptions& options, const std::wstring& objectName, std::string_view objectType);

}  // namespace zelt
