// Keeps a window answering while its thread walks millions of items: messages are handled now and then, and Esc cancels.
// Keys and clicks in the client area are dropped meanwhile; the window refuses commands while one is Running.
#pragma once

#include <windows.h>

namespace zelt {

class LongTask {
public:
    explicit LongTask(HWND window);
    ~LongTask();
    LongTask(const LongTask&) = delete;
    LongTask& operator=(const LongTask&) = delete;

    // To be called at each step; false once the user has cancelled.
    bool Continue()
    {
        if (++steps % 256 == 0) Look();
        return !cancelled;
    }
    void Cancel() { cancelled = true; }
    bool Cancelled() const { return cancelled; }

    // The task of this thread, null if none runs.
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
