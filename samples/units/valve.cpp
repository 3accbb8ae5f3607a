#include "samples/units/valve.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kOutletPressure = L"Outlet pressure";

std::vector<PortDefinition> ValvePorts()
{
    return {{L"Inlet", L"The stream", CAPE_MATERIAL, CAPE_INLET, true},
            {L"Outlet", L"The same at a lower pressure", CAPE_MATERIAL, CAPE_OUTLET, true}};
}

std::vector<ParameterDefinition> ValveParameters()
{
    return {{kOutletPressure, L"Pa", RealSpecification{101325, 1e3, 1e8, {-1, 1, -2, 0, 0, 0, 0, 0}}}};
}

}  // namespace

ValveModel::ValveModel() : UnitModel(L"Valve", ValvePorts(), ValveParameters()) {}

std::wstring ValveModel::Objection() const
{
    const std::optional<double> inlet = KnownPressure(kInlet);
    const double outlet = Values().Real(kOutletPressure);
    if (!inlet || outlet <= *inlet) return {};
    return L"The outlet pressure " + Quantity(outlet, L"Pa") + L" is above the inlet's, " + Quantity(*inlet, L"Pa");
}

std::vector<std::wstring> ValveModel::Run()
{
    const UnitStream outlet = Stream(kOutlet);
    const std::vector<std::wstring> ids = outlet.CompoundIds();
    const StreamState state = Stream(kInlet).State(ids);
    const Mixture content = Mix({{state}});
    const double pressure = Values().Real(kOutletPressure);
    outlet.FlashAtEnthalpy(content, ids, pressure, state.enthalpy);
    return {L"Outlet temperature: " + Quantity(outlet.Temperature(), L"K"),
            L"Outlet pressure: " + Quantity(pressure, L"Pa"),
            L"Temperature change: " + Quantity(outlet.Temperature() - state.temperature, L"K")};
}

}  // namespace zelt::sample
