// Ends the program with a message when a test takes too long. For tests of faults that could leave a thread hanging: they fail
// soon instead of waiting for somebody to end them. Uses its own thread, because the hanging thread cannot react.
#pragma once

#include <windows.h>

#include <cstdio>
#include <thread>

namespace zelt::test {

class Watchdog {
public:
    static constexpr int kExitCode = 99;

    // `what` names the test; it must outlive this object.
    explicit Watchdog(const char* what, DWORD seconds = 20)
        : over(CreateEventW(nullptr, TRUE, FALSE, nullptr)), guard([this, what, seconds] { Wait(what, seconds); })
    {}
    ~Watchdog()
    {
        SetEvent(over);
        guard.join();
        CloseHandle(over);
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void Wait(const char* what, DWORD seconds) const
    {
        if (WaitForSingleObject(over, seconds * 1000) != WAIT_TIMEOUT) return;
        std::printf("%s: not over after %lu seconds\n", what, seconds);
        std::fflush(stdout);
        // Runs no destructors and notifies no libraries, because a hanging thread may hold what they need.
        TerminateProcess(GetCurrentProcess(), kExitCode);
    }

    HANDLE over;
    std::thread guard;
};

}  // namespace zelt::test
