#include "system/class_obstacle.h"

#include <cwchar>
#include <cwctype>
#include <string_view>

#include "system/library_path.h"
#include "system/program_width.h"

namespace zelt {
namespace {

bool IsServedByProcess(const RegistryRoot& root, const std::wstring& path)
{
    if (KeyExists(root, path + L"\\LocalServer32")) return true;
    RegistryKey key, application;
    if (key.Open(root, path) != ERROR_SUCCESS) return false;
    const auto identity = key.ReadString(L"AppID");
    if (!identity || application.Open(root, L"AppID\\" + *identity) != ERROR_SUCCESS) return false;
    return application.ReadValue(L"DllSurrogate") || application.ReadValue(L"LocalService");
}

// Reads a path. Expands the environment variables in it, and removes the quotes around it.
std::wstring TextOf(int width, const RegistryKey& key, const wchar_t* name)
{
    const auto value = key.ReadValue(name);
    if (!value || (value->type != REG_SZ && value->type != REG_EXPAND_SZ)) return {};
    std::wstring text;
    for (std::size_t at = 0; at + 1 < value->data.size(); at += 2) {
        text += static_cast<wchar_t>(value->data[at] | value->data[at + 1] << 8);
    }
    std::wstring path = ExpandedFor(width, text.substr(0, text.find(L'\0')));
    if (path.size() >= 2 && path.front() == L'"' && path.back() == L'"') path = path.substr(1, path.size() - 2);
    return path;
}

// The path of a file that is given by its address (file://...). A text that is no address is itself a path. Empty for other
// addresses.
std::wstring PathOfAddress(const std::wstring& address)
{
    constexpr std::wstring_view kFile = L"file://";
    if (address.find(L"://") == std::wstring::npos) return address;
    if (_wcsnicmp(address.c_str(), kFile.data(), kFile.size()) != 0) return {};
    std::wstring path;
    for (std::size_t at = kFile.size(); at < address.size(); ++at) {
        const bool isEscape =
            address[at] == L'%' && at + 2 < address.size() && iswxdigit(address[at + 1]) && iswxdigit(address[at + 2]);
        if (isEscape) {
            path += static_cast<wchar_t>(std::wcstoul(address.substr(at + 1, 2).c_str(), nullptr, 16));
            at += 2;
        } else {
            path += address[at] == L'/' ? L'\\' : address[at];
        }
    }
    // Three slashes are followed by a drive, two by a server.
    return path.starts_with(L'\\') ? path.substr(1) : L"\\\\" + path;
}

// Where the assembly of a .NET class is; empty when the registry does not say, as for an assembly in the system's cache.
std::wstring AssemblyOf(int width, const RegistryRoot& root, const std::wstring& serverPath, const RegistryKey& server)
{
    std::wstring location = TextOf(width, server, L"CodeBase");
    // Each version of an assembly has its own key.
    for (const std::wstring& version : server.SubkeyNames()) {
        RegistryKey key;
        if (location.empty() && key.Open(root, serverPath + L'\\' + version) == ERROR_SUCCESS) {
            location = TextOf(width, key, L"CodeBase");
        }
    }
    return PathOfAddress(location);
}

// The file with the class's code; empty when the class has no library, or the registry does not say where its file is.
std::wstring LibraryOf(int width, const RegistryRoot& root, const std::wstring& path)
{
    const std::wstring serverPath = path + L"\\InprocServer32";
    RegistryKey server;
    if (server.Open(root, serverPath) != ERROR_SUCCESS) return {};
    const std::wstring library = TextOf(width, server, L"");
    if (library.empty()) return {};
    return IsDotNetLoader(library) ? AssemblyOf(width, root, serverPath, server) : LibraryPathFor(width, library);
}

bool IsForOtherWidth(int width, const std::wstring& library)
{
    const ImageFile file = ReadImageFile(library);
    return file.state == ImageState::Sound && file.bits != width && !file.suitsBoth;
}

}  // namespace

bool IsDotNetLoader(const std::wstring& library)
{
    return _wcsicmp(library.c_str() + (library.find_last_of(L"\\/") + 1), L"mscoree.dll") == 0;
}

std::wstring ObstacleOf(int width, const RegistryRoot* own, const RegistryRoot* other, const std::wstring& path)
{
    if (own && IsServedByProcess(*own, path)) return {};
    const std::wstring library = own ? LibraryOf(width, *own, path) : std::wstring();
    if (own && (library.empty() || !IsForOtherWidth(width, library))) return {};
    if (other && IsServedByProcess(*other, path)) return {};
    const std::wstring programs = (width == 32 ? L"64-bit" : L"32-bit") + std::wstring(L" programs only");
    return (own ? L"its library is for " : L"registered for ") + programs;
}

}  // namespace zelt
