#include "tests/system/harness/server_readiness.h"

namespace zelt::test {
namespace {

// The window through which other threads reach the main thread; null before it is created.
HWND MainThreadWindow(DWORD process)
{
    HWND window = nullptr;
    while ((window = FindWindowExW(HWND_MESSAGE, window, L"ZELT visits", nullptr))) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process) return window;
    }
    return nullptr;
}

}  // namespace

bool WaitUntilServing(const Process& server)
{
    HWND window = nullptr;
    while (!(window = MainThreadWindow(server.Id()))) {
        if (!server.Running()) return false;
        Sleep(20);
    }
    // Returns when the message loop has handled this message.
    SendMessageW(window, WM_NULL, 0, 0);
    return server.Running();
}

}  // namespace zelt::test
