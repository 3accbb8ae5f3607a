// Ends the program with a message when a test takes longer than it may: for faults that would leave a thread hanging, so that
// the test fails by itself and soon. Needs a thread of its own, because the one that hangs cannot be asked.
#pragma once

#include <windows.h>

#include <cstdio>
#include <thread>

namespace zelt::test {

class Watchdog {
public:
    static constexpr int kExitCode = 99;

    // `what` names the test; it has to outlive this.
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
        // Nothing that a thread which hangs may hold: no destructors, no notices to libraries.
        TerminateProcess(GetCurrentProcess(), kExitCode);
    }

    HANDLE over;
    std::thread guard;
};

}  // namespace zelt::test
