#include "registration/registry_mirror.h"

#include "com/failure.h"
#include "registration/key_tree.h"

namespace zelt {

RegistryRoot ClassesHive(Scope scope, REGSAM view)
{
    return {scope == Scope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, view};
}

std::wstring ClassesPath(const std::wstring& path) { return L"Software\\Classes\\" + path; }

bool KeyExists(Scope scope, REGSAM view, const std::wstring& path)
{
    RegistryKey key;
    return key.Open(ClassesHive(scope, view), ClassesPath(path)) == ERROR_SUCCESS;
}

std::wstring DefaultValue(Scope scope, REGSAM view, const std::wstring& path)
{
    RegistryKey key;
    if (key.Open(ClassesHive(scope, view), ClassesPath(path)) != ERROR_SUCCESS) return {};
    return key.ReadString(L"").value_or(std::wstring());
}

void MirrorKey(Scope scope, const std::wstring& path)
{
    const auto tree = ReadKeyTree(ClassesHive(scope, OwnView()), ClassesPath(path));
    if (!tree) throw com::Failure(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    for (const REGSAM view : RegistryViews()) {
        if (view == OwnView()) continue;
        const RegistryRoot hive = ClassesHive(scope, view);
        if (ReadKeyTree(hive, ClassesPath(path)) == tree) continue;
        CheckWin32(DeleteKeyTree(hive, ClassesPath(path)));
        CheckWin32(WriteKeyTree(hive, ClassesPath(path), *tree));
    }
}

void RemoveKey(Scope scope, const std::wstring& path)
{
    for (const REGSAM view : RegistryViews()) CheckWin32(DeleteKeyTree(ClassesHive(scope, view), ClassesPath(path)));
}

void RemoveEmptyKey(Scope scope, const std::wstring& path)
{
    for (const REGSAM view : RegistryViews()) {
        const RegistryRoot hive = ClassesHive(scope, view);
        if (ReadKeyTree(hive, ClassesPath(path)) == KeyTree{}) CheckWin32(DeleteKeyTree(hive, ClassesPath(path)));
    }
}

void CheckWin32(LSTATUS result)
{
    if (result != ERROR_SUCCESS) throw com::Failure(HRESULT_FROM_WIN32(static_cast<DWORD>(result)));
}

}  // namespace zelt
