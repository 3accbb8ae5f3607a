#include "samples/units/splitter.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kFraction = L"Fraction to outlet 1";

std::vector<PortDefinition> SplitterPorts()
{
    return {{L"Inlet", L"The stream", CAPE_MATERIAL, CAPE_INLET, true},
            {L"Outlet 1", L"One part of it", CAPE_MATERIAL, CAPE_OUTLET, true},
            {L"Outlet 2", L"The rest", CAPE_MATERIAL, CAPE_OUTLET, true}};
}

std::vector<ParameterDefinition> SplitterParameters()
{
    return {{kFraction, L"Part of the flow, mol/mol", RealSpecification{0.5, 0, 1, {}}}};
}

}  // namespace

SplitterModel::SplitterModel() : UnitModel(L"Splitter", SplitterPorts(), SplitterParameters()) {}

std::vector<std::wstring> SplitterModel::Run()
{
    const UnitStream inlet = Stream(kInlet);
    const std::vector<std::wstring> ids = inlet.CompoundIds();
    const StreamState state = inlet.State(ids);
    const double fraction = Values().Real(kFraction);
    const double flows[] = {fraction * state.flow, state.flow - fraction * state.flow};
    for (const auto& [port, flow] : {std::pair(kFirstOutlet, flows[0]), std::pair(kSecondOutlet, flows[1])}) {
        Mixture content = Mix({{state}});
        content.flow = flow;
        // Flashes at a given enthalpy, because the temperature does not determine the vapour fraction of a boiling
        // pure compound.
        Stream(port).FlashAtEnthalpy(content, ids, state.pressure, state.enthalpy);
    }
    return {L"Flow of outlet 1: " + Quantity(flows[0], L"mol/s"), L"Flow of outlet 2: " + Quantity(flows[1], L"mol/s")};
}

}  // namespace zelt::sample
