// Opening the log of a new logged root.
#pragma once

#include <string>
#include <string_view>

#include "log/log_document.h"
#include "system/outcome.h"

namespace zelt {

struct LogOptions;

struct OpenedLog {
    // Holds no document if there is no log: the user declined, or the outcome says why.
    DocumentHold document;
    Outcome outcome;
};

// Chooses a place for the log of a new object and opens the log there; a dialog's title calls the object `titleName`. The
// header gives `objectName`, and `objectType`, which describes the object's kind. If the options say so, begins a recording
// beside the log and notifies the user. The caller loads the options.
OpenedLog OpenLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                  std::string_view objectType);

// Begins a recording of a new object that is not logged: its document has no log.
OpenedLog OpenRecording(LogOptions& options, const std::wstring& objectName, std::string_view objectType);

// Called when a log has been opened and its user wants a notification. Installed by the layer that has a user; may be null.
using LogOpenedFunction = void (*)(const std::wstring& path);
LogOpenedFunction SetLogOpened(LogOpenedFunction function);

}  // namespace zelt
