#include "com/type_info.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <cwchar>
#include <iterator>
#include <map>
#include <mutex>
#include <vector>

#include "com/dual_interface.h"
#include "com/failure.h"
#include "com/iid_less.h"
#include "com/registry_text.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace com {
namespace {

using Microsoft::WRL::ComPtr;

// The objects of a DLL may live on several threads, so the cache is locked; a hit usually costs one uncontended lock.
struct Cache {
    std::mutex mutex;
    std::vector<ComPtr<ITypeLib>> libraries;
    std::vector<IID> interfaces;  // the dual ones, in order
    std::map<IID, ComPtr<ITypeInfo>, IidLess> infos;
};

Cache& TheCache()
{
    // Never destroyed: the pointers must not be released after COM is gone. ReleaseTypeInfo empties it in time.
    static Cache& cache = *new Cache;
    return cache;
}

void AddInterfaces(ITypeLib* library, std::vector<IID>& interfaces)
{
    for (UINT number = 0; number < library->GetTypeInfoCount(); ++number) {
        TYPEKIND kind;
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        if (FAILED(library->GetTypeInfoType(number, &kind)) || kind != TKIND_DISPATCH) continue;
        Check(library->GetTypeInfo(number, &info));
        Check(info->GetTypeAttr(&attributes));
        const bool isDual = attributes->wTypeFlags & TYPEFLAG_FDUAL;
        const IID iid = attributes->guid;
        info->ReleaseTypeAttr(attributes);
        if (isDual) interfaces.push_back(iid);
    }
}

// Reads this module's libraries once.
void LoadLibraries(Cache& cache)
{
    if (!cache.libraries.empty()) return;
    std::vector<ComPtr<ITypeLib>> libraries;
    std::vector<IID> interfaces;
    for (int number = 1; number <= CountTypeLibraries(); ++number) {
        ComPtr<ITypeLib> library;
        Check(LoadModuleTypeLibrary(number, &library));
        AddInterfaces(library.Get(), interfaces);
        libraries.push_back(library);
    }
    cache.libraries.swap(libraries);
    cache.interfaces.swap(interfaces);
}

}  // namespace

HMODULE ThisModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }

std::wstring ModulePath(HMODULE module)
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) throw Failure(HRESULT_FROM_WIN32(GetLastError()));
        if (length < path.size()) return path.substr(0, length);
        path.resize(path.size() * 2);
    }
}

std::wstring BesideThisModule(const std::wstring& name)
{
    const std::wstring own = ModulePath(ThisModule());
    return own.substr(0, own.find_last_of(L'\\') + 1) + name;
}

int CountTypeLibraries()
{
    int number = 0;
    while (FindResourceW(ThisModule(), MAKEINTRESOURCEW(number + 1), L"TYPELIB")) ++number;
    return number;
}

HRESULT LoadModuleTypeLibrary(int number, ITypeLib** library)
{
    return NoThrow([&] {
        const std::wstring path = ModulePath(ThisModule()) + L'\\' + std::to_wstring(number);
        return LoadTypeLibEx(path.c_str(), REGKIND_NONE, library);
    });
}

HRESULT TypeInfoOf(REFIID iid, ITypeInfo** info)
{
    *info = nullptr;
    return NoThrow([&] {
        Cache& cache = TheCache();
        const std::lock_guard lock(cache.mutex);
        if (const auto known = cache.infos.find(iid); known != cache.infos.end()) {
            *info = known->second.Get();
            return S_OK;
        }
        LoadLibraries(cache);
        for (const auto& library : cache.libraries) {
            ComPtr<ITypeInfo> found;
            if (FAILED(library->GetTypeInfoOfGuid(iid, &found))) continue;
            *info = found.Get();
            cache.infos.emplace(iid, found);
            return S_OK;
        }
        return TYPE_E_ELEMENTNOTFOUND;
    });
}

const std::vector<IID>& ModuleInterfaces()
{
    Cache& cache = TheCache();
    const std::lock_guard lock(cache.mutex);
    LoadLibraries(cache);
    return cache.interfaces;
}

HRESULT RegisteredTypeInfo(REFIID iid, ITypeInfo** info)
{
    *info = nullptr;
    return NoThrow([&] {
        wchar_t braced[40];
        StringFromGUID2(iid, braced, static_cast<int>(std::size(braced)));
        const std::wstring key = std::wstring(L"Interface\\") + braced + L"\\TypeLib";
        GUID library;
        Check(CLSIDFromString(RegistryText(key, nullptr).value_or(L"").c_str(), &library));
        // "1.a": both numbers are hexadecimal.
        const std::wstring version = RegistryText(key, L"Version").value_or(L"");
        wchar_t* end = nullptr;
        const auto major = static_cast<WORD>(std::wcstoul(version.c_str(), &end, 16));
        const auto minor = static_cast<WORD>(*end == L'.' ? std::wcstoul(end + 1, nullptr, 16) : 0);
        ComPtr<ITypeLib> loaded;
        Check(LoadRegTypeLib(library, major, minor, LOCALE_NEUTRAL, &loaded));
        return loaded->GetTypeInfoOfGuid(iid, info);
    });
}

void ReleaseTypeInfo()
{
    ReleaseDualInterfaces();
    Cache& cache = TheCache();
    const std::lock_guard lock(cache.mutex);
    cache.infos.clear();
    cache.libraries.clear();
    cache.interfaces.clear();
}

}  // namespace com
