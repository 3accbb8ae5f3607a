// Finds out from the command line what the program was started for. A pure function of the text: it reads no file, no
// registry and no global state, and does nothing itself.
#pragma once

#include <string>
#include <string_view>

namespace zelt {

enum class StartMode {
    Registration,  // Register or unregister, and end. If no action is named: serve without a window.
    LogViewer,     // Show a log file; no main window, and no package list until a client needs it.
    Server,        // Started by COM: serve the packages without a window.
    Interactive,   // Serve the packages and show the main window.
};

enum class RegistrationAction { None, Register, Unregister, RegisterPerUser, UnregisterPerUser };

struct StartPlan {
    StartMode mode = StartMode::Interactive;
    RegistrationAction action = RegistrationAction::None;
    std::wstring logFile;
};

// `tail` is the command line after the program's own name.
StartPlan ParseCommandLine(std::wstring_view tail);

}  // namespace zelt
