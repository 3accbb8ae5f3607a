#include "samples/faulty/window_faults.h"

#include <windows.h>

#include <utility>

#include "com/type_info.h"

namespace zelt::sample {
namespace {

int* volatile nothing = nullptr;
void Fault() { *nothing = 1; }

// The message on which the next window faults; 0 for none. The hook faults once, on any message, if this is not 0.
UINT faultyMessage = 0;

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // Only once: the system may send the message again after a fault that it swallows.
    if (message == faultyMessage) {
        faultyMessage = 0;
        Fault();
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam)
{
    if (std::exchange(faultyMessage, 0) != 0) Fault();
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

BOOL CALLBACK Enumerate(HWND, LPARAM)
{
    Fault();
    return FALSE;
}

HWND MakeWindow()
{
    constexpr wchar_t kClass[] = L"ZeltSample.FaultyWindow";
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = com::ThisModule();
    windowClass.lpszClassName = kClass;
    RegisterClassW(&windowClass);
    return CreateWindowW(kClass, L"", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr, com::ThisModule(),
                         nullptr);
}

void FaultIn(UINT message)
{
    faultyMessage = message;
    const HWND window = MakeWindow();
    ShowWindow(window, SW_SHOWNOACTIVATE);
    SetWindowPos(window, nullptr, 0, 0, 300, 150, SWP_NOACTIVATE | SWP_NOZORDER);
    UpdateWindow(window);
    DestroyWindow(window);
    faultyMessage = 0;
}

}  // namespace

void FaultInWindowCreation() { FaultIn(WM_CREATE); }
void FaultInWindowSize() { FaultIn(WM_SIZE); }
void FaultInWindowPaint() { FaultIn(WM_PAINT); }

void FaultInHook()
{
    const HWND window = MakeWindow();
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, Hook, nullptr, GetCurrentThreadId());
    faultyMessage = WM_NULL + 1;
    SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
    UnhookWindowsHookEx(hook);
    DestroyWindow(window);
    faultyMessage = 0;
}

void FaultInEnumeration() { EnumWindows(Enumerate, 0); }

}  // namespace zelt::sample
