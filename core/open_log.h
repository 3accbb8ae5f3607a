// Opening the log of a new logged root.
#pragma once

#include <string>
#include <string_view>

#include "core/log_document.h"

namespace zelt {

struct LogOptions;

// Asks for a place for the log of a new object, which the dialog's title calls `titleName`, and opens it there. The header
// gives `objectName` and `objectType`, which describes the object's kind. Null when there is to be no log: the user declined, or was told that the file cannot be written.
// The document is returned without a hold.
LogDocument* OpenLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                     std::string_view objectType);

}  // namespace zelt
