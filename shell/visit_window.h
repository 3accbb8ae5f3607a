// An invisible window on the main thread. When a component releases one of our objects on another thread, a message goes to
// this window, and the main thread then gives the reference back. Without the window, such a last release would keep the
// process alive until the next call.
#pragma once

#include <windows.h>

#include "system/owners.h"

namespace zelt {

class VisitWindow {
public:
    // One at a time. If the window cannot be made, such releases wait for the next call.
    VisitWindow();
    ~VisitWindow();
    VisitWindow(const VisitWindow&) = delete;
    VisitWindow& operator=(const VisitWindow&) = delete;

private:
    UniqueWindow window;
};

}  // namespace zelt
