#include "ctl/path/search_path.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "ctl/command.h"
#include "ctl/exports/session.h"
#include "system/narrow.h"
#include "system/system_text.h"

namespace zelt::ctl {
namespace {

constexpr wchar_t kValue[] = L"Path";

// A semicolon within quotation marks does not separate entries.
std::vector<std::wstring> EntriesOf(const std::wstring& list)
{
    std::vector<std::wstring> entries(1);
    bool isQuoted = false;
    for (const wchar_t c : list) {
        if (c == L'"') isQuoted = !isQuoted;
        if (c == L';' && !isQuoted) {
            entries.emplace_back();
        } else {
            entries.back() += c;
        }
    }
    return entries;
}

std::wstring FolderOf(const std::wstring& entry)
{
    std::wstring folder;
    for (const wchar_t c : entry) {
        if (c != L'"') folder += c;
    }
    while (folder.size() > 3 && folder.back() == L'\\') folder.pop_back();
    return folder;
}

std::wstring EntryFor(const std::wstring& folder)
{
    return folder.find(L';') == std::wstring::npos ? folder : L'"' + folder + L'"';
}

bool IsSame(const std::wstring& one, const std::wstring& other)
{
    return CompareStringOrdinal(one.c_str(), static_cast<int>(one.size()), other.c_str(),
                                static_cast<int>(other.size()), TRUE) == CSTR_EQUAL;
}

std::wstring Expanded(const std::wstring& text)
{
    std::wstring expanded(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
    expanded.resize(ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size())));
    while (!expanded.empty() && expanded.back() == L'\0') expanded.pop_back();
    return expanded;
}

[[noreturn]] void Fail(const char* what, LSTATUS error)
{
    throw InputError(std::string("the search path cannot be ") + what + ": " +
                     Utf8(Widen(SystemText(HRESULT_FROM_WIN32(error)))));
}

std::wstring TextOf(const RegistryValue& value)
{
    std::wstring text(value.data.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.data.data(), text.size() * sizeof(wchar_t));
    while (!text.empty() && text.back() == L'\0') text.pop_back();
    return text;
}

}  // namespace

bool ContainsFolder(const std::wstring& list, const std::wstring& folder)
{
    for (const std::wstring& entry : EntriesOf(list)) {
        if (IsSame(FolderOf(entry), FolderOf(folder)) || IsSame(FolderOf(Expanded(entry)), FolderOf(folder)))
            return true;
    }
    return false;
}

std::wstring WithFolder(const std::wstring& list, const std::wstring& folder)
{
    if (ContainsFolder(list, folder)) return list;
    const bool isSeparated = list.empty() || list.back() == L';';
    return list + (isSeparated ? L"" : L";") + EntryFor(folder);
}

std::wstring WithoutFolder(const std::wstring& list, const std::wstring& folder)
{
    const std::wstring own = EntryFor(folder);
    std::wstring rest;
    bool isFirst = true;
    for (const std::wstring& entry : EntriesOf(list)) {
        if (IsSame(entry, own)) continue;
        if (!isFirst) rest += L';';
        rest += entry;
        isFirst = false;
    }
    return rest;
}

bool ChangeSearchPath(const RegistryRoot& root, const std::wstring& path, const std::wstring& folder, PathChange change)
{
    RegistryKey key;
    if (const LSTATUS error = key.Open(root, path, KEY_QUERY_VALUE | KEY_SET_VALUE)) Fail("changed", error);
    const auto stored = key.ReadValue(kValue);
    const std::vector<std::wstring> names = key.ValueNames();
    const bool isThere =
        std::any_of(names.begin(), names.end(), [](const std::wstring& name) { return IsSame(name, kValue); });
    // A search path that exists but cannot be read is not replaced.
    if (!stored && isThere) Fail("read", ERROR_READ_FAULT);
    const RegistryValue value = stored.value_or(RegistryValue{REG_EXPAND_SZ, {}});
    if (value.type != REG_SZ && value.type != REG_EXPAND_SZ) Fail("read", ERROR_INVALID_DATA);
    const std::wstring before = TextOf(value);
    const std::wstring after = change == PathChange::Add ? WithFolder(before, folder) : WithoutFolder(before, folder);
    if (after == before) return false;
    const LSTATUS error = after.empty()
                              ? key.DeleteValue(kValue)
                              : key.WriteBytes(kValue, value.type, after.c_str(), (after.size() + 1) * sizeof(wchar_t));
    if (error != ERROR_SUCCESS) Fail("changed", error);
    return true;
}

}  // namespace zelt::ctl
