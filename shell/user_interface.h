// The windows that the program can show when it starts, behind two functions, so that start-up knows nothing about dialogs.
// Each window takes a server-process reference before its function returns, and releases it when the window is gone.
#pragma once

#include <string>

namespace zelt {

struct UserInterface {
    // Shows the list of exported packages. Call on the main thread, before its message loop runs.
    void (*showMainWindow)();
    // Shows a log file in a window that has its own thread.
    void (*showLogViewer)(const std::wstring& path);
};

// The windows of this executable.
extern const UserInterface kUserInterface;

}  // namespace zelt
