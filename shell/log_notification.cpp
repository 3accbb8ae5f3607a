#include "shell/log_notification.h"

#include <shellapi.h>

#include <algorithm>
#include <iterator>

#include "com/type_info.h"
#include "res/resource.h"
#include "system/edition.h"

namespace zelt {
namespace {

constexpr wchar_t kClass[] = L"ZELT notifications";
constexpr UINT kEvent = WM_APP;
constexpr UINT_PTR kTimer = 1;
constexpr UINT kShownFor = 15'000;  // milliseconds

NOTIFYICONDATAW IconOf(HWND window)
{
    NOTIFYICONDATAW icon = {};
    icon.cbSize = sizeof icon;
    icon.hWnd = window;
    icon.uID = 1;
    return icon;
}

// Cuts the beginning of a path that is too long: the file's name matters.
std::wstring NotificationText(const std::wstring& path, std::size_t most)
{
    const std::wstring begin = L"Logging to ";
    if (begin.size() + path.size() <= most) return begin + path;
    return begin + L"\u2026" + path.substr(path.size() - (most - begin.size() - 1));
}

template <std::size_t size>
void CopyText(const std::wstring& text, wchar_t (&to)[size])
{
    to[text.copy(to, size - 1)] = L'\0';
}

}  // namespace

LogNotification::~LogNotification() { Hide(); }

void LogNotification::Show(const std::wstring& path)
{
    if (!window) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = com::ThisModule();
        windowClass.lpszClassName = kClass;
        RegisterClassW(&windowClass);
        window.reset(CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, com::ThisModule(), nullptr));
        if (!window) return;
        SetWindowLongPtrW(window.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    NOTIFYICONDATAW icon = IconOf(window.get());
    icon.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_INFO;
    icon.uCallbackMessage = kEvent;
    icon.hIcon =
        static_cast<HICON>(LoadImageW(com::ThisModule(), MAKEINTRESOURCEW(kIconApplication), IMAGE_ICON,
                                      GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    CopyText(kThisEdition.name, icon.szTip);
    CopyText(kThisEdition.name, icon.szInfoTitle);
    CopyText(NotificationText(path, std::size(icon.szInfo) - 1), icon.szInfo);
    icon.dwInfoFlags = NIIF_INFO | NIIF_NOSOUND | NIIF_RESPECT_QUIET_TIME;
    // Without a task bar, there is no notification.
    if (!Shell_NotifyIconW(isShown ? NIM_MODIFY : NIM_ADD, &icon)) return;
    isShown = true;
    SetTimer(window.get(), kTimer, kShownFor, nullptr);
}

void LogNotification::Hide()
{
    if (!isShown) return;
    isShown = false;
    KillTimer(window.get(), kTimer);
    NOTIFYICONDATAW icon = IconOf(window.get());
    Shell_NotifyIconW(NIM_DELETE, &icon);
}

LRESULT CALLBACK LogNotification::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const self = reinterpret_cast<LogNotification*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const bool isOver = (message == WM_TIMER && wParam == kTimer) ||
                        (message == kEvent && (lParam == NIN_BALLOONTIMEOUT || lParam == NIN_BALLOONUSERCLICK));
    if (!self || !isOver) return DefWindowProcW(window, message, wParam, lParam);
    self->Hide();
    return 0;
}

}  // namespace zelt
