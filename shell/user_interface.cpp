#include "shell/user_interface.h"

#include <memory>
#include <utility>

#include "core/message.h"
#include "shell/handle.h"
#include "shell/lock_object.h"
#include "shell/log_viewer/log_viewer.h"

// The main window does not exist yet: a message box says so in its place, on a thread of its own, so that the main thread goes
// on to serve clients meanwhile.
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

void ShowMainWindow()
{
    StartNotice(
        L"ZELT runs 32-bit CAPE-OPEN packages out of process and logs every call.\r\n\r\n"
        L"The window for choosing the exported packages is not there yet. Packages are listed in the registry, under "
        L"HKEY_CURRENT_USER\\Software\\ZELT: the values NumPackages and Package1, Package2 and so on, each with five "
        L"strings: class identifier, kind (0 to 5), name in its manager, exported name, true or false for "
        L"logging.\r\n\r\n"
        L"Packages are served to simulators until this message is closed and no simulator holds one.");
}

}  // namespace

const UserInterface kUserInterface = {ShowMainWindow, OpenLogViewer};

}  // namespace zelt
