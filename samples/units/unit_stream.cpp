#include "samples/units/unit_stream.h"

#include <algorithm>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

template <class I>
ComPtr<I> Required(IDispatch* object, const wchar_t* interfaceName)
{
    ComPtr<I> result;
    if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(&result)))) {
        throw CapeFailure(ECapeInvalidArgumentHR,
                          std::wstring(L"the material object does not implement ") + interfaceName);
    }
    return result;
}

// The values of the compounds `from`, in the order of `to`.
std::vector<double> Reordered(const std::vector<double>& values, const std::vector<std::wstring>& from,
                              const std::vector<std::wstring>& to)
{
    if (values.size() != from.size() || from.size() != to.size()) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"it does not have the compounds of the other streams");
    }
    std::vector<double> result;
    for (const std::wstring& id : to) {
        const auto found =
            std::find_if(from.begin(), from.end(), [&](const std::wstring& other) { return SameName(id, other); });
        if (found == from.end()) throw CapeFailure(ECapeInvalidArgumentHR, L"it has no compound " + Quoted(id));
        result.push_back(values[static_cast<std::size_t>(found - from.begin())]);
    }
    return result;
}

}  // namespace

UnitStream::UnitStream(IDispatch* object, std::wstring_view portName) : name(L"Stream at " + Quoted(portName))
{
    Named(name, [&] {
        material = MaterialView(object);
        phases = Required<ICapeThermoPhases>(object, L"ICapeThermoPhases");
        properties = Required<ICapeThermoPropertyRoutine>(object, L"ICapeThermoPropertyRoutine");
        equilibrium = Required<ICapeThermoEquilibriumRoutine>(object, L"ICapeThermoEquilibriumRoutine");
    });
}

std::vector<std::wstring> UnitStream::CompoundIds() const
{
    return Named(name, [&] {
        std::vector<std::wstring> ids = material.CompoundIds();
        if (ids.empty()) throw CapeFailure(ECapeInvalidArgumentHR, L"it has no compounds");
        return ids;
    });
}

StreamState UnitStream::State(const std::vector<std::wstring>& ids) const
{
    return Named(name, [&] {
        StreamState state{};
        state.flow = material.Overall(L"totalFlow", L"mole");
        state.temperature = material.Overall(L"temperature", L"");
        state.pressure = material.Overall(L"pressure", L"");
        state.fractions = Reordered(material.OverallFractions(), material.CompoundIds(), ids);
        if (state.flow != 0) state.enthalpy = EnthalpyOfPhases();
        return state;
    });
}

double UnitStream::Temperature() const
{
    return Named(name, [&] { return material.Overall(L"temperature", L""); });
}

double UnitStream::Enthalpy() const
{
    return Named(name, [&] { return EnthalpyOfPhases(); });
}

double UnitStream::EnthalpyOfPhases() const
{
    const std::vector<std::wstring> labels = material.PresentPhases();
    if (labels.empty()) {
        CapeFailure failure(ECapeBadInvOrderHR, L"it has no phases; its equilibrium has to be calculated first");
        failure.requestedOperation = L"CalcEquilibrium";
        throw failure;
    }
    double enthalpy = 0;
    for (const std::wstring& label : labels) {
        const double fraction = material.SinglePhase(L"phaseFraction", label, L"mole");
        if (fraction == 0) continue;
        CheckCall(properties->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), MakeBstr(label).GetBSTR()),
                  properties.Get(), L"CalcSinglePhaseProp");
        enthalpy += fraction * material.SinglePhase(L"enthalpy", label, L"mole");
    }
    return enthalpy;
}

void UnitStream::SetContent(const Mixture& content, const std::vector<std::wstring>& ids, double pressure) const
{
    material.SetOverall(L"fraction", L"mole", Reordered(content.fractions, ids, material.CompoundIds()));
    material.SetOverall(L"totalFlow", L"mole", {{content.flow}});
    material.SetOverall(L"pressure", L"", {{pressure}});
}

void UnitStream::Flash(std::initializer_list<const wchar_t*> specification1,
                       std::initializer_list<const wchar_t*> specification2) const
{
    _variant_t labels, states, keys;
    CheckCall(phases->GetPhaseList(&labels, &states, &keys), phases.Get(), L"GetPhaseList");
    material.SetPresentPhases(ReadStrings(labels, L"phaseLabels"), CAPE_UNKNOWNPHASESTATUS);
    CheckCall(equilibrium->CalcEquilibrium(MakeStrings(specification1), MakeStrings(specification2),
                                           MakeBstr(L"Unspecified").GetBSTR()),
              equilibrium.Get(), L"CalcEquilibrium");
}

void UnitStream::FlashAtTemperature(const Mixture& content, const std::vector<std::wstring>& ids, double pressure,
                                    double temperature) const
{
    Named(name, [&] {
        SetContent(content, ids, pressure);
        material.SetOverall(L"temperature", L"", {{temperature}});
        Flash({L"temperature", L"", L"Overall"}, {L"pressure", L"", L"Overall"});
    });
}

void UnitStream::FlashAtEnthalpy(const Mixture& content, const std::vector<std::wstring>& ids, double pressure,
                                 double enthalpy) const
{
    Named(name, [&] {
        SetContent(content, ids, pressure);
        material.SetOverall(L"enthalpy", L"mole", {{enthalpy}});
        Flash({L"pressure", L"", L"Overall"}, {L"enthalpy", L"mole", L"Overall"});
    });
}

bool UnitStream::OffersFlashAtEnthalpy() const
{
    VARIANT_BOOL offered = VARIANT_FALSE;
    return SUCCEEDED(equilibrium->CheckEquilibriumSpec(MakeStrings({L"pressure", L"", L"Overall"}),
                                                       MakeStrings({L"enthalpy", L"mole", L"Overall"}),
                                                       MakeBstr(L"Unspecified").GetBSTR(), &offered)) &&
           offered != VARIANT_FALSE;
}

}  // namespace zelt::sample
