#include "tests/system/harness/scratch_registry.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "system/edition.h"
#include "system/narrow.h"

namespace zelt::test {
namespace {

// Each key is directly below one that always exists: a common parent that comes and goes could be deleted while another
// process uses it.
constexpr wchar_t kTestsKeys[] = L"Software\\ZELT Tests ";

class OpenKey {
public:
    OpenKey(HKEY root, const std::wstring& path, REGSAM access)
    {
        if (RegOpenKeyExW(root, path.c_str(), 0, access, &key) != ERROR_SUCCESS) key = nullptr;
    }
    ~OpenKey()
    {
        if (key) RegCloseKey(key);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    operator HKEY() const { return key; }

private:
    HKEY key = nullptr;
};

std::string Hexadecimal(const std::vector<BYTE>& bytes)
{
    std::string text;
    for (const BYTE byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += digits;
    }
    return text;
}

void AppendValues(HKEY key, const std::string& path, std::vector<std::string>& lines)
{
    constexpr DWORD kLongestName = 16384;
    std::wstring name(kLongestName, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = kLongestName, type = 0, size = 0;
        const LSTATUS found = RegEnumValueW(key, index, name.data(), &nameLength, nullptr, &type, nullptr, &size);
        if (found != ERROR_SUCCESS) break;
        std::vector<BYTE> bytes(size + 1);
        RegQueryValueExW(key, name.c_str(), nullptr, nullptr, bytes.data(), &size);
        bytes.resize(size);
        lines.push_back(path + " | " + Narrow(std::wstring_view(name.data(), nameLength), CP_UTF8) + " | " +
                        std::to_string(type) + " | " + Hexadecimal(bytes));
    }
}

// Every open names the view, because a relative open may cross into the other view.
void AppendKey(HKEY root, const std::wstring& path, REGSAM view, std::vector<std::string>& lines)
{
    const OpenKey key(root, path, KEY_READ | view);
    if (!key) return;
    const std::string narrowPath = Narrow(path, CP_UTF8);
    lines.push_back(narrowPath);
    AppendValues(key, narrowPath, lines);
    constexpr DWORD kLongestKeyName = 256;
    for (DWORD index = 0;; ++index) {
        wchar_t name[kLongestKeyName];
        DWORD length = kLongestKeyName;
        if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        AppendKey(root, path + L'\\' + name, view, lines);
    }
}

}  // namespace

ScratchKey::ScratchKey()
{
    static int count = 0;
    path = kTestsKeys + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(++count);
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) !=
        ERROR_SUCCESS) {
        throw std::runtime_error("cannot create the scratch key " + Narrow(path));
    }
}

ScratchKey::~ScratchKey()
{
    RegCloseKey(key);
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
}

RegistryKey ScratchKey::Made(const wchar_t* below) const
{
    RegistryKey made;
    if (made.Create(Root(), below) != ERROR_SUCCESS) {
        throw std::runtime_error("cannot create the settings below " + Narrow(path));
    }
    return made;
}

RegistryKey ScratchKey::Settings() const { return Made(L"Software\\ZELT"); }
RegistryKey ScratchKey::Packages() const { return Made(kThisEdition.packagesKey); }

void ScratchKey::MakeInaccessible() { RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str()); }

void ScratchKey::SetValue(const wchar_t* name, DWORD type, const void* bytes, DWORD size)
{
    // If a text has no terminator, the system may read past the bytes, and store a terminator that it finds there.
    std::vector<BYTE> guarded(static_cast<const BYTE*>(bytes), static_cast<const BYTE*>(bytes) + size);
    guarded.insert(guarded.end(), 2 * sizeof(wchar_t), 0xFF);
    if (RegSetValueExW(key, name, 0, type, guarded.data(), size) != ERROR_SUCCESS) {
        throw std::runtime_error("cannot set the value " + Narrow(name));
    }
}

std::string RegistryText(HKEY root, const std::wstring& path, REGSAM view)
{
    std::vector<std::string> lines;
    AppendKey(root, path, view, lines);
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
}

}  // namespace zelt::test
