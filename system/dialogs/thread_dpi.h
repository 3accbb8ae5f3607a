// The awareness of screen resolutions that windows get when this thread makes them. The process is aware of one resolution, that
// of the main screen. The windows of packages are drawn for that resolution, and the system enlarges them on other screens. Our
// own windows scale themselves for each screen, and tell the system so while they are made.
#pragma once

#include <windows.h>

namespace zelt {

// Changes the thread's awareness for as long as it lives. A handler of one of our windows already runs with the awareness of that
// window.
class ThreadDpi {
public:
    // Sets the first of the two that this system knows.
    explicit ThreadDpi(DPI_AWARENESS_CONTEXT context, DPI_AWARENESS_CONTEXT older = nullptr)
        : before(SetThreadDpiAwarenessContext(context))
    {
        if (!before && older) before = SetThreadDpiAwarenessContext(older);
    }
    ~ThreadDpi()
    {
        if (before) SetThreadDpiAwarenessContext(before);
    }
    ThreadDpi(const ThreadDpi&) = delete;
    ThreadDpi& operator=(const ThreadDpi&) = delete;

private:
    DPI_AWARENESS_CONTEXT before;  // null if it was not changed
};

// For our own windows.
class OwnWindowsDpi : ThreadDpi {
public:
    OwnWindowsDpi() : ThreadDpi(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2, DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE) {}
};

// For calls into components from a handler of one of our windows.
class ForeignWindowsDpi : ThreadDpi {
public:
    ForeignWindowsDpi() : ThreadDpi(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE) {}
};

}  // namespace zelt
