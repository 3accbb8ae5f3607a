// Windows that open while the user looks at another program.
#pragma once

#include <windows.h>

namespace zelt {

// Gives the window, which is shown already, the keyboard. Windows grants that only to the program that the user works with, and to
// those that it lets; otherwise the window and its button on the task bar flash until the user comes.
inline void BringToFront(HWND window)
{
    if (SetForegroundWindow(window)) return;
    FLASHWINFO flash = {sizeof flash, window, FLASHW_ALL | FLASHW_TIMERNOFG, 0, 0};
    FlashWindowEx(&flash);
}

}  // namespace zelt
