#include "log/log_location.h"

#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include <memory>

#include "system/dialogs/foreground.h"
#include "system/known_folder.h"

namespace zelt {
namespace {

SYSTEMTIME LocalTime()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now;
}

bool DesktopFolder(std::wstring& folder) { return SUCCEEDED(KnownFolder(FOLDERID_Desktop, KF_FLAG_DEFAULT, folder)); }

constexpr UINT_PTR kFrontTimer = 1;
constexpr UINT kFrontInterval = 50;  // milliseconds

// Without this, the window of the simulator, which is another process, would hide the dialog. The dialog is put in front before
// it is shown, and gets the keyboard soon after.
UINT_PTR CALLBACK PutInFront(HWND page, UINT message, WPARAM wParam, LPARAM parameter)
{
    const HWND dialog = GetParent(page);
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(parameter)->code == CDN_INITDONE) {
        SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        SetTimer(page, kFrontTimer, kFrontInterval, nullptr);
    }
    if (message == WM_TIMER && wParam == kFrontTimer && IsWindowVisible(dialog)) {
        KillTimer(page, kFrontTimer);
        BringToFront(dialog);
    }
    return 0;
}

bool SaveDialog(const std::wstring& title, std::wstring& path)
{
    wchar_t buffer[1024] = L"";
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.lpstrFilter = L"ZELT Log Files (*.zlg)\0*.zlg\0All files (*.*)\0*.*\0";
    dialog.lpstrFile = buffer;
    dialog.nMaxFile = static_cast<DWORD>(std::size(buffer));
    dialog.lpstrTitle = title.c_str();
    dialog.lpstrDefExt = L"zlg";
    dialog.Flags = OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_ENABLEHOOK;
    dialog.lpfnHook = PutInFront;
    if (!GetSaveFileNameW(&dialog)) return false;
    path = buffer;
    return true;
}

constexpr LogSurroundings kSystemSurroundings = {LocalTime, DesktopFolder, SaveDialog};

const LogSurroundings* surroundingsInUse = &kSystemSurroundings;

// "05March2012-14h07". The month is written in the system's language.
std::wstring TimeText(const SYSTEMTIME& time)
{
    wchar_t date[128] = L"", clock[128] = L"";
    GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &time, L"ddMMMMyyyy", date, static_cast<int>(std::size(date)));
    GetTimeFormatW(LOCALE_SYSTEM_DEFAULT, 0, &time, L"HH'h'mm", clock, static_cast<int>(std::size(clock)));
    return std::wstring(date) + L'-' + clock;
}

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// The path of a file "<beginning><time><ending>" that does not exist, with a number after the time if necessary.
Outcome AutomaticPath(const wchar_t* beginning, const wchar_t* ending, std::optional<std::wstring>& path)
{
    std::wstring folder;
    if (!AutomaticLogFolder(folder)) {
        return Outcome::Failed(L"Failed to obtain location of Desktop folder", L"Create log file:",
                               MB_OK | MB_ICONERROR | MB_TOPMOST);
    }
    CreateDirectoryW(folder.c_str(), nullptr);
    const std::wstring base = folder + L'\\' + beginning + TimeText(surroundingsInUse->localTime());
    path = base + ending;
    for (int number = 1; Exists(*path); ++number) path = base + L'(' + std::to_wstring(number) + L')' + ending;
    return {};
}

}  // namespace

Outcome ChooseLogPath(const LogOptions& options, const std::wstring& title, std::optional<std::wstring>& path)
{
    path.reset();
    if (options.autoLogLocation) return AutomaticPath(L"log-", L".zlg", path);
    std::wstring chosen;
    if (surroundingsInUse->saveDialog(title, chosen)) path = std::move(chosen);
    return {};
}

Outcome ChooseRecordingPath(std::optional<std::wstring>& path)
{
    path.reset();
    // Not "log-": the recording beside a log could have the same name.
    return AutomaticPath(L"recording-", L".zlr", path);
}

bool AutomaticLogFolder(std::wstring& folder)
{
    if (!surroundingsInUse->desktopFolder(folder)) return false;
    folder += L"\\ZELT logs";
    return true;
}

const LogSurroundings* SetLogSurroundings(const LogSurroundings* surroundings)
{
    const LogSurroundings* before = surroundingsInUse;
    surroundingsInUse = surroundings ? surroundings : &kSystemSurroundings;
    return before;
}

}  // namespace zelt
