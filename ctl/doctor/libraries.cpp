// Checks the type libraries, which COM uses to marshal calls between processes.
#include <objbase.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "com/failure.h"
#include "com/type_info.h"
#include "ctl/doctor/checks.h"
#include "ctl/exports/session.h"
#include "res/resource.h"
#include "registration/library_facts.h"
#include "registration/shared_file.h"
#include "registration/type_library_registration.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

using Microsoft::WRL::ComPtr;

constexpr char kEffect[] = "some calls between a simulator and ZELT fail";

// The system's marshallers for the interfaces of type libraries: automation interfaces, and dispatch interfaces.
constexpr const wchar_t* kLibraryMarshallers[] = {L"{00020424-0000-0000-C000-000000000046}",
                                                  L"{00020420-0000-0000-C000-000000000046}"};

struct CheckedLibrary {
    LibraryFacts facts;
    const wchar_t* sharedFile;  // null for the program's own library
};

CheckedLibrary ReadLibrary(int number, const wchar_t* sharedFile)
{
    ComPtr<ITypeLib> library;
    com::Check(com::LoadModuleTypeLibrary(number, &library));
    return {ReadLibraryFacts(*library.Get()), sharedFile};
}

std::wstring DefaultText(REGSAM view, const std::wstring& key)
{
    return LookUpEffective(view, key, L"").text.value_or(std::wstring());
}

// A 64-bit process also accepts a library that is registered for 32 bits; the reverse does not hold.
std::wstring LibraryFile(const LibraryFacts& facts, REGSAM view)
{
    const auto fileFor = [&](const wchar_t* system) {
        return DefaultText(view, facts.versionPath + L"\\0\\" + system);
    };
    const std::wstring file = view == KEY_WOW64_64KEY ? fileFor(L"win64") : std::wstring();
    return file.empty() ? fileFor(L"win32") : file;
}

bool IsLibrary(const std::wstring& path, const GUID& libid)
{
    ComPtr<ITypeLib> library;
    TLIBATTR* attributes = nullptr;
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library)) || FAILED(library->GetLibAttr(&attributes))) {
        return false;
    }
    const bool same = attributes->guid == libid;
    library->ReleaseTLibAttr(attributes);
    return same;
}

// Whether ZELT itself writes the library to this path; --fix writes no other file.
bool IsSharedFile(const CheckedLibrary& library, const std::wstring& path)
{
    if (!library.sharedFile) return false;
    for (const Scope scope : {Scope::Machine, Scope::User}) {
        if (_wcsicmp(SharedFilePath(scope, library.sharedFile).c_str(), path.c_str()) == 0) return true;
    }
    return false;
}

void CheckFile(const Installation& installation, const CheckedLibrary& library, const std::wstring& path,
               Findings& findings)
{
    if (IsLibrary(path, library.facts.libid)) return;
    Finding finding = {"library-file",
                       "The file \"" + Utf8(path) + "\" is not there, or does not hold the type library \"" +
                           Utf8(library.facts.description) + "\" that is registered from it",
                       kEffect, "reinstall the program that installed it"};
    if (!library.sharedFile) {
        finding.remedy = RegisterAgain(installation);
        finding.fix = Fix::Register;
    } else if (IsSharedFile(library, path)) {
        finding.remedy = "let zeltctl doctor --fix write it again";
        finding.fix = Fix::LibraryFile;
    }
    findings.push_back(std::move(finding));
}

enum class InterfaceState { Sound, Missing, WithoutMarshaller, WithoutLibrary };

// Tells whether type libraries are registered. Remembers the answers, because hundreds of interfaces name the same few
// libraries.
class RegisteredLibraries {
public:
    bool Contain(REGSAM view, const std::wstring& path)
    {
        const auto known = answers.find({view, path});
        if (known != answers.end()) return known->second;
        return answers[{view, path}] = LookUpEffective(view, path, L"").keyExists;
    }

private:
    std::map<std::pair<REGSAM, std::wstring>, bool> answers;
};

InterfaceState StateOf(const LibraryInterface& member, REGSAM view, RegisteredLibraries& libraries)
{
    const std::wstring key = L"Interface\\" + GuidText(member.iid);
    const std::wstring marshaller = DefaultText(view, key + L"\\ProxyStubClsid32");
    if (marshaller.empty()) {
        return LookUpEffective(view, key, L"").keyExists ? InterfaceState::WithoutMarshaller : InterfaceState::Missing;
    }
    bool worksFromLibrary = false;
    for (const wchar_t* one : kLibraryMarshallers) worksFromLibrary |= _wcsicmp(one, marshaller.c_str()) == 0;
    // Another vendor's marshaller needs no library.
    if (!worksFromLibrary) return InterfaceState::Sound;
    const std::wstring libid = DefaultText(view, key + L"\\TypeLib");
    const std::wstring version = LookUpEffective(view, key + L"\\TypeLib", L"Version").text.value_or(std::wstring());
    const bool registered =
        !libid.empty() && libraries.Contain(view, L"TypeLib\\" + libid + (version.empty() ? L"" : L"\\" + version));
    return registered ? InterfaceState::Sound : InterfaceState::WithoutLibrary;
}

std::string Names(const std::vector<std::string>& names)
{
    if (names.size() == 1) return "The interface " + names.front() + " is";
    return "The interface " + names.front() + " and " + std::to_string(names.size() - 1) + " more are";
}

// If the library itself is not registered, the caller reports that, so its interfaces are not reported for lacking a library.
void CheckInterfaces(const Installation& installation, const CheckedLibrary& library, REGSAM view,
                     bool libraryRegistered, Findings& findings)
{
    struct Row {
        InterfaceState state;
        const char* rule;
        const char* wrong;
    };
    constexpr Row kRows[] = {
        {InterfaceState::Missing, "interface", " not registered"},
        {InterfaceState::WithoutMarshaller, "interface-marshaller", " registered without a marshaller"},
        {InterfaceState::WithoutLibrary, "interface-library", " registered without a type library that exists"},
    };
    RegisteredLibraries libraries;
    std::map<InterfaceState, std::vector<std::string>> members;
    for (const LibraryInterface& member : library.facts.interfaces) {
        members[StateOf(member, view, libraries)].push_back(Utf8(member.name));
    }
    for (const Row& row : kRows) {
        if (row.state == InterfaceState::WithoutLibrary && !libraryRegistered) continue;
        const std::vector<std::string>& names = members[row.state];
        if (names.empty()) continue;
        // Registration adds interfaces of the standard that are missing, but leaves alone what other programs have registered
        // for them.
        const bool fixable = row.state == InterfaceState::Missing || !library.sharedFile;
        findings.push_back({row.rule, Names(names) + row.wrong + InView(view), kEffect,
                            fixable ? RegisterAgain(installation)
                                    : "reinstall the program that registered the interfaces of the standard",
                            fixable ? Fix::Register : Fix::None});
    }
}

void CheckLibrary(const Installation& installation, const CheckedLibrary& library, Findings& findings)
{
    // Both views usually name the same file, which needs only one check.
    std::set<std::wstring> files;
    for (const REGSAM view : RegistryViews()) {
        const std::wstring file = LibraryFile(library.facts, view);
        const bool isNew = files.insert(file).second;
        if (isNew && file.empty()) {
            findings.push_back(
                {"library",
                 "The type library \"" + Utf8(library.facts.description) + "\" is not registered" + InView(view),
                 kEffect, RegisterAgain(installation), Fix::Register});
        } else if (isNew && (library.sharedFile || file != installation.server)) {
            CheckFile(installation, library, file, findings);
        }
        CheckInterfaces(installation, library, view, !file.empty(), findings);
    }
}

}  // namespace

void CheckLibraries(const Installation& installation, Findings& findings)
{
    // When the program is not registered at all, the finding about that is enough.
    if (!installation.registered) return;
    const std::size_t first = findings.size();
    CheckLibrary(installation, ReadLibrary(kOwnLibrary, nullptr), findings);
    for (const SharedLibrary& library : SharedLibraries()) {
        CheckLibrary(installation, ReadLibrary(library.number, library.fileName), findings);
    }
    if (!installation.registrable.empty()) return;
    for (std::size_t index = first; index < findings.size(); ++index) {
        if (findings[index].fix != Fix::Register) continue;
        findings[index].remedy = InstallAgain(installation);
        findings[index].fix = Fix::None;
    }
}

}  // namespace zelt::ctl
