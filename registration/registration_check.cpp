#include "registration/registration_check.h"

#include "system/narrow.h"
#include "registration/library_facts.h"
#include "registration/registrar.h"
#include "system/guid_text.h"

namespace zelt {
namespace {

bool Agrees(const ScriptEntry& expected, const FoundEntry& found)
{
    return expected.value ? found.text == expected.text : found.keyExists;
}

}  // namespace

FoundEntry LookUpEntry(Scope scope, REGSAM view, const std::wstring& key, const std::wstring& value)
{
    RegistryKey opened;
    if (opened.Open(ClassesHive(scope, view), ClassesPath(key)) != ERROR_SUCCESS) return {};
    return {true, opened.ReadString(value.c_str())};
}

std::vector<RegistrationFault> FindRegistrationFaults(const Edition& edition, int script,
                                                      const std::wstring& modulePath, const std::string& version,
                                                      const EntryLookup& lookUp)
{
    const REGSAM own[] = {OwnView()};
    std::vector<RegistrationFault> faults;
    for (const ScriptEntry& entry :
         ReadScript(ScriptText(script), ReplacementsFor(edition, modulePath, Widen(version)))) {
        const bool seenInViews = entry.key.starts_with(L"CLSID\\");
        for (const REGSAM view : seenInViews ? RegistryViews() : std::span<const REGSAM>(own)) {
            FoundEntry found = lookUp(view, entry.key, entry.value.value_or(std::wstring()));
            if (!Agrees(entry, found)) faults.push_back({view, entry, std::move(found)});
        }
    }
    return faults;
}

std::wstring ClassPath(REFCLSID classId) { return L"CLSID\\" + GuidText(classId); }

std::wstring ProgramOf(const std::wstring& commandLine)
{
    if (!commandLine.starts_with(L'"')) return commandLine;
    return commandLine.substr(1, commandLine.find(L'"', 1) - 1);
}

bool IsRegistered(const Edition& edition, Scope scope)
{
    for (const EditionClass& own : edition.classes) {
        for (const REGSAM view : RegistryViews()) {
            if (KeyExists(scope, view, ClassPath(own.classId))) return true;
        }
    }
    return false;
}

}  // namespace zelt
