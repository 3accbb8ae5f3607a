// The user's settings for logging and for the behaviour of the proxies, and where the registry keeps them. Loading does not
// change a setting whose value is missing or malformed.
#pragma once

#include "system/outcome.h"
#include "system/registry.h"

namespace zelt {

// clang-format off
enum class LogOption {
    AutoLogLocation,
    PromptOpenLog,
    PravikUnit,
    LoadAfterInitNew,
    HandBackOriginals,
    KeepManager,
    ForwardManagerEdit,
    QueueCalls,
    RecordCalls,
    RecordUnlogged,
    NotifyLog,
    WriteDumps,
};
// clang-format on

struct LogOptions {
    bool autoLogLocation = false;     // Logs go to a folder on the desktop instead of where a dialog says.
    bool promptOpenLog = true;        // Ask whether to open a log when it is closed.
    CLSID pravikUnit = CLSID{};       // The unit operation that PRAVIK creates; all zero when none is chosen.
    bool loadAfterInitNew = false;    // PRAVIK may be loaded after InitNew: it makes its unit operation again.
    bool handBackOriginals = false;   // An object that goes back to where it came from goes without its proxy.
    bool keepManager = false;         // The manager of a package lives as long as the package.
    bool forwardManagerEdit = false;  // Edit of our managers opens that of the managers behind the packages.
    bool queueCalls = false;          // A call that arrives during another client's call is refused for now.
    bool recordCalls = false;         // Each log has a recording beside it.
    bool recordUnlogged = false;      // Packages without a log are recorded.
    bool notifyLog = false;           // A notification says where a log goes.
    bool writeDumps = false;          // A fault that ends the process leaves a dump.
    RegistryRoot root;                // Where the settings are kept.

    // Fails when the registry cannot be reached; the fields then stay as they were.
    Outcome Load();
    // Stores the option that was changed. Stores another only where the registry has no valid value for it, so that changes by
    // other programs stay.
    Outcome Save(LogOption changed) const;

    // The settings that differ from their defaults, by their names in the registry: "AutoLogLocation=1 RecordCalls=1".
    std::string Text() const;
};

// The instance of the process; for the main thread only.
LogOptions& TheLogOptions();

}  // namespace zelt
