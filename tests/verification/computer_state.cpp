#include "tests/verification/computer_state.h"

#include <windows.h>
#include <tlhelp32.h>

#include <algorithm>

#include "registration/shared_file.h"
#include "system/edition.h"
#include "system/guid_text.h"
#include "system/known_folder.h"
#include "system/narrow.h"
#include "system/owners.h"
#include "tests/system/harness/process.h"

namespace zelt::verification {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kPlaces[] = {L"CLSID", L"Interface", L"TypeLib", L"AppID"};
constexpr const wchar_t* kSettings[] = {L"Software\\ZELT", L"Software\\BRIX"};
// ZELT's own library, and the standard's two.
constexpr const wchar_t* kLibraries[] = {L"{BA7B6EFD-B2DF-4B95-ADAA-E96A75C86274}",
                                         L"{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}",
                                         L"{2420CB0D-25D7-4862-9042-7D4924695D68}"};
// What the tests register directly below Software\Classes begins with one of these; the keys above the places come with them.
constexpr const wchar_t* kOwnNames[] = {L"ZELT.", L"ZELT64.",   L"PRAVIK.", L"PRAVIK64.", L"ZeltSample.", L".zlg",
                                        L"CLSID", L"Interface", L"TypeLib", L"AppID",     L"Wow6432Node"};

std::wstring Lower(std::wstring text)
{
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::wstring TextOf(const RegistryValue& value)
{
    if (value.type != REG_SZ && value.type != REG_EXPAND_SZ) return {};
    std::wstring text(value.data.size() / sizeof(wchar_t), L'\0');
    std::copy_n(value.data.begin(), text.size() * sizeof(wchar_t), reinterpret_cast<BYTE*>(text.data()));
    return text;
}

bool Mentions(const KeyTree& tree, const std::wstring& lower)
{
    for (const auto& [name, value] : tree.values) {
        if (Lower(TextOf(value)).find(lower) != std::wstring::npos) return true;
    }
    return std::any_of(tree.subkeys.begin(), tree.subkeys.end(),
                       [&](const auto& subkey) { return Mentions(subkey.second, lower); });
}

const char* NameOf(Scope scope) { return scope == Scope::Machine ? "all users" : "this user"; }

// All keys below `path`, each with everything below it.
std::map<std::wstring, KeyTree> Entries(Scope scope, REGSAM view, const wchar_t* path)
{
    auto tree = ReadKeyTree(ClassesHive(scope, view), ClassesPath(path));
    return tree ? std::move(tree->subkeys) : std::map<std::wstring, KeyTree>();
}

std::set<std::wstring> NamesBelow(Scope scope)
{
    RegistryKey key;
    if (key.Open(ClassesHive(scope, OwnView()), L"Software\\Classes") != ERROR_SUCCESS) return {};
    std::set<std::wstring> names;
    for (const std::wstring& name : key.SubkeyNames()) names.insert(name);
    return names;
}

fs::path Folder(REFKNOWNFOLDERID id)
{
    std::wstring path;
    if (FAILED(KnownFolder(id, KF_FLAG_DEFAULT, path))) return {};
    return path;
}

void Count(Differences& differences, bool restored, const std::string& otherwise)
{
    if (restored)
        ++differences.putBack;
    else
        differences.others.push_back(otherwise);
}

bool IsOwnName(const std::wstring& name)
{
    return std::any_of(std::begin(kOwnNames), std::end(kOwnNames),
                       [&](const wchar_t* own) { return name.starts_with(own); });
}

}  // namespace

std::vector<std::wstring> InstalledServers(const fs::path& tree)
{
    std::set<std::wstring> found;
    for (const Edition* edition : {&kThisEdition, &kOtherEdition}) {
        const std::wstring path =
            L"CLSID\\" + GuidText((*edition)[OwnClass::ThermoSystem].classId) + L"\\LocalServer32";
        for (const Scope scope : {Scope::Machine, Scope::User}) {
            for (const REGSAM view : RegistryViews()) {
                const std::wstring server = DefaultValue(scope, view, path);
                if (!server.empty() && Lower(server).find(Lower(tree.wstring())) == std::wstring::npos)
                    found.insert(server);
            }
        }
    }
    return {found.begin(), found.end()};
}

ComputerState::ComputerState(const fs::path& folder, bool forAll) : tree(Lower(folder.wstring()))
{
    for (const Scope scope : {Scope::User, Scope::Machine}) {
        if (scope == Scope::Machine && !forAll) continue;
        for (const REGSAM view : RegistryViews()) {
            for (const wchar_t* path : kPlaces) places.push_back({scope, view, path, Entries(scope, view, path)});
        }
        names.push_back({scope, NamesBelow(scope)});
    }
    for (const wchar_t* path : kSettings) settings.push_back({path, ReadKeyTree({}, path)});
    files = FilesNow();
}

Differences ComputerState::PutBack() const
{
    Differences differences;
    EndPrograms(differences);
    for (const Place& place : places) PutBackPlace(place, differences);
    for (const Names& before : names) PutBackNames(before, differences);
    for (const auto& [path, before] : settings) {
        if (ReadKeyTree({}, path) == before) continue;
        DeleteKeyTree({}, path);
        const bool restored = !before || WriteKeyTree({}, path, *before) == ERROR_SUCCESS;
        Count(differences, restored, "settings could not be put back: " + Narrow(path, CP_UTF8));
    }
    for (const fs::path& file : FilesNow()) {
        std::error_code error;
        if (!files.contains(file))
            Count(differences, fs::remove(file, error), "file stays: " + Narrow(file.filename().wstring(), CP_UTF8));
    }
    return differences;
}

void ComputerState::EndPrograms(Differences& differences) const
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Process32FirstW(snapshot, &entry); found; found = Process32NextW(snapshot, &entry)) {
        if (entry.th32ProcessID == GetCurrentProcessId()) continue;
        const HANDLE process =
            OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE, FALSE, entry.th32ProcessID);
        wchar_t path[32'768];
        DWORD size = std::size(path);
        if (process && QueryFullProcessImageNameW(process, 0, path, &size) && Lower(path).starts_with(tree)) {
            TerminateProcess(process, 1);
            differences.others.push_back("program still ran: " + Narrow(entry.szExeFile, CP_UTF8));
        }
        if (process) CloseHandle(process);
    }
    CloseHandle(snapshot);
}

void ComputerState::PutBackPlace(const Place& before, Differences& differences) const
{
    const RegistryRoot hive = ClassesHive(before.scope, before.view);
    const auto now = Entries(before.scope, before.view, before.path);
    const auto line = [&](const char* what, const std::wstring& name) {
        return std::string("registry entry ") + what + ": " + Narrow(before.path, CP_UTF8) + ' ' +
               Narrow(name, CP_UTF8) + " of " + NameOf(before.scope);
    };
    for (const auto& [name, entry] : now) {
        const auto old = before.entries.find(name);
        const bool isNew = old == before.entries.end();
        if (!isNew && old->second == entry) continue;
        const std::wstring path = ClassesPath(std::wstring(before.path) + L'\\' + name);
        bool restored = false;
        if (BelongsToTests(name, entry)) {
            DeleteKeyTree(hive, path);
            restored = isNew || WriteKeyTree(hive, path, old->second) == ERROR_SUCCESS;
        }
        Count(differences, restored, line(isNew ? "is new" : "has changed", name));
    }
    for (const auto& [name, entry] : before.entries) {
        if (now.contains(name)) continue;
        const std::wstring path = ClassesPath(std::wstring(before.path) + L'\\' + name);
        const bool restored = BelongsToTests(name, entry) && WriteKeyTree(hive, path, entry) == ERROR_SUCCESS;
        Count(differences, restored, line("is gone", name));
    }
}

void ComputerState::PutBackNames(const Names& before, Differences& differences) const
{
    for (const std::wstring& name : NamesBelow(before.scope)) {
        if (before.names.contains(name)) continue;
        const bool removed =
            IsOwnName(name) && DeleteKeyTree(ClassesHive(before.scope, OwnView()), ClassesPath(name)) == ERROR_SUCCESS;
        Count(differences, removed, "class name is new: " + Narrow(name, CP_UTF8) + " of " + NameOf(before.scope));
    }
}

// The tests register programs and libraries of their folder, and three type libraries with their interfaces.
bool ComputerState::BelongsToTests(const std::wstring& name, const KeyTree& entry) const
{
    return Mentions(entry, tree) || std::any_of(std::begin(kLibraries), std::end(kLibraries), [&](const wchar_t* id) {
               return Lower(name) == Lower(id) || Mentions(entry, Lower(id));
           });
}

ComputerState::Files ComputerState::FilesNow() const
{
    Files now;
    const fs::path folders[] = {Folder(FOLDERID_Desktop) / L"ZELT logs", Folder(FOLDERID_LocalAppData) / L"ZELT",
                                Folder(FOLDERID_LocalAppData) / L"CAPE-OPEN",
                                Folder(FOLDERID_ProgramFilesCommonX86) / L"CAPE-OPEN"};
    for (const fs::path& folder : folders) {
        std::error_code error;
        for (fs::recursive_directory_iterator file(folder, error), end; !error && file != end; file.increment(error)) {
            if (file->is_regular_file(error)) now.insert(file->path());
        }
    }
    return now;
}

}  // namespace zelt::verification
