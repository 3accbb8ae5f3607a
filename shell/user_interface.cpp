#include "shell/user_interface.h"

#include <memory>
#include <utility>

#include "core/message.h"
#include "shell/handle.h"
#include "shell/lock_object.h"
#include "shell/main_window/package_manager_dialog.h"

// The log viewer does not exist yet: a message box says so in its place, on a thread of its own, so that the main thread
// goes on to serve clients meanwhile.
namespace zelt {
namespace {

struct Notice {
    std::wstring text;
    Lock lock;
};

DWORD WINAPI ShowNotice(void* parameter)
{
    const std::unique_ptr<Notice> notice(static_cast<Notice*>(parameter));
    ShowMessage(notice->text, L"ZELT", MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
    return 0;
}

void StartNotice(std::wstring text)
{
    auto notice = std::make_unique<Notice>(Notice{std::move(text), MakeLock()});
    const UniqueHandle thread(CreateThread(nullptr, 0, ShowNotice, notice.get(), 0, nullptr));
    if (thread) notice.release();
}

void ShowLogViewer(const std::wstring& path)
{
    StartNotice(L"The log viewer is not there yet. This log is XML text, which any editor shows:\r\n\r\n" + path);
}

}  // namespace

const UserInterface kUserInterface = {CPackageManagerDlg::Show, ShowLogViewer};

}  // namespace zelt
