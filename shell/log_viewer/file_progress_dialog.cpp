#include "shell/log_viewer/file_progress_dialog.h"

#include <commctrl.h>

#include "com/type_info.h"
#include "res/resource.h"

namespace zelt {
namespace {

constexpr int kRange = 1000;

}  // namespace

CFileProgressDialog::CFileProgressDialog(HWND owner)
    : window(CreateDialogParamW(com::ThisModule(), MAKEINTRESOURCEW(kDialogProgress), owner, Procedure,
                                reinterpret_cast<LPARAM>(this)))
{
    SendDlgItemMessageW(window, kProgressBar, PBM_SETRANGE32, 0, kRange);
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
}

CFileProgressDialog::~CFileProgressDialog()
{
    if (window) DestroyWindow(window);
}

INT_PTR CALLBACK CFileProgressDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        return TRUE;
    }
    if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
        reinterpret_cast<CFileProgressDialog*>(GetWindowLongPtrW(window, DWLP_USER))->cancelled = true;
        return TRUE;
    }
    return FALSE;
}

void CFileProgressDialog::Show(double position)
{
    SendDlgItemMessageW(window, kProgressBar, PBM_SETPOS, static_cast<WPARAM>(position * kRange), 0);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            cancelled = true;
            break;
        }
        if (window && IsDialogMessageW(window, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    shown = GetTickCount64();
}

}  // namespace zelt
