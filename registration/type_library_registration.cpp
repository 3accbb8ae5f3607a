#include "registration/type_library_registration.h"

#include <olectl.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <cstdio>
#include <vector>

#include "com/failure.h"
#include "com/type_info.h"
#include "com/type_library_for_user.h"
#include "res/resource.h"
#include "registration/library_facts.h"
#include "registration/registrar.h"
#include "registration/registration_check.h"
#include "registration/shared_file.h"
#include "system/guid_text.h"

namespace zelt {
namespace {

using Microsoft::WRL::ComPtr;

// clang-format off
constexpr SharedLibrary kSharedLibraries[] = {
    {kStandardLibrary,      L"cape-open-1.1.tlb"},
    {kThermoContextLibrary, L"cape-open-thermo-context-1.0.tlb"},
};
// clang-format on

// The marshaller that works with type libraries.
constexpr wchar_t kTypeLibraryMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

std::wstring InterfacePath(const LibraryInterface& member) { return L"Interface\\" + GuidText(member.iid); }

// What a registration for the scope may rely on: the machine's keys and, for the user's scope, the user's own.
bool VisibleKey(Scope scope, REGSAM view, const std::wstring& path)
{
    return KeyExists(Scope::Machine, view, path) || (scope == Scope::User && KeyExists(Scope::User, view, path));
}

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.find_last_of(L'\\')); }

void WriteDefault(Scope scope, REGSAM view, const std::wstring& path, const std::wstring& value)
{
    RegistryKey key;
    CheckWin32(key.Create(ClassesHive(scope, view), ClassesPath(path), KEY_READ | KEY_WRITE));
    CheckWin32(key.WriteString(L"", value));
}

// A 64-bit process also accepts a library that is registered for 32 bits, but a 32-bit process accepts none that is registered
// for 64.
bool LibraryVisible(Scope scope, REGSAM view, const std::wstring& versionPath)
{
    const bool accepts64 = view == KEY_WOW64_64KEY;
    return VisibleKey(scope, view, versionPath + L"\\0\\win32") ||
           (accepts64 && VisibleKey(scope, view, versionPath + L"\\0\\win64"));
}

void WriteLibrary(Scope scope, REGSAM view, const LibraryFacts& facts, const std::wstring& file)
{
    if (!VisibleKey(scope, view, facts.versionPath)) {
        WriteDefault(scope, view, facts.versionPath, facts.description);
        WriteDefault(scope, view, facts.versionPath + L"\\FLAGS", L"0");
        WriteDefault(scope, view, facts.versionPath + L"\\HELPDIR", FolderOf(file));
    }
    WriteDefault(scope, view, facts.versionPath + L"\\0\\win32", file);
}

void WriteInterface(Scope scope, REGSAM view, const LibraryFacts& facts, const LibraryInterface& member)
{
    const std::wstring path = InterfacePath(member);
    WriteDefault(scope, view, path, member.name);
    WriteDefault(scope, view, path + L"\\ProxyStubClsid32", kTypeLibraryMarshaller);
    RegistryKey library;
    CheckWin32(library.Create(ClassesHive(scope, view), ClassesPath(path + L"\\TypeLib"), KEY_READ | KEY_WRITE));
    CheckWin32(library.WriteString(L"", GuidText(facts.libid)));
    CheckWin32(library.WriteString(L"Version", facts.version));
}

// Points the library's entries to the program of the other edition, by its registered path.
void LeaveToOther(Scope scope, const LibraryFacts& facts)
{
    for (const REGSAM view : RegistryViews()) {
        const std::wstring path = facts.versionPath + L"\\0\\win32";
        const std::wstring server =
            DefaultValue(scope, view, ClassPath(kOtherEdition.classes[0].classId) + L"\\LocalServer32");
        if (server.empty() || !KeyExists(scope, view, path)) continue;
        WriteDefault(scope, view, path, ProgramOf(server));
    }
}

}  // namespace

std::span<const SharedLibrary> SharedLibraries() { return kSharedLibraries; }

void RegisterOwnLibrary(Scope scope, const std::wstring& modulePath)
{
    ComPtr<ITypeLib> library;
    com::Check(com::LoadModuleTypeLibrary(kOwnLibrary, &library));
    const LibraryFacts facts = ReadLibraryFacts(*library.Get());
    std::wstring path = modulePath, folder = FolderOf(modulePath);
    {
        const ClassesRootOverride root(scope);
        com::Check(scope == Scope::User ? RegisterTypeLibForUser(library.Get(), path.data(), folder.data())
                                        : RegisterTypeLib(library.Get(), path.data(), folder.data()));
    }
    for (const LibraryInterface& member : facts.interfaces) MirrorKey(scope, InterfacePath(member));
    // One file serves both widths. The system registers it for the width of this process, but 32-bit clients look only for a
    // registration for 32 bits.
    for (const REGSAM view : RegistryViews()) WriteDefault(scope, view, facts.versionPath + L"\\0\\win32", path);
    RemoveKey(scope, facts.versionPath + L"\\0\\win64");

    for (const REGSAM view : RegistryViews()) {
        bool complete = KeyExists(scope, view, facts.versionPath);
        for (const LibraryInterface& member : facts.interfaces) {
            complete =
                complete && DefaultValue(scope, view, InterfacePath(member) + L"\\TypeLib") == GuidText(facts.libid);
        }
        if (!complete) throw com::Failure(SELFREG_E_TYPELIB);
    }
}

void UnregisterOwnLibrary(Scope scope)
{
    ComPtr<ITypeLib> library;
    com::Check(com::LoadModuleTypeLibrary(kOwnLibrary, &library));
    const LibraryFacts facts = ReadLibraryFacts(*library.Get());
    if (IsRegistered(kOtherEdition, scope)) {
        LeaveToOther(scope, facts);
        return;
    }
    if (KeyExists(scope, OwnView(), facts.versionPath)) {
        const ClassesRootOverride root(scope);
        com::Check(scope == Scope::User
                       ? UnRegisterTypeLibForUser(facts.libid, facts.major, facts.minor, facts.lcid, facts.kind)
                       : UnRegisterTypeLib(facts.libid, facts.major, facts.minor, facts.lcid, facts.kind));
    }
    // The system has cleared only the view of this process.
    for (const LibraryInterface& member : facts.interfaces) RemoveKey(scope, InterfacePath(member));
    RemoveKey(scope, facts.versionPath);
    RemoveEmptyKey(scope, L"TypeLib\\" + GuidText(facts.libid));
}

void RegisterMissingLibrary(Scope scope, int number, const std::wstring& fileName)
{
    ComPtr<ITypeLib> library;
    com::Check(com::LoadModuleTypeLibrary(number, &library));
    const LibraryFacts facts = ReadLibraryFacts(*library.Get());
    for (const REGSAM view : RegistryViews()) {
        if (!LibraryVisible(scope, view, facts.versionPath)) {
            WriteLibrary(scope, view, facts, WriteSharedFile(scope, number, fileName));
        }
        for (const LibraryInterface& member : facts.interfaces) {
            if (!VisibleKey(scope, view, InterfacePath(member))) WriteInterface(scope, view, facts, member);
        }
    }
    for (const REGSAM view : RegistryViews()) {
        bool complete = LibraryVisible(scope, view, facts.versionPath);
        for (const LibraryInterface& member : facts.interfaces) {
            complete = complete && VisibleKey(scope, view, InterfacePath(member));
        }
        if (!complete) throw com::Failure(SELFREG_E_TYPELIB);
    }
}

}  // namespace zelt
