#include "system/dialogs/dialog.h"

#include "com/type_info.h"
#include "system/dialogs/thread_dpi.h"

namespace zelt {
namespace {

// Posted by the dialog to itself: the system scales the controls only after the dialog has seen WM_DPICHANGED.
constexpr UINT kScaled = WM_APP + 1;

void SetIcon(HWND window, WPARAM size, int resource, int widthMetric, int heightMetric)
{
    const UINT dpi = GetDpiForWindow(window);
    // Shared icons stay loaded with the module, and nobody owns them.
    const HANDLE icon =
        LoadImageW(com::ThisModule(), MAKEINTRESOURCEW(resource), IMAGE_ICON, GetSystemMetricsForDpi(widthMetric, dpi),
                   GetSystemMetricsForDpi(heightMetric, dpi), LR_SHARED);
    SendMessageW(window, WM_SETICON, size, reinterpret_cast<LPARAM>(icon));
}

}  // namespace

Dialog::~Dialog()
{
    // A window that outlives its object no longer looks for it.
    if (window) SetWindowLongPtrW(window, DWLP_USER, 0);
}

INT_PTR Dialog::RunModal(int resource, HWND owner)
{
    const OwnWindowsDpi dpi;
    return DialogBoxParamW(com::ThisModule(), MAKEINTRESOURCEW(resource), owner, Procedure,
                           reinterpret_cast<LPARAM>(this));
}

HWND Dialog::CreateModeless(int resource, HWND owner)
{
    const OwnWindowsDpi dpi;
    return CreateDialogParamW(com::ThisModule(), MAKEINTRESOURCEW(resource), owner, Procedure,
                              reinterpret_cast<LPARAM>(this));
}

bool Dialog::OnCommand(int id, int)
{
    if (id != IDOK && id != IDCANCEL) return false;
    End(id);
    return true;
}

bool Dialog::OnNotify(const NMHDR&, LRESULT&) { return false; }

std::wstring Dialog::ItemText(int id) const
{
    const HWND item = Item(id);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(item)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(item, text.data(), static_cast<int>(text.size()))));
    return text;
}

int Dialog::Scaled(int length) const
{
    return MulDiv(length, static_cast<int>(GetDpiForWindow(window)), USER_DEFAULT_SCREEN_DPI);
}

int Dialog::ShowBox(const std::wstring& text, const wchar_t* caption, UINT flags) const
{
    return MessageBoxW(window, text.c_str(), caption, flags);
}

void Dialog::SetIcons(int resource)
{
    SetIcon(window, ICON_BIG, resource, SM_CXICON, SM_CYICON);
    SetIcon(window, ICON_SMALL, resource, SM_CXSMICON, SM_CYSMICON);
}

bool Dialog::Answer(LRESULT result) const
{
    SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
    return true;
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<Dialog*>(lParam)->window = window;
    }
    auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog) return FALSE;
    INT_PTR handled = FALSE;
    dialog->Guarded([&] { handled = dialog->Handle(message, wParam, lParam); });
    return handled;
}

void Dialog::HandlerReturned()
{
    if (--handlers != 0 || !destroyed) return;
    destroyed = false;
    com::Attempt([this] { OnDestroyed(); });
}

INT_PTR Dialog::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
        case WM_INITDIALOG: return OnInit();
        case WM_COMMAND: return OnCommand(LOWORD(wParam), HIWORD(wParam));
        case WM_NOTIFY: {
            LRESULT result = 0;
            return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), result) && Answer(result);
        }
        case WM_SYSCOMMAND: return OnSystemCommand(static_cast<UINT>(wParam) & 0xFFF0u);
        case WM_INITMENUPOPUP: OnPopupMenu(reinterpret_cast<HMENU>(wParam)); return FALSE;
        case WM_SIZE:
            if (wParam != SIZE_MINIMIZED) OnSize();
            return FALSE;
        case WM_GETMINMAXINFO: OnMinMaxInfo(*reinterpret_cast<MINMAXINFO*>(lParam)); return FALSE;
        case WM_DPICHANGED: PostMessageW(window, kScaled, 0, 0); return FALSE;
        case kScaled: OnScaled(); return TRUE;
        case WM_NCDESTROY: {
            SetWindowLongPtrW(window, DWLP_USER, 0);
            window = nullptr;
            destroyed = true;
            return FALSE;
        }
        default: return OnOther(message, wParam, lParam);
    }
}

}  // namespace zelt
