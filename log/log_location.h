// Where a new log goes: a file named after the date and time, in a folder on the desktop, or the place that the user names in a
// dialog. Chooses the path and makes that folder if necessary; the code that opens the log makes the file. After a failure
// here, the object is made all the same, without a log.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "system/outcome.h"
#include "log/log_options.h"

namespace zelt {

// Chooses the path of a new log. `title` is the title of the dialog. No path means no log: the user declined, or the outcome
// says why. The caller loads the options.
Outcome ChooseLogPath(const LogOptions& options, const std::wstring& title, std::optional<std::wstring>& path);

// The same for a recording without a log: always a file named after the date and time, in the folder on the desktop.
Outcome ChooseRecordingPath(std::optional<std::wstring>& path);

// The folder of the logs that are placed automatically; it need not exist yet. False if the desktop folder cannot be found.
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
