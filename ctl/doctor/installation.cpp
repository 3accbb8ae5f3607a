#include "ctl/doctor/installation.h"

#include <windows.h>

#include "com/type_info.h"
#include "registration/registration.h"
#include "ctl/exports/session.h"
#include "system/version.h"

namespace zelt::ctl {
namespace {

std::wstring BesideThisProgram(const Edition& edition)
{
    const std::wstring own = com::ModulePath(com::ThisModule());
    return own.substr(0, own.find_last_of(L'\\') + 1) + edition.program;
}

}  // namespace

Installation FindInstallation(const Edition& edition)
{
    Installation found;
    found.edition = &edition;
    bool forUser = false;
    for (const EditionClass& own : edition.classes) {
        const std::wstring path = ClassPath(own.classId);
        for (const REGSAM view : RegistryViews()) {
            found.registered = found.registered || LookUpEffective(view, path, L"").keyExists;
            forUser = forUser || KeyExists(Scope::User, view, path);
            const FoundEntry entry = LookUpEffective(view, path + L"\\LocalServer32", L"");
            const std::wstring named = ProgramOf(entry.text.value_or(std::wstring()));
            if (!named.empty() && (found.server.empty() || !FileIsThere(found.server))) found.server = named;
        }
    }
    // An edition that is not registered belongs to whomever the other one does.
    const Edition& other = edition.width == 32 ? Editions()[1] : Editions()[0];
    if (!found.registered) {
        forUser = PerUserRegistrationPreferred({}) ||
                  (IsRegistered(other, Scope::User) && !IsRegistered(other, Scope::Machine));
    }
    found.scope = forUser ? Scope::User : Scope::Machine;
    if (FileIsThere(found.server)) {
        found.registrable = found.server;
    } else if (FileIsThere(BesideThisProgram(edition))) {
        found.registrable = BesideThisProgram(edition);
    }
    found.version = found.registrable.empty() ? OwnVersion() : FileVersionText(found.registrable);
    return found;
}

std::string NameOf(const Installation& installation) { return Utf8(installation.edition->name); }

std::string RegisterAgain(const Installation& installation)
{
    return "let zeltctl doctor --fix register " + NameOf(installation) + " again";
}

std::string InstallAgain(const Installation& installation) { return "install " + NameOf(installation) + " again"; }

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
