#include "shell/log_prompt.h"

#include "system/dialogs/message_box.h"

namespace zelt {

void ShowClosedLog(const ClosedLog& log, void (*openViewer)(const std::wstring& path))
{
    if (log.missing > 0) {
        ShowMessage(L"The end of log file \"" + log.path + L"\" is missing. Entries that could not be written: " +
                        std::to_wstring(log.missing),
                    L"Error:", MB_OK | MB_ICONERROR | MB_TOPMOST);
    }
    if (!log.isOffered) return;
    const int answer = ShowMessage(L"Open log file \"" + log.path + L"\"?", L"Object terminated:",
                                   MB_YESNO | MB_ICONQUESTION | MB_TOPMOST);
    if (answer == IDYES && openViewer) openViewer(log.path);
}

}  // namespace zelt
