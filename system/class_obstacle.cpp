#include "system/class_obstacle.h"

#include <cwchar>
#include <cwctype>
#include <iterator>
#include <string_view>

#include "system/program_width.h"

namespace zelt {
namespace {

// The loader of .NET, which is registered as the library of each of its classes.
constexpr wchar_t kDotNetLoader[] = L"mscoree.dll";

bool Exists(const RegistryRoot& root, const std::wstring& path)
{
    return RegistryKey().Open(root, path) == ERROR_SUCCESS;
}

bool IsServedByProcess(const RegistryRoot& root, const std::wstring& path)
{
    if (Exists(root, path + L"\\LocalServer32")) return true;
    RegistryKey key, application;
    if (key.Open(root, path) != ERROR_SUCCESS) return false;
    const auto identity = key.ReadString(L"AppID");
    if (!identity || application.Open(root, L"AppID\\" + *identity) != ERROR_SUCCESS) return false;
    return application.ReadValue(L"DllSurrogate") || application.ReadValue(L"LocalService");
}

// A path as the registry has it, in quotes or with variables of the environment.
std::wstring Expanded(const std::wstring& text)
{
    wchar_t buffer[1024];
    const DWORD length = ExpandEnvironmentStringsW(text.c_str(), buffer, static_cast<DWORD>(std::size(buffer)));
    std::wstring path = length == 0 || length > std::size(buffer) ? text : buffer;
    if (path.size() >= 2 && path.front() == L'"' && path.back() == L'"') path = path.substr(1, path.size() - 2);
    return path;
}

std::wstring TextOf(const RegistryKey& key, const wchar_t* name)
{
    const auto value = key.ReadValue(name);
    if (!value || (value->type != REG_SZ && value->type != REG_EXPAND_SZ)) return {};
    std::wstring text;
    for (std::size_t at = 0; at + 1 < value->data.size(); at += 2) {
        text += static_cast<wchar_t>(value->data[at] | value->data[at + 1] << 8);
    }
    return Expanded(text.substr(0, text.find(L'\0')));
}

std::wstring FileName(const std::wstring& path) { return path.substr(path.find_last_of(L"\\/") + 1); }

// The path that an address of a file means; a text that is no address is a path, and other addresses mean none.
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
    // Behind three slashes comes a drive, behind two a server.
    return path.starts_with(L'\\') ? path.substr(1) : L"\\\\" + path;
}

// Where the assembly of a .NET class is; empty when it is in the system's cache, or wherever else the registry does not say.
std::wstring AssemblyOf(const RegistryRoot& root, const std::wstring& serverPath, const RegistryKey& server)
{
    std::wstring location = TextOf(server, L"CodeBase");
    // Each version of an assembly has a key of its own.
    for (const std::wstring& version : server.SubkeyNames()) {
        RegistryKey key;
        if (location.empty() && key.Open(root, serverPath + L'\\' + version) == ERROR_SUCCESS) {
            location = TextOf(key, L"CodeBase");
        }
    }
    return PathOfAddress(location);
}

// The file with the class's code; empty when it has none or the registry does not say where.
std::wstring LibraryOf(const RegistryRoot& root, const std::wstring& path)
{
    const std::wstring serverPath = path + L"\\InprocServer32";
    RegistryKey server;
    if (server.Open(root, serverPath) != ERROR_SUCCESS) return {};
    const std::wstring library = TextOf(server, L"");
    if (library.empty()) return {};
    if (_wcsicmp(FileName(library).c_str(), kDotNetLoader) == 0) return AssemblyOf(root, serverPath, server);
    wchar_t found[1024];
    const DWORD length =
        SearchPathW(nullptr, library.c_str(), nullptr, static_cast<DWORD>(std::size(found)), found, nullptr);
    return length == 0 || length >= std::size(found) ? std::wstring() : std::wstring(found, length);
}

bool IsForOtherWidth(int width, const std::wstring& library)
{
    const ImageFile file = ReadImageFile(library);
    return file.state == ImageState::Sound && file.bits != width && !file.suitsBoth;
}

}  // namespace

std::wstring ObstacleOf(int width, const RegistryRoot* own, const RegistryRoot* other, const std::wstring& path)
{
    if (own && IsServedByProcess(*own, path)) return {};
    const std::wstring library = own ? LibraryOf(*own, path) : std::wstring();
    if (own && (library.empty() || !IsForOtherWidth(width, library))) return {};
    if (other && IsServedByProcess(*other, path)) return {};
    const std::wstring programs = (width == 32 ? L"64-bit" : L"32-bit") + std::wstring(L" programs only");
    return (own ? L"its library is for " : L"registered for ") + programs;
}

}  // namespace zelt
