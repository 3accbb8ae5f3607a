#include "tests/system/harness/own_scope.h"

#include <filesystem>

#include "tests/system/harness/rights.h"

namespace zelt::test {
namespace {

// While this exists, what this process writes below HKEY_CLASSES_ROOT is registered for the current user.
class ClassesOfUser {
public:
    ClassesOfUser()
    {
        if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes,
                            nullptr) == ERROR_SUCCESS) {
            RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
        }
    }
    ~ClassesOfUser()
    {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        if (classes) RegCloseKey(classes);
    }
    ClassesOfUser(const ClassesOfUser&) = delete;
    ClassesOfUser& operator=(const ClassesOfUser&) = delete;

private:
    HKEY classes = nullptr;
};

}  // namespace

Scope OwnScope() { return MayRegisterForAll() ? Scope::Machine : Scope::User; }

std::wstring RegisterArgument() { return OwnScope() == Scope::Machine ? L"/RegServer" : L"/RegServerPerUser"; }
std::wstring UnregisterArgument() { return OwnScope() == Scope::Machine ? L"/UnregServer" : L"/UnregServerPerUser"; }

HRESULT CallRegistration(const std::string& library, const char* name)
{
    using Function = HRESULT(STDAPICALLTYPE*)();
    const auto path = std::filesystem::absolute(library).make_preferred();
    const HMODULE module = LoadLibraryW(path.c_str());
    if (!module) return HRESULT_FROM_WIN32(GetLastError());
    const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    HRESULT result = HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
    if (function && OwnScope() == Scope::Machine) {
        result = function();
    } else if (function) {
        const ClassesOfUser classes;
        result = function();
    }
    FreeLibrary(module);
    return result;
}

}  // namespace zelt::test
