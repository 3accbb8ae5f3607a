#include "shell/add_package/other_edition.h"

#include <windows.h>

#include "com/type_info.h"
#include "registration/registration_check.h"
#include "system/edition.h"
#include "system/owners.h"

namespace zelt {
namespace {

bool IsFile(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Without the double quotes that registration writes.
std::wstring RegisteredProgram()
{
    RegistryKey key;
    const std::wstring path = ClassPath(kOtherEdition.classes[0].classId) + L"\\LocalServer32";
    if (key.Open({HKEY_CLASSES_ROOT, OwnView()}, path) != ERROR_SUCCESS) return {};
    const std::wstring command = key.ReadString(L"").value_or(std::wstring());
    return command.size() > 2 && command.front() == L'"' ? command.substr(1, command.find(L'"', 1) - 1) : command;
}

}  // namespace

std::wstring OtherEditionProgram()
{
    const std::wstring own = com::ModulePath(com::ThisModule());
    const std::wstring beside = own.substr(0, own.rfind(L'\\') + 1) + kOtherEdition.program;
    for (const std::wstring& program : {beside, RegisteredProgram()}) {
        if (CanRun(kOtherEdition) && IsFile(program)) return program;
    }
    return {};
}

bool StartOtherEdition()
{
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
