#include "shell/visit_window.h"

#include <atomic>

#include "com/object.h"
#include "com/type_info.h"

namespace zelt {
namespace {

constexpr wchar_t kClass[] = L"ZELT visits";
constexpr UINT kVisit = WM_APP;

// Read by other threads, too.
std::atomic<HWND> target{nullptr};

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != kVisit) return DefWindowProcW(window, message, wParam, lParam);
    com::Object::ReceiveVisits();
    return 0;
}

}  // namespace

VisitWindow::VisitWindow()
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = com::ThisModule();
    windowClass.lpszClassName = kClass;
    RegisterClassW(&windowClass);
    window.reset(CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, com::ThisModule(), nullptr));
    target = window.get();
    com::Object::SetVisitSignal([] {
        if (const HWND heard = target) PostMessageW(heard, kVisit, 0, 0);
    });
}

VisitWindow::~VisitWindow()
{
    com::Object::SetVisitSignal(nullptr);
    target = nullptr;
}

}  // namespace zelt
