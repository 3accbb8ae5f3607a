#include "thermo/wrapping_table.h"

#include "thermo/interface_rows.h"
#include "thermo/material_object.h"
#include "thermo/material_template.h"
#include "thermo/simulation_context.h"
#include "parameters/parameter.h"
#include "parameters/parameter_collection.h"
#include "parameters/parameter_spec.h"
#include "unit/port_collection.h"
#include "reactions/reaction_object.h"
#include "unit/unit_port.h"

namespace zelt {
namespace {

// Attaches a new proxy to the object that crosses the proxy `through`.
HRESULT Attach(ProxyPtr made, Crossing crossing, IUnknown* incoming, CapeOpenBase& through, ProxyPtr& proxy)
{
    made->AttachThrough(incoming, crossing, through);
    proxy = std::move(made);
    return S_OK;
}

template <class Proxy>
HRESULT WrapAs(const WrapSite&, Crossing crossing, IUnknown* incoming, CapeOpenBase& through, ProxyPtr& proxy)
{
    return com::NoThrow([&] { return Attach(new Proxy, crossing, incoming, through, proxy); });
}

HRESULT WrapMaterialObject(const WrapSite& site, Crossing crossing, IUnknown* incoming, CapeOpenBase& through,
                           ProxyPtr& proxy)
{
    return com::NoThrow(
        [&] { return Attach(new CMaterialObject(site.startingVersion), crossing, incoming, through, proxy); });
}

// In the order of WrapKind. Objects of a kind with a null entry would not be wrapped.
constexpr WrapTable kWrappers = {
    WrapMaterialObject,            // MaterialObject
    WrapAs<CMaterialTemplate>,     // MaterialTemplate
    WrapAs<CSimulationContext>,    // SimulationContext
    WrapAs<CParameterCollection>,  // ParameterCollection
    WrapAs<CParameter>,            // Parameter
    WrapAs<CParameterSpec>,        // ParameterSpec
    WrapAs<CReactionObject>,       // ReactionObject
    WrapAs<CPortCollection>,       // PortCollection
    WrapAs<CUnitPort>,             // UnitPort
};

}  // namespace

void InstallWrappers()
{
    WrapperFactory::SetTable(kWrappers);
    SetPartsOnDemand(InterfaceRows());
}

}  // namespace zelt
