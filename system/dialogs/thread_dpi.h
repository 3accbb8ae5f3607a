// The awareness of screen resolutions that windows made on this thread get. The process is aware of one resolution, that of the
// main screen: the system enlarges the windows of packages, which are drawn for it, on other screens. Our own windows scale
// themselves for each screen, and say so while they are made.
#pragma once

#include <windows.h>

namespace zelt {

// Changes it for as long as it lives. A handler of one of our windows already runs with the awareness of that window.
class ThreadDpi {
public:
    // The first of the two that this system knows.
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
