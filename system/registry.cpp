#include "system/registry.h"

#include <algorithm>
#include <utility>

namespace zelt {
namespace {

// Room for a value that another process lengthens between the query for its size and the read.
constexpr DWORD kGrowth = 128;
// Enough for most values on the first try.
constexpr std::size_t kUsualSize = 1024;
constexpr std::size_t kLongestValueName = 16'383;

const RegistryFunctions* functions = &kSystemRegistry;

// Asks for the items of a key until none remain. Skips items that cannot be read, but stops at such an item once the number of
// items is reached.
template <class Read>
void ForEachItem(DWORD count, Read&& read)
{
    for (DWORD index = 0;; ++index) {
        const LSTATUS result = read(index);
        if (result == ERROR_NO_MORE_ITEMS || (result != ERROR_SUCCESS && index >= count)) return;
    }
}

DWORD CountKeys(HKEY key)
{
    DWORD count = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr);
    return count;
}

DWORD CountValues(HKEY key)
{
    DWORD count = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                     nullptr);
    return count;
}

}  // namespace

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept
{
    if (this != &other) {
        Close();
        key = std::exchange(other.key, nullptr);
    }
    return *this;
}

LSTATUS RegistryKey::Open(const RegistryRoot& root, const std::wstring& path, REGSAM access)
{
    Close();
    const LSTATUS opened = RegOpenKeyExW(root.key, path.c_str(), 0, access | root.view, &key);
    if (opened != ERROR_SUCCESS) key = nullptr;
    return opened;
}

bool KeyExists(const RegistryRoot& root, const std::wstring& path)
{
    return RegistryKey().Open(root, path) == ERROR_SUCCESS;
}

LSTATUS RegistryKey::Create(const RegistryRoot& root, const std::wstring& path, REGSAM access)
{
    Close();
    const LSTATUS created = RegCreateKeyExW(root.key, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                            access | root.view, nullptr, &key, nullptr);
    if (created != ERROR_SUCCESS) key = nullptr;
    return created;
}

void RegistryKey::Close()
{
    if (key) RegCloseKey(std::exchange(key, nullptr));
}

std::optional<DWORD> RegistryKey::ReadDword(const wchar_t* name) const
{
    DWORD value = 0, type = 0, size = sizeof value;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS) return {};
    if (type != REG_DWORD || size != sizeof value) return {};
    return value;
}

std::optional<RegistryValue> RegistryKey::ReadValue(const wchar_t* name) const
{
    RegistryValue value;
    DWORD size = 0;
    if (RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) return {};
    size += kGrowth;
    value.data.resize(size);
    if (RegQueryValueExW(key, name, nullptr, &value.type, value.data.data(), &size) != ERROR_SUCCESS) return {};
    value.data.resize(size);
    return value;
}

std::optional<std::vector<BYTE>> RegistryKey::ReadBytes(const wchar_t* name, DWORD type) const
{
    auto value = ReadValue(name);
    if (!value || value->type != type) return {};
    return std::move(value->data);
}

std::optional<std::wstring> RegistryKey::ReadString(const wchar_t* name) const
{
    const auto data = ReadBytes(name, REG_SZ);
    if (!data) return {};
    std::wstring text(data->size() / sizeof(wchar_t), L'\0');
    std::copy_n(data->data(), text.size() * sizeof(wchar_t), reinterpret_cast<BYTE*>(text.data()));
    return text.substr(0, text.find(L'\0'));
}

std::optional<std::string> RegistryKey::ReadNarrow(const char* name, DWORD type) const
{
    DWORD found = 0, size = 0;
    if (RegQueryValueExA(key, name, nullptr, &found, nullptr, &size) != ERROR_SUCCESS || found != type) return {};
    size += kGrowth;
    std::string data(size, '\0');
    if (RegQueryValueExA(key, name, nullptr, &found, reinterpret_cast<BYTE*>(data.data()), &size) != ERROR_SUCCESS ||
        found != type) {
        return {};
    }
    data.resize(size);
    return data;
}

LSTATUS RegistryKey::WriteDword(const wchar_t* name, DWORD value)
{
    return WriteBytes(name, REG_DWORD, &value, sizeof value);
}

LSTATUS RegistryKey::WriteString(const wchar_t* name, const std::wstring& value)
{
    return WriteBytes(name, REG_SZ, value.c_str(), (value.size() + 1) * sizeof(wchar_t));
}

LSTATUS RegistryKey::WriteBytes(const wchar_t* name, DWORD type, const void* data, std::size_t size)
{
    return functions->setValue(key, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
}

LSTATUS RegistryKey::WriteNarrow(const char* name, DWORD type, std::string_view value)
{
    return functions->setNarrowValue(key, name, 0, type, reinterpret_cast<const BYTE*>(value.data()),
                                     static_cast<DWORD>(value.size()));
}

LSTATUS RegistryKey::DeleteValue(const wchar_t* name) { return RegDeleteValueW(key, name); }

std::vector<std::wstring> RegistryKey::SubkeyNames() const
{
    std::vector<std::wstring> names;
    wchar_t name[256];  // The longest key name has 255 characters.
    ForEachItem(CountKeys(key), [&](DWORD index) {
        DWORD length = static_cast<DWORD>(std::size(name));
        const LSTATUS result = functions->enumerateKeys(key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_SUCCESS) names.emplace_back(name, length);
        return result;
    });
    return names;
}

std::vector<std::wstring> RegistryKey::ValueNames() const
{
    std::vector<std::wstring> names;
    std::vector<wchar_t> name(kLongestValueName + 1);
    ForEachItem(CountValues(key), [&](DWORD index) {
        DWORD length = static_cast<DWORD>(name.size());
        const LSTATUS result =
            functions->enumerateValues(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_SUCCESS) names.emplace_back(name.data(), length);
        return result;
    });
    return names;
}

std::map<std::wstring, RegistryValue> RegistryKey::Values() const
{
    std::map<std::wstring, RegistryValue> values;
    std::vector<wchar_t> name(kLongestValueName + 1);
    std::vector<BYTE> data(kUsualSize);
    ForEachItem(CountValues(key), [&](DWORD index) {
        for (;;) {
            DWORD length = static_cast<DWORD>(name.size()), type = REG_NONE, size = static_cast<DWORD>(data.size());
            const LSTATUS result =
                functions->enumerateValues(key, index, name.data(), &length, nullptr, &type, data.data(), &size);
            // More room helps only if the data did not fit.
            if (result == ERROR_MORE_DATA && size > data.size()) {
                data.resize(size + kGrowth);
                continue;
            }
            if (result == ERROR_SUCCESS) {
                values.emplace(std::wstring(name.data(), length),
                               RegistryValue{type, {data.data(), data.data() + size}});
            }
            return result;
        }
    });
    return values;
}

void SetRegistryFunctions(const RegistryFunctions* replacement)
{
    functions = replacement ? replacement : &kSystemRegistry;
}

LSTATUS DeleteKeyTree(const RegistryRoot& root, const std::wstring& path)
{
    RegistryKey key;
    LSTATUS result = key.Open(root, path, KEY_READ | KEY_WRITE | DELETE);
    if (result == ERROR_FILE_NOT_FOUND) return ERROR_SUCCESS;
    if (result != ERROR_SUCCESS) return result;
    // RegDeleteTree takes no view, so it empties the key through its handle, which was opened in the right view.
    result = RegDeleteTreeW(key.Get(), nullptr);
    if (result != ERROR_SUCCESS) return result;
    key.Close();
    return RegDeleteKeyExW(root.key, path.c_str(), root.view, 0);
}

}  // namespace zelt
