#include "shell/log_viewer/file_progress_dialog.h"

#include <commctrl.h>

#include "res/resource.h"

namespace zelt {
namespace {

constexpr int kRange = 1000;
// For how many milliseconds messages are handled at a time. There may be no end of them: if painting takes longer than a timer's
// period, the timer's next message is always there.
constexpr ULONGLONG kPatience = 20;

}  // namespace

CFileProgressDialog::CFileProgressDialog(HWND owner, std::function<void(MSG&)> others) : others(std::move(others))
{
    CreateModeless(kDialogProgress, owner);
    SendDlgItemMessageW(Window(), kProgressBar, PBM_SETRANGE32, 0, kRange);
    ShowWindow(Window(), SW_SHOW);
    UpdateWindow(Window());
}

CFileProgressDialog::~CFileProgressDialog()
{
    if (Window()) DestroyWindow(Window());
}

bool CFileProgressDialog::OnCommand(int id, int)
{
    if (id != IDCANCEL) return false;
    cancelled = true;
    return true;
}

void CFileProgressDialog::Show(double position)
{
    SendDlgItemMessageW(Window(), kProgressBar, PBM_SETPOS, static_cast<WPARAM>(position * kRange), 0);
    const ULONGLONG start = GetTickCount64();
    MSG message;
    while (GetTickCount64() - start < kPatience && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            cancelled = true;
            break;
        }
        if (Window() && IsDialogMessageW(Window(), &message)) continue;
        others(message);
    }
    shown = GetTickCount64();
}

}  // namespace zelt
