#include "com/type_info.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <map>
#include <mutex>
#include <vector>

#include "com/failure.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace com {
namespace {

using Microsoft::WRL::ComPtr;

struct IidLess {
    bool operator()(const IID& a, const IID& b) const { return memcmp(&a, &b, sizeof(IID)) < 0; }
};

// Viewer threads may ask too, so the cache is locked; a hit costs one uncontended lock.
struct Cache {
    std::mutex mutex;
    std::vector<ComPtr<ITypeLib>> libraries;
    std::map<IID, ComPtr<ITypeInfo>, IidLess> infos;
};

Cache& TheCache()
{
    // Never destroyed: the pointers must not be released after COM is gone. ReleaseTypeInfo empties it in time.
    static Cache& cache = *new Cache;
    return cache;
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
        if (cache.libraries.empty()) {
            for (int number = 1; number <= CountTypeLibraries(); ++number) {
                ComPtr<ITypeLib> library;
                Check(LoadModuleTypeLibrary(number, &library));
                cache.libraries.push_back(library);
            }
        }
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

void ReleaseTypeInfo()
{
    Cache& cache = TheCache();
    const std::lock_guard lock(cache.mutex);
    cache.infos.clear();
    cache.libraries.clear();
}

}  // namespace com
