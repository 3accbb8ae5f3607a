#include "thermo/wrapping_table.h"

#include "thermo/material_object.h"

namespace zelt {
namespace {

// Makes a proxy with `make`, attaches it to what crosses `through`, and returns it with one reference.
template <class Make>
HRESULT WrapWith(Make&& make, IDispatch* incoming, CapeOpenBase& through, CapeOpenBase** result)
{
    *result = nullptr;
    return com::NoThrow([&] {
        CapeOpenBase* proxy = make();
        proxy->AddRef();
        const HRESULT attached = com::NoThrow([&] {
            proxy->AttachThrough(incoming, through);
            return S_OK;
        });
        if (FAILED(attached)) {
            proxy->Release();
            return attached;
        }
        *result = proxy;
        return S_OK;
    });
}

HRESULT WrapMaterialObject(const WrapSite& site, IDispatch* incoming, CapeOpenBase& through, CapeOpenBase** proxy)
{
    return WrapWith([&] { return new CMaterialObject(site.startingVersion); }, incoming, through, proxy);
}

// In the order of WrapKind. A null row: objects of that kind cross as they are.
constexpr WrapTable kWrappers = {
    WrapMaterialObject,  // MaterialObject
    nullptr,             // MaterialTemplate
    nullptr,             // SimulationContext
    nullptr,             // ParameterCollection
};

}  // namespace

void InstallWrappers() { SetWrapTable(kWrappers); }

}  // namespace zelt
