// Where a new log goes: a file named after the date and time, in a folder on the desktop, or the place that the user names in a
// dialog. Chooses a path and makes that folder if necessary: the code that opens the log makes the file, and a failure here
// means an object without a log, not an error.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "system/outcome.h"
#include "log/log_options.h"

namespace zelt {

// Chooses the path of a new log. `title` is the dialog's. No path means no log: the user declined, or the outcome says why. The
// caller loads the options.
Outcome ChooseLogPath(const LogOptions& options, const std::wstring& title, std::optional<std::wstring>& path);

// The same for a recording without a log: always a file named after the date and time, in that folder.
Outcome ChooseRecordingPath(std::optional<std::wstring>& path);

// The folder of the logs that are placed automatically, which need not exist yet. False when the desktop folder cannot be found.
bool AutomaticLogFolder(std::wstring& folder);

// What the choice depends on outside the process. A test replaces it; nothing else does.
struct LogSurroundings {
    SYSTEMTIME (*localTime)();
    bool (*desktopFolder)(std::wstring& folder);
    bool (*saveDialog)(const std::wstring& title, std::wstring& path);  // False when cancelled.
};

// Replaces the surroundings and returns the previous ones; null restores the system's.
const LogSurroundings* SetLogSurroundings(const LogSurroundings* surroundings);

}  // namespace zelt
