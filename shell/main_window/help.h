// The help file beside the executable, in the system's HTML Help. The viewer's library stays loaded once it has been used,
// because its windows live in this process.
#pragma once

#include <windows.h>

namespace zelt {

// Opens the help topic of the program; on failure the user has been told when this returns.
void OpenHelp(HWND owner);

// Closes what OpenHelp opened. Call before the message loop ends.
void CloseHelp();

}  // namespace zelt
