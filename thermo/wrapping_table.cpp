#include "thermo/wrapping_table.h"

#include "thermo/material_object.h"
#include "thermo/material_template.h"
#include "thermo/simulation_context.h"
#include "unit/parameter.h"
#include "unit/parameter_collection.h"
#include "unit/parameter_spec.h"
#include "unit/reaction_object.h"

namespace zelt {
namespace {

CapeOpenBase* Attached(CapeOpenBase* proxy, Crossing crossing, IUnknown* incoming, CapeOpenBase& through)
{
    proxy->AddRef();
    const HRESULT attached = com::NoThrow([&] {
        proxy->AttachThrough(incoming, crossing, through);
        return S_OK;
    });
    if (SUCCEEDED(attached)) return proxy;
    proxy->Release();
    throw com::Failure(attached);
}

// Makes a proxy of the class, attaches it to what crosses `through`, and returns it with one reference.
template <class Proxy>
HRESULT WrapAs(const WrapSite&, Crossing crossing, IUnknown* incoming, CapeOpenBase& through, CapeOpenBase** proxy)
{
    return com::NoThrow([&] {
        *proxy = Attached(new Proxy, crossing, incoming, through);
        return S_OK;
    });
}

HRESULT WrapMaterialObject(const WrapSite& site, Crossing crossing, IUnknown* incoming, CapeOpenBase& through,
                           CapeOpenBase** proxy)
{
    return com::NoThrow([&] {
        *proxy = Attached(new CMaterialObject(site.startingVersion), crossing, incoming, through);
        return S_OK;
    });
}

// In the order of WrapKind. A null row: objects of that kind cross as they are.
constexpr WrapTable kWrappers = {
    WrapMaterialObject,            // MaterialObject
    WrapAs<CMaterialTemplate>,     // MaterialTemplate
    WrapAs<CSimulationContext>,    // SimulationContext
    WrapAs<CParameterCollection>,  // ParameterCollection
    WrapAs<CParameter>,            // Parameter
    WrapAs<CParameterSpec>,        // ParameterSpec
    WrapAs<CReactionObject>,       // ReactionObject
};

}  // namespace

void InstallWrappers() { SetWrapTable(kWrappers); }

}  // namespace zelt
