#include "tests/verification/computer_state.h"

#include <windows.h>
#include <tlhelp32.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

#include "system/edition.h"
#include "system/guid_text.h"
#include "system/known_folder.h"
#include "system/narrow.h"
#include "system/owners.h"
#include "tests/system/harness/dead_servers.h"

namespace zelt::verification {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kUninstall[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
// The keys below Software\Classes with one key per identifier; 64-bit Windows shows some of them in two views.
constexpr const wchar_t* kOfCom[] = {L"CLSID", L"Interface", L"TypeLib", L"AppID"};
// ZELT's own library, the standard's two, and that of the tests' vendor.
constexpr const wchar_t* kLibraries[] = {
    L"{ba7b6efd-b2df-4b95-adaa-e96a75c86274}", L"{4a5e2e81-c093-11d4-9f1b-0010a4d198c2}",
    L"{2420cb0d-25d7-4862-9042-7d4924695d68}", L"{26b9b0da-28b8-494d-a263-ce1a1c4bd6db}"};
// The names of other entries that tests add begin with one of these, in small letters.
constexpr const wchar_t* kOwnNames[] = {L"zelt", L"pravik", L".zlg", L"brix",
                                        // Classes that tests register without a program, and the two applications.
                                        L"{7e57", L"{d0c70125", L"{7b1c9e60", L"{d76cdf09-2520-4b73-9730-98028328426e}",
                                        L"{17cc0ca2-b86e-46c5-b5e9-b31dff844699}"};
// In these keys, only entries with one of our names are read.
constexpr const wchar_t* kOnlyOwn[] = {L"Software", L"Software\\Classes", kUninstall};

std::wstring Lower(std::wstring text)
{
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

bool IsOwnName(const std::wstring& name)
{
    const std::wstring lower = Lower(name);
    return std::any_of(std::begin(kOwnNames), std::end(kOwnNames),
                       [&](const wchar_t* own) { return lower.starts_with(own); });
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
    return std::any_of(
               tree.values.begin(), tree.values.end(),
               [&](const auto& value) { return Lower(TextOf(value.second)).find(lower) != std::wstring::npos; }) ||
           std::any_of(tree.subkeys.begin(), tree.subkeys.end(),
                       [&](const auto& subkey) { return Mentions(subkey.second, lower); });
}

void Count(Differences& differences, bool restored, const std::string& otherwise)
{
    if (restored)
        ++differences.putBack;
    else
        differences.notPutBack.push_back(otherwise);
}

std::optional<std::string> BytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) return {};
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// The folders in which tests write. Other programs rely on the files in shared folders, so the bytes of these are kept.
struct Folder {
    KNOWNFOLDERID above;
    const wchar_t* name;
    bool isShared;
};
const Folder kFolders[] = {
    {FOLDERID_Desktop, L"ZELT logs", false},     {FOLDERID_LocalAppData, L"ZELT", false},
    {FOLDERID_Programs, L"ZELT", false},         {FOLDERID_CommonPrograms, L"ZELT", false},
    {FOLDERID_LocalAppData, L"CAPE-OPEN", true}, {FOLDERID_ProgramFilesCommonX86, L"CAPE-OPEN", true},
};

std::map<fs::path, std::optional<std::string>> FilesNow()
{
    std::map<fs::path, std::optional<std::string>> now;
    for (const Folder& folder : kFolders) {
        std::wstring above;
        if (FAILED(KnownFolder(folder.above, KF_FLAG_DEFAULT, above)) || above.empty()) continue;
        const fs::path path = fs::path(above) / folder.name;
        std::error_code error;
        if (fs::is_directory(path, error)) now[path];
        for (fs::recursive_directory_iterator file(path, error), end; !error && file != end; file.increment(error)) {
            now[file->path()] = folder.isShared && file->is_regular_file(error) ? BytesOf(file->path()) : std::nullopt;
        }
    }
    return now;
}

// The processes, except this one, whose programs are below the folder. The folder's path is in small letters.
std::vector<UniqueHandle> ProgramsBelow(const std::wstring& folder)
{
    std::vector<UniqueHandle> programs;
    const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Process32FirstW(snapshot.get(), &entry); found; found = Process32NextW(snapshot.get(), &entry)) {
        if (entry.th32ProcessID == GetCurrentProcessId()) continue;
        UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE | SYNCHRONIZE, FALSE,
                                         entry.th32ProcessID));
        wchar_t path[32'768];
        DWORD size = std::size(path);
        if (process && QueryFullProcessImageNameW(process.get(), 0, path, &size) && Lower(path).starts_with(folder))
            programs.push_back(std::move(process));
    }
    return programs;
}

}  // namespace

std::vector<std::wstring> InstalledServers(const fs::path& root)
{
    std::set<std::wstring> found;
    for (const Edition* edition : {&kThisEdition, &kOtherEdition}) {
        const std::wstring path =
            L"CLSID\\" + GuidText((*edition)[OwnClass::ThermoSystem].classId) + L"\\LocalServer32";
        for (const Scope scope : {Scope::Machine, Scope::User}) {
            for (const REGSAM view : RegistryViews()) {
                std::wstring server = DefaultValue(scope, view, path);
                std::erase(server, L'"');
                std::error_code error;
                if (!fs::exists(server, error) || Lower(server).starts_with(Lower(root.wstring()))) continue;
                found.insert(server);
            }
        }
    }
    return {found.begin(), found.end()};
}

ComputerState::ComputerState(const fs::path& folder, bool forAll) : root(Lower(folder.wstring()))
{
    for (const Scope scope : {Scope::User, Scope::Machine}) {
        if (scope == Scope::Machine && !forAll) continue;
        const std::string of = scope == Scope::User ? " of this user" : " of all users";
        for (const REGSAM view : RegistryViews()) {
            for (const wchar_t* name : kOfCom)
                Add(ClassesHive(scope, view), ClassesPath(name), Narrow(name, CP_UTF8) + of);
            Add(ClassesHive(scope, view), kUninstall, "installed program" + of);
        }
        Add(ClassesHive(scope, OwnView()), L"Software\\Classes", "class name" + of);
    }
    Add({}, L"Software", "settings");
    files = FilesNow();
}

void ComputerState::Add(const RegistryRoot& key, const std::wstring& path, const std::string& name)
{
    Place place = {key, path, name, {}};
    place.entries = EntriesOf(place);
    std::erase_if(place.entries, [this](const auto& entry) { return Mentions(entry.second, root); });
    places.push_back(std::move(place));
}

std::map<std::wstring, KeyTree> ComputerState::EntriesOf(const Place& place) const
{
    std::map<std::wstring, KeyTree> entries;
    RegistryKey key;
    if (key.Open(place.root, place.path) != ERROR_SUCCESS) return entries;
    const bool onlyOwn = std::find(std::begin(kOnlyOwn), std::end(kOnlyOwn), place.path) != std::end(kOnlyOwn);
    for (const std::wstring& name : key.SubkeyNames()) {
        if (onlyOwn && !IsOwnName(name)) continue;
        if (auto tree = ReadKeyTree({key.Get(), place.root.view}, name)) entries.emplace(name, std::move(*tree));
    }
    return entries;
}

Differences ComputerState::PutBack() const
{
    Differences differences;
    EndPrograms();
    for (const Place& place : places) PutBackPlace(place, differences);
    PutBackFiles(differences);
    return differences;
}

void ComputerState::EndPrograms() const
{
    // A server ends some seconds after its last client.
    constexpr DWORD kPatience = 20'000, kEnd = 10'000;
    for (const UniqueHandle& process : ProgramsBelow(root)) {
        if (WaitForSingleObject(process.get(), kPatience) == WAIT_OBJECT_0) continue;
        TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), kEnd);
    }
    // Tests may also have killed servers themselves.
    test::DeadServersAreForgotten();
}

void ComputerState::PutBackPlace(const Place& before, Differences& differences) const
{
    const auto now = EntriesOf(before);
    const auto line = [&](const char* what, const std::wstring& name) {
        return before.name + ' ' + what + ": " + Narrow(name, CP_UTF8);
    };
    for (const auto& [name, entry] : now) {
        const auto old = before.entries.find(name);
        const bool isNew = old == before.entries.end();
        if (!isNew && old->second == entry) continue;
        const char* what = isNew ? "is new" : "has changed";
        if (!BelongsToTests(name, entry)) {
            differences.others.push_back(line(what, name));
            continue;
        }
        const std::wstring path = before.path + L'\\' + name;
        const bool removed = DeleteKeyTree(before.root, path) == ERROR_SUCCESS;
        Count(differences, isNew ? removed : WriteKeyTree(before.root, path, old->second) == ERROR_SUCCESS,
              line(what, name));
    }
    for (const auto& [name, entry] : before.entries) {
        if (now.contains(name)) continue;
        if (BelongsToTests(name, entry))
            Count(differences, WriteKeyTree(before.root, before.path + L'\\' + name, entry) == ERROR_SUCCESS,
                  line("is gone", name));
        else
            differences.others.push_back(line("is gone", name));
    }
}

void ComputerState::PutBackFiles(Differences& differences) const
{
    const Files now = FilesNow();
    // From the last to the first, so that a folder comes after what is in it.
    for (auto file = now.rbegin(); file != now.rend(); ++file) {
        if (files.contains(file->first)) continue;
        std::error_code error;
        Count(differences, fs::remove(file->first, error),
              "file stays: " + Narrow(file->first.filename().wstring(), CP_UTF8));
    }
    for (const auto& [path, bytes] : files) {
        const auto current = now.find(path);
        if (!bytes || (current != now.end() && current->second == bytes)) continue;
        std::ofstream file(path, std::ios::binary);
        file << *bytes;
        file.close();
        Count(differences, static_cast<bool>(file), "file has changed: " + Narrow(path.filename().wstring(), CP_UTF8));
    }
}

// True for an entry that has one of our names, or that names a file in the folder of the tests or one of the type libraries.
bool ComputerState::BelongsToTests(const std::wstring& name, const KeyTree& entry) const
{
    return IsOwnName(name) || Mentions(entry, root) ||
           std::any_of(std::begin(kLibraries), std::end(kLibraries),
                       [&](const wchar_t* id) { return Lower(name) == id || Mentions(entry, id); });
}

}  // namespace zelt::verification
