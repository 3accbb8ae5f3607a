// Keeps a window responsive while its thread walks millions of items: handles messages now and then, and Esc cancels.
// Drops other keyboard and mouse input to the window; the window refuses commands while a task is Running.
#pragma once

#include <windows.h>

namespace zelt {

class LongTask {
public:
    explicit LongTask(HWND window);
    ~LongTask();
    LongTask(const LongTask&) = delete;
    LongTask& operator=(const LongTask&) = delete;

    // Call at each step; false once the user has cancelled.
    bool Continue()
    {
        if (++steps % 256 == 0) Look();
        return !cancelled;
    }
    // For steps that take longer.
    bool ContinueNow()
    {
        Look();
        return !cancelled;
    }
    void Cancel() { cancelled = true; }
    bool Cancelled() const { return cancelled; }

    // This thread's task; null if none runs.
    static LongTask* Running();

private:
    void Look();

    const HWND window;
    const HCURSOR cursor;
    ULONGLONG looked;
    unsigned steps = 0;
    bool cancelled = false;
};

}  // namespace zelt
