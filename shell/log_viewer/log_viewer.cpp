#include "shell/log_viewer/log_viewer.h"

#include <memory>
#include <utility>

#include "system/exception_text.h"
#include "system/dialogs/message_box.h"
#include "log/recording/rendered_recording.h"
#include "log_reader/log_reader.h"
#include "system/owners.h"
#include "shell/lock_object.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace zelt {
namespace {

struct ViewerStart {
    std::wstring path;
    Lock lock;
};

void Fail(const std::wstring& path, const std::wstring& reason) noexcept
{
    try {
        ShowMessage(L"Parse error in log file \"" + path + L"\": " + reason, L"Error:", MB_OK | MB_ICONERROR);
    } catch (...) {
        // There is no memory for the full text.
        MessageBoxW(nullptr, L"Out of memory", L"Error:", MB_OK | MB_ICONERROR);
    }
}

DWORD WINAPI ShowViewer(void* parameter)
{
    const std::unique_ptr<ViewerStart> start(static_cast<ViewerStart*>(parameter));
    try {
        const RenderedRecording log(start->path);
        CViewLogDlg viewer(log.Path(), std::move(start->lock));
        if (viewer.Open()) {
            viewer.RunMessages();
        } else {
            Fail(start->path, L"the window cannot be made");
        }
    } catch (...) {
        Fail(start->path, TextOfException());
    }
    return 0;
}

}  // namespace

void OpenLogViewer(const std::wstring& path)
{
    // All viewers are opened from the main thread.
    static const bool prepared = (PrepareLogReader(), true);
    static_cast<void>(prepared);
    auto start = std::make_unique<ViewerStart>(ViewerStart{path, MakeLock()});
    const UniqueHandle thread(CreateThread(nullptr, 0, ShowViewer, start.get(), 0, nullptr));
    if (thread) {
        static_cast<void>(start.release());  // the thread's now
    } else {
        Fail(path, L"its thread cannot be started");
    }
}

}  // namespace zelt
