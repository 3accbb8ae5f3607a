#include "shell/log_viewer/long_task.h"

namespace zelt {
namespace {

// In milliseconds: how often messages are handled, and for how long at a time. There may be no end of messages: if painting takes
// longer than a timer's period, the timer's next message is always there.
constexpr ULONGLONG kPeriod = 50, kPatience = 20;

thread_local LongTask* running = nullptr;

bool IsInput(UINT message)
{
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) || (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST);
}

}  // namespace

LongTask::LongTask(HWND taskWindow)
    : window(taskWindow), cursor(SetCursor(LoadCursorW(nullptr, IDC_APPSTARTING))), looked(GetTickCount64())
{
    running = this;
}

LongTask::~LongTask()
{
    running = nullptr;
    SetCursor(cursor);
}

LongTask* LongTask::Running() { return running; }

void LongTask::Look()
{
    const ULONGLONG now = GetTickCount64();
    if (now - looked < kPeriod) return;
    looked = now;
    MSG message;
    while (GetTickCount64() - now < kPatience && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            cancelled = true;
            return;
        }
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) cancelled = true;
        if (IsInput(message.message) && (message.hwnd == window || IsChild(window, message.hwnd))) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace zelt
