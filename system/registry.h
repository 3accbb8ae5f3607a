// Registry keys: one owner per open key, typed reads and writes. The root is passed in as an object, so that a test can work on a
// scratch key and registration can name the view (32 or 64 bit) that it means. No read relies on the terminators of a stored
// string: ReadString stops at the first terminator or at the end of the data, and the others return the bytes as stored.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelt {

// Where paths start: a key that stays open elsewhere, and the view for every open below it (KEY_WOW64_32KEY,
// KEY_WOW64_64KEY, or 0 for the view of the process).
struct RegistryRoot {
    HKEY key = HKEY_CURRENT_USER;
    REGSAM view = 0;
};

struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    bool operator==(const RegistryValue&) const = default;
};

class RegistryKey {
public:
    RegistryKey() = default;
    ~RegistryKey() { Close(); }
    RegistryKey(RegistryKey&& other) noexcept : key(other.key) { other.key = nullptr; }
    RegistryKey& operator=(RegistryKey&& other) noexcept;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    // Both first close the key that is open; after a failure none is open. They return a Windows error code.
    [[nodiscard]] LSTATUS Open(const RegistryRoot& root, const std::wstring& path, REGSAM access = KEY_READ);
    [[nodiscard]] LSTATUS Create(const RegistryRoot& root, const std::wstring& path, REGSAM access = KEY_ALL_ACCESS);
    void Close();

    HKEY Get() const { return key; }
    explicit operator bool() const { return key != nullptr; }

    // Nothing when the value is missing or has another type or size. The name of a key's default value is empty.
    std::optional<DWORD> ReadDword(const wchar_t* name) const;
    std::optional<std::wstring> ReadString(const wchar_t* name) const;
    std::optional<std::vector<BYTE>> ReadBytes(const wchar_t* name, DWORD type) const;
    // The value of any type; nothing when it is missing.
    std::optional<RegistryValue> ReadValue(const wchar_t* name) const;
    // The bytes of a text value as the narrow-character interface gives them, terminators included where stored.
    std::optional<std::string> ReadNarrow(const char* name, DWORD type) const;

    [[nodiscard]] LSTATUS WriteDword(const wchar_t* name, DWORD value);
    [[nodiscard]] LSTATUS WriteString(const wchar_t* name, const std::wstring& value);
    [[nodiscard]] LSTATUS WriteBytes(const wchar_t* name, DWORD type, const void* data, std::size_t size);
    // `value` includes the terminators that its type requires.
    [[nodiscard]] LSTATUS WriteNarrow(const char* name, DWORD type, std::string_view value);

    [[nodiscard]] LSTATUS DeleteValue(const wchar_t* name);

    // These leave out items that cannot be read, but not those after them.
    std::vector<std::wstring> SubkeyNames() const;
    std::vector<std::wstring> ValueNames() const;
    // The values by name.
    std::map<std::wstring, RegistryValue> Values() const;

private:
    HKEY key = nullptr;
};

// Whether there is a key that can be read.
bool KeyExists(const RegistryRoot& root, const std::wstring& path);

// The functions that enumerate and write. A test replaces some of them to simulate failures; nothing else does.
struct RegistryFunctions {
    decltype(&RegEnumKeyExW) enumerateKeys;
    decltype(&RegEnumValueW) enumerateValues;
    decltype(&RegSetValueExW) setValue;
    decltype(&RegSetValueExA) setNarrowValue;
};

inline const RegistryFunctions kSystemRegistry = {RegEnumKeyExW, RegEnumValueW, RegSetValueExW, RegSetValueExA};

// Replaces the functions; null restores the system's.
void SetRegistryFunctions(const RegistryFunctions* functions);

// Removes a key with everything below it, in the root's view. A missing key is no error.
[[nodiscard]] LSTATUS DeleteKeyTree(const RegistryRoot& root, const std::wstring& path);

}  // namespace zelt
