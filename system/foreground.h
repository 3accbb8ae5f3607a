// Windows that open while the user looks at another program.
#pragma once

#include <windows.h>

namespace zelt {

// Gives the window, which is shown already, the keyboard. Windows grants that only to the program that the user works with, and to
// those that it lets; otherwise the window and its button on the task bar flash until the user comes.
void BringToFront(HWND window);

}  // namespace zelt
