// The user's three settings that govern logging, and their place in the registry. Loading leaves a setting alone whose value is
// missing or malformed. Main thread only.
#pragma once

#include "system/outcome.h"
#include "system/registry.h"

namespace zelt {

// clang-format off
enum class LogOption {
    AutoLogLocation,
    PromptOpenLog,
    PravikUnit,
};
// clang-format on

struct LogOptions {
    bool autoLogLocation = false;  // Logs go to a folder on the desktop instead of where a dialog says.
    bool promptOpenLog = true;     // Ask whether to open a log when it is closed.
    CLSID pravikUnit = CLSID{};    // The unit operation that PRAVIK creates; all zero when none is chosen.
    RegistryRoot root;             // Where the settings are kept.

    // Fails when the registry cannot be reached; the fields then stay as they were.
    Outcome Load();
    // Stores one option, the one that was changed. Stores another only where the registry has no valid value for it: what another
    // program has changed meanwhile stays.
    Outcome Save(LogOption changed) const;
};

// The instance of the process.
LogOptions& TheLogOptions();

}  // namespace zelt
