#include "system/library_path.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <string_view>

#include "system/file_presence.h"

namespace zelt {
namespace {

constexpr int kOwnWidth = 8 * sizeof(void*);

// The environment variables for folders that differ by width, and for each of them the two variables that hold its 32-bit and
// its 64-bit value in every process.
struct Variable {
    std::wstring_view name;
    const wchar_t *for32, *for64;
};
constexpr Variable kVariables[] = {
    {L"%ProgramFiles%", L"%ProgramFiles(x86)%", L"%ProgramW6432%"},
    {L"%CommonProgramFiles%", L"%CommonProgramFiles(x86)%", L"%CommonProgramW6432%"},
};

bool StartsWith(const std::wstring& text, std::size_t at, std::wstring_view part)
{
    return text.size() - at >= part.size() && _wcsnicmp(text.c_str() + at, part.data(), part.size()) == 0;
}

std::wstring Expanded(const std::wstring& text)
{
    std::wstring expanded(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
    expanded.resize(ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size())));
    return expanded.substr(0, expanded.find(L'\0'));
}

std::wstring WindowsFolder()
{
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemWindowsDirectoryW(folder, MAX_PATH);
    return length && length < MAX_PATH ? std::wstring(folder, length) + L'\\' : std::wstring();
}

// The system folder of the other width, as this process reaches it.
const wchar_t* OtherSystemFolder() { return kOwnWidth == 32 ? L"Sysnative\\" : L"SysWOW64\\"; }

}  // namespace

std::wstring ExpandedFor(int width, const std::wstring& text)
{
    std::wstring named = text;
    for (const Variable& variable : kVariables) {
        for (std::size_t at = 0; width != kOwnWidth && at < named.size(); ++at) {
            if (!StartsWith(named, at, variable.name)) continue;
            named.replace(at, variable.name.size(), width == 32 ? variable.for32 : variable.for64);
        }
    }
    return Expanded(named);
}

std::wstring LibraryPathFor(int width, const std::wstring& name)
{
    const bool isBare = name.find_first_of(L"\\/") == std::wstring::npos;
    if (width != kOwnWidth) {
        const std::wstring windows = WindowsFolder(), system = windows + L"System32\\";
        const bool isInSystem = StartsWith(name, 0, system);
        const std::wstring file = isInSystem ? name.substr(system.size()) : name;
        const std::wstring translated = windows + OtherSystemFolder() + file;
        if ((isBare || isInSystem) && IsFile(translated)) return translated;
    }
    if (!isBare) return name;
    wchar_t found[1024];
    const DWORD length =
        SearchPathW(nullptr, name.c_str(), L".dll", static_cast<DWORD>(std::size(found)), found, nullptr);
    return length == 0 || length >= std::size(found) ? name : std::wstring(found, length);
}

}  // namespace zelt
