#include "guard/foreign_creation.h"

#include <objbase.h>

#include "guard/fault_guard.h"
#include "guard/foreign_call.h"

namespace zelt {

HRESULT CreateForeign(REFCLSID clsid, DWORD contexts, REFIID iid, void** result) noexcept
{
    *result = nullptr;
    const HRESULT created = CallForeign([&] { return CoCreateInstance(clsid, nullptr, contexts, iid, result); });
    // A component may bring its own runtime library, whose abort must not end this process.
    PrepareGuards();
    if (FAILED(created)) {
        *result = nullptr;
        return created;
    }
    return *result ? created : E_NOINTERFACE;
}

}  // namespace zelt
