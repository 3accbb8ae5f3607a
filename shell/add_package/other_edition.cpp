#include "shell/add_package/other_edition.h"

#include <windows.h>

#include <cwchar>
#include <iterator>

#include "com/type_info.h"
#include "registration/registration_check.h"
#include "system/edition.h"
#include "system/file_presence.h"
#include "system/owners.h"

namespace zelt {
namespace {

std::wstring RegisteredProgram()
{
    RegistryKey key;
    const std::wstring path = ClassPath(kOtherEdition.classes[0].classId) + L"\\LocalServer32";
    if (key.Open({HKEY_CLASSES_ROOT, OwnView()}, path) != ERROR_SUCCESS) return {};
    return ProgramOf(key.ReadString(L"").value_or(std::wstring()));
}

// The other edition's main window, if a process shows it. Other programs may have a window with that title.
HWND ShownWindow()
{
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, nullptr, kOtherEdition.windowTitle)) != nullptr) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        const UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
        wchar_t path[1024];
        DWORD length = static_cast<DWORD>(std::size(path));
        if (!process || !QueryFullProcessImageNameW(process.get(), 0, path, &length)) continue;
        const std::wstring program(path, length);
        if (_wcsicmp(program.c_str() + (program.rfind(L'\\') + 1), kOtherEdition.program) == 0) return window;
    }
    return nullptr;
}

}  // namespace

std::wstring OtherEditionProgram()
{
    if (!CanRun(kOtherEdition)) return {};
    for (const std::wstring& program : {com::BesideThisModule(kOtherEdition.program), RegisteredProgram()}) {
        if (IsFile(program)) return program;
    }
    return {};
}

bool ShowOtherEdition()
{
    if (const HWND shown = ShownWindow()) {
        if (IsIconic(shown)) ShowWindow(shown, SW_RESTORE);
        SetForegroundWindow(shown);
        return true;
    }
    const std::wstring program = OtherEditionProgram();
    std::wstring commandLine = L'"' + program + L'"';
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        return false;
    }
    const UniqueHandle handle(process.hProcess), thread(process.hThread);
    // The user has just asked for its window.
    AllowSetForegroundWindow(process.dwProcessId);
    return true;
}

}  // namespace zelt
