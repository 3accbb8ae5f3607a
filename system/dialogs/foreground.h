// For windows that open while the user works with another program.
#pragma once

#include <windows.h>

namespace zelt {

// Gives the keyboard focus to the window, which is already shown. Windows allows this only to the program that the user is
// working with, and to programs that have its permission; otherwise the window and its button on the task bar flash until the
// user turns to the window.
inline void BringToFront(HWND window)
{
    if (SetForegroundWindow(window)) return;
    FLASHWINFO flash = {sizeof flash, window, FLASHW_ALL | FLASHW_TIMERNOFG, 0, 0};
    FlashWindowEx(&flash);
}

}  // namespace zelt
