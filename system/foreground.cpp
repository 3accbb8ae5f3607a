#include "system/foreground.h"

namespace zelt {

void BringToFront(HWND window)
{
    if (SetForegroundWindow(window)) return;
    FLASHWINFO flash = {sizeof flash, window, FLASHW_ALL | FLASHW_TIMERNOFG, 0, 0};
    FlashWindowEx(&flash);
}

}  // namespace zelt
