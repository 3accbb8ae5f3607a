// An invisible window on the main thread. When a component releases one of our objects on another thread, this window gets a
// message, and the main thread then releases the object. Without the window, an object whose last reference was released like
// this would keep the process alive until the next call.
#pragma once

#include <windows.h>

#include "system/owners.h"

namespace zelt {

class VisitWindow {
public:
    // Only one may exist at a time. If the window cannot be made, such releases wait for the next call.
    VisitWindow();
    ~VisitWindow();
    VisitWindow(const VisitWindow&) = delete;
    VisitWindow& operator=(const VisitWindow&) = delete;

private:
    UniqueWindow window;
};

}  // namespace zelt
