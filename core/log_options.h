// The user's three settings that govern logging, and their place in the registry. Loading never fails: a value that is
// missing or malformed leaves the field as it was. Main thread only.
#pragma once

#include "core/registry.h"

namespace zelt {

struct LogOptions {
    bool autoLogLocation = false;  // Logs go to a folder on the desktop instead of where a dialog says.
    bool promptOpenLog = true;     // Ask whether to open a log when it is closed.
    CLSID pravikUnit = CLSID{};    // The unit operation that PRAVIK creates; all zero when none is chosen.
    RegistryRoot root;             // Where the settings are kept.

    void Load();
    void Save() const;
};

// The instance of the process.
LogOptions& TheLogOptions();

}  // namespace zelt
