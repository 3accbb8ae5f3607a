// A window that nobody sees, on the main thread: it hears when components on other threads have released our objects, and lets
// the apartment take the releases over. Without it, the last release on another thread would keep the process alive until
// somebody calls.
#pragma once

#include <windows.h>

#include <memory>

namespace zelt {

class VisitWindow {
public:
    // One at a time. Without a window, releases wait for the next call.
    VisitWindow();
    ~VisitWindow();
    VisitWindow(const VisitWindow&) = delete;
    VisitWindow& operator=(const VisitWindow&) = delete;

private:
    struct Destroyer {
        using pointer = HWND;
        void operator()(HWND window) const { DestroyWindow(window); }
    };
    std::unique_ptr<HWND, Destroyer> window;
};

}  // namespace zelt
