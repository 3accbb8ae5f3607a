#include "ctl/doctor/installation.h"

#include <windows.h>

#include "com/type_info.h"
#include "registration/registration.h"
#include "ctl/exports/session.h"
#include "system/file_presence.h"
#include "system/version.h"

namespace zelt::ctl {
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
            if (!named.empty() && (found.server.empty() || !IsFile(found.server))) found.server = named;
        }
    }
    // An edition that is not registered counts as the current user's if ZELT was installed for the current user alone, or if
    // the other edition is registered for the current user alone.
    if (!found.registered) {
        const Edition& other = OtherThan(edition);
        forUser = PerUserRegistrationPreferred({}) ||
                  (IsRegistered(other, Scope::User) && !IsRegistered(other, Scope::Machine));
    }
    found.scope = forUser ? Scope::User : Scope::Machine;
    for (const std::wstring& program : {found.server, com::BesideThisModule(edition.program)}) {
        if (found.registrable.empty() && IsFile(program)) found.registrable = program;
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

std::string OwnVersion() { return FileVersionText(com::ModulePath(com::ThisModule())); }

}  // namespace zelt::ctl
