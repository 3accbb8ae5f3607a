// The help file beside the executable, shown by the system's HTML Help. Its library stays loaded after the first use,
// because its windows live in this process.
#pragma once

#include <windows.h>

namespace zelt {

// Opens the program's help topic. Reports a failure to the user before it returns.
void OpenHelp(HWND owner);

// Closes what OpenHelp opened. Call before the message loop ends.
void CloseHelp();

}  // namespace zelt
