// An invisible window on the main thread. When a component releases one of our objects on another thread, a message goes to it,
// and the apartment then returns the reference. Without the window, such a last release would keep the process alive until the
// next call.
#pragma once

#include <windows.h>

#include "system/owners.h"

namespace zelt {

class VisitWindow {
public:
    // One at a time. Without a window, releases wait for the next call.
    VisitWindow();
    ~VisitWindow();
    VisitWindow(const VisitWindow&) = delete;
    VisitWindow& operator=(const VisitWindow&) = delete;

private:
    UniqueWindow window;
};

}  // namespace zelt
