#include "system/known_folder.h"

#include <memory>

#include "com/failure.h"

namespace zelt {
namespace {

struct TaskMemory {
    void operator()(void* memory) const { CoTaskMemFree(memory); }
};

}  // namespace

HRESULT KnownFolder(REFKNOWNFOLDERID id, DWORD flags, std::wstring& path)
{
    return com::NoThrow([&] {
        wchar_t* raw = nullptr;
        const HRESULT found = SHGetKnownFolderPath(id, flags, nullptr, &raw);
        const std::unique_ptr<wchar_t, TaskMemory> owned(raw);  // must be freed even if the call failed
        if (FAILED(found)) return found;
        if (!owned) return E_UNEXPECTED;
        path = owned.get();
        return S_OK;
    });
}

}  // namespace zelt
