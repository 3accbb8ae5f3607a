#include "ctl/doctor/installation.h"

#include <windows.h>

#include "com/type_info.h"
#include "registration/registration.h"
#include "packages/served_classes.h"
#include "system/version.h"

namespace zelt::ctl {
namespace {

std::wstring BesideThisProgram()
{
    const std::wstring own = com::ModulePath(com::ThisModule());
    return own.substr(0, own.find_last_of(L'\\') + 1) + L"ZELT.EXE";
}

}  // namespace

Installation FindInstallation()
{
    Installation found;
    bool forUser = false;
    for (const ServedClass& served : ServedClasses()) {
        for (const REGSAM view : RegistryViews()) {
            found.registered = found.registered || LookUpEffective(view, ClassPath(served), L"").keyExists;
            forUser = forUser || KeyExists(Scope::User, view, ClassPath(served));
            const FoundEntry entry = LookUpEffective(view, ClassPath(served) + L"\\LocalServer32", L"");
            const std::wstring named = ProgramOf(entry.text.value_or(std::wstring()));
            if (!named.empty() && (found.server.empty() || !FileIsThere(found.server))) found.server = named;
        }
    }
    forUser = forUser || (!found.registered && PerUserRegistrationPreferred({}));
    found.scope = forUser ? Scope::User : Scope::Machine;
    if (FileIsThere(found.server)) {
        found.registrable = found.server;
    } else if (FileIsThere(BesideThisProgram())) {
        found.registrable = BesideThisProgram();
    }
    found.version = found.registrable.empty() ? OwnVersion() : FileVersionText(found.registrable);
    return found;
}

FoundEntry LookUpEffective(REGSAM view, const std::wstring& key, const std::wstring& value)
{
    FoundEntry entry = LookUpEntry(Scope::User, view, key, value);
    if (entry.text) return entry;
    FoundEntry machines = LookUpEntry(Scope::Machine, view, key, value);
    machines.keyExists = machines.keyExists || entry.keyExists;
    return machines;
}

std::string InView(REGSAM view)
{
    if (view == 0) return {};
    return view == KEY_WOW64_64KEY ? " in the 64-bit view of the registry" : " in the 32-bit view of the registry";
}

bool FileIsThere(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring ProgramOf(const std::wstring& commandLine)
{
    if (!commandLine.starts_with(L'"')) return commandLine;
    return commandLine.substr(1, commandLine.find(L'"', 1) - 1);
}

std::string OwnVersion() { return FileVersionText(com::ModulePath(com::ThisModule())); }

}  // namespace zelt::ctl
