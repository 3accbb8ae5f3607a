#include "samples/simulator/material.h"

#include <algorithm>
#include <cwctype>

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr long kUnknownStatus = CAPE_UNKNOWNPHASESTATUS;

std::wstring Lower(std::wstring_view text)
{
    std::wstring lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](wchar_t c) { return std::towlower(c); });
    return lower;
}

PropertyKey KeyOf(std::wstring_view property, std::wstring_view basis)
{
    PropertyKey key{Lower(property), Lower(basis)};
    // These have no basis, whatever a caller gives.
    if (key.property == L"temperature" || key.property == L"pressure") key.basis.clear();
    return key;
}

// How a value on a mole basis becomes one on a mass basis.
enum class MassConversion { kNone, kPerMole, kMolePer, kFraction };

MassConversion ConversionOf(std::wstring_view property)
{
    const std::wstring_view name = property.substr(0, property.find(L'.'));
    if (name == L"enthalpy" || name == L"entropy" || name == L"volume" || name == L"heatcapacitycp") {
        return MassConversion::kPerMole;
    }
    if (name == L"density") return MassConversion::kMolePer;
    if (property == L"fraction") return MassConversion::kFraction;
    return MassConversion::kNone;
}

// The properties that a copy of another's material takes over, when they are set.
constexpr struct {
    const wchar_t* name;
    const wchar_t* basis;
} kCopied[] = {{L"temperature", L""},
               {L"pressure", L""},
               {L"fraction", L"mole"},
               {L"phaseFraction", L"mole"},
               {L"totalFlow", L"mole"}};

}  // namespace

const std::wstring& MaterialPart::LabelOf(std::wstring_view text) const
{
    const SlatePhase* phase = slate->FindPhase(std::wstring(text));
    if (!phase) throw CapeFailure(ECapeInvalidArgumentHR, L"The material object has no phase " + Quoted(text));
    return phase->label;
}

PresentPhase& MaterialPart::PhaseOf(std::wstring_view text)
{
    const std::wstring& label = LabelOf(text);
    for (PresentPhase& phase : state.phases) {
        if (phase.label == label) return phase;
    }
    CapeFailure failure(ECapeBadInvOrderHR, L"Phase " + Quoted(label) + L" is not present in the material object");
    failure.requestedOperation = L"SetPresentPhases";
    throw failure;
}

std::pair<std::wstring, std::wstring> MaterialPart::LabelPair(const VARIANT& labels) const
{
    const std::vector<std::wstring> names = ReadStrings(labels, L"phaseLabels");
    if (names.size() != 2) throw CapeFailure(ECapeInvalidArgumentHR, L"Two phase labels are needed");
    return {LabelOf(names[0]), LabelOf(names[1])};
}

void MaterialPart::OnRead(const wchar_t* method) const
{
    if (hook) hook(method);
}

std::vector<double> MaterialPart::Find(const PropertyBag& bag, std::wstring_view property,
                                       std::wstring_view basis) const
{
    const PropertyKey key = KeyOf(property, basis);
    if (const auto found = bag.find(key); found != bag.end()) return found->second;

    const auto onMole = bag.find({key.property, L"mole"});
    const auto fractions = bag.find({L"fraction", L"mole"});
    const MassConversion conversion = ConversionOf(key.property);
    if (key.basis != L"mass" || conversion == MassConversion::kNone || onMole == bag.end() || fractions == bag.end() ||
        fractions->second.size() != slate->compounds.size()) {
        throw CapeFailure(ECapeThrmPropertyNotAvailableHR,
                          L"The material object has no " + Quoted(property) + L" on basis " + Quoted(basis));
    }
    double weight = 0;  // kg/mol
    for (std::size_t i = 0; i < slate->compounds.size(); ++i) {
        weight += fractions->second[i] * slate->compounds[i].molecularWeight / 1000;
    }
    std::vector<double> values = onMole->second;
    for (std::size_t i = 0; i < values.size(); ++i) {
        switch (conversion) {
            case MassConversion::kFraction: values[i] *= slate->compounds[i].molecularWeight / 1000 / weight; break;
            case MassConversion::kMolePer: values[i] *= weight; break;
            default: values[i] /= weight; break;
        }
    }
    return values;
}

void MaterialPart::Store(PropertyBag& bag, std::wstring_view property, std::wstring_view basis,
                         const VARIANT& values) const
{
    const PropertyKey key = KeyOf(property, basis);
    std::vector<double> numbers = ReadDoubles(values, L"values");
    if (key.property.empty()) throw CapeFailure(ECapeInvalidArgumentHR, L"The property has no name");
    const bool scalar = key.property == L"temperature" || key.property == L"pressure" ||
                        key.property == L"phasefraction" || key.property == L"totalflow";
    const bool perCompound = key.property == L"fraction" || key.property == L"flow";
    if ((scalar && numbers.size() != 1) || (perCompound && numbers.size() != slate->compounds.size())) {
        throw CapeFailure(ECapeInvalidArgumentHR,
                          std::to_wstring(numbers.size()) + L" values are not what " + Quoted(property) + L" has");
    }
    bag[key] = std::move(numbers);
}

STDMETHODIMP MaterialPart::ClearAllProps()
{
    return Call(L"ClearAllProps", [&] { state = MaterialState(); });
}

STDMETHODIMP MaterialPart::CopyFromMaterial(IDispatch** source)
{
    return Call(L"CopyFromMaterial", [&] {
        ComPtr<ICapeThermoMaterial> other;
        if (!source || !*source || FAILED((*source)->QueryInterface(IID_PPV_ARGS(&other)))) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"There is no material object to copy from");
        }
        MaterialState copy;
        for (const auto& row : kCopied) {
            _variant_t values;
            if (FAILED(other->GetOverallProp(MakeBstr(row.name).GetBSTR(), MakeBstr(row.basis).GetBSTR(), &values))) {
                continue;
            }
            Store(copy.overall, row.name, row.basis, values);
        }
        _variant_t labels, status;
        CheckCall(other->GetPresentPhases(&labels, &status), other.Get(), L"Source material");
        const std::vector<std::wstring> names = ReadStrings(labels, L"phaseLabels");
        const std::vector<long> states = ReadLongs(status, L"phaseStatus");
        for (std::size_t i = 0; i < names.size(); ++i) {
            PresentPhase phase{LabelOf(names[i]), i < states.size() ? states[i] : kUnknownStatus, {}};
            for (const auto& row : kCopied) {
                _variant_t values;
                if (SUCCEEDED(other->GetSinglePhaseProp(MakeBstr(row.name).GetBSTR(), MakeBstr(names[i]).GetBSTR(),
                                                        MakeBstr(row.basis).GetBSTR(), &values))) {
                    Store(phase.properties, row.name, row.basis, values);
                }
            }
            copy.phases.push_back(std::move(phase));
        }
        state = std::move(copy);
    });
}

STDMETHODIMP MaterialPart::CreateMaterial(IDispatch** materialObject)
{
    if (!materialObject) return E_POINTER;
    *materialObject = nullptr;
    return Call(L"CreateMaterial", [&] {
        CheckCall(com::Create<Material>(IID_IDispatch, reinterpret_cast<void**>(materialObject), slate,
                                        std::wstring(L"Created material")),
                  nullptr, L"Material object");
    });
}

STDMETHODIMP MaterialPart::GetOverallProp(BSTR property, BSTR basis, VARIANT* results)
{
    return Call(L"GetOverallProp", [&] {
        OnRead(L"GetOverallProp");
        Replace(results, MakeDoubles(Find(state.overall, TextOf(property), TextOf(basis))));
    });
}

STDMETHODIMP MaterialPart::GetOverallTPFraction(double* temperature, double* pressure, VARIANT* composition)
{
    if (!temperature || !pressure) return E_POINTER;
    return Call(L"GetOverallTPFraction", [&] {
        OnRead(L"GetOverallTPFraction");
        const std::vector<double> fractions = Find(state.overall, L"fraction", L"mole");
        *temperature = Find(state.overall, L"temperature", L"").front();
        *pressure = Find(state.overall, L"pressure", L"").front();
        Replace(composition, MakeDoubles(fractions));
    });
}

STDMETHODIMP MaterialPart::GetPresentPhases(VARIANT* phaseLabels, VARIANT* phaseStatus)
{
    return Call(L"GetPresentPhases", [&] {
        OnRead(L"GetPresentPhases");
        std::vector<std::wstring> labels;
        std::vector<long> status;
        for (const PresentPhase& phase : state.phases) {
            labels.push_back(phase.label);
            status.push_back(phase.status);
        }
        Replace(phaseLabels, labels.empty() ? _variant_t() : MakeStrings(labels));
        Replace(phaseStatus, labels.empty() ? _variant_t() : MakeLongs(status));
    });
}

STDMETHODIMP MaterialPart::GetSinglePhaseProp(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT* results)
{
    return Call(L"GetSinglePhaseProp", [&] {
        OnRead(L"GetSinglePhaseProp");
        Replace(results, MakeDoubles(Find(PhaseOf(TextOf(phaseLabel)).properties, TextOf(property), TextOf(basis))));
    });
}

STDMETHODIMP MaterialPart::GetTPFraction(BSTR phaseLabel, double* temperature, double* pressure, VARIANT* composition)
{
    if (!temperature || !pressure) return E_POINTER;
    return Call(L"GetTPFraction", [&] {
        OnRead(L"GetTPFraction");
        const PropertyBag& bag = PhaseOf(TextOf(phaseLabel)).properties;
        const std::vector<double> fractions = Find(bag, L"fraction", L"mole");
        *temperature = Find(bag, L"temperature", L"").front();
        *pressure = Find(bag, L"pressure", L"").front();
        Replace(composition, MakeDoubles(fractions));
    });
}

STDMETHODIMP MaterialPart::GetTwoPhaseProp(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT* results)
{
    return Call(L"GetTwoPhaseProp", [&] {
        OnRead(L"GetTwoPhaseProp");
        Replace(results, MakeDoubles(Find(state.twoPhase[LabelPair(phaseLabels)], TextOf(property), TextOf(basis))));
    });
}

STDMETHODIMP MaterialPart::SetOverallProp(BSTR property, BSTR basis, VARIANT values)
{
    return Call(L"SetOverallProp", [&] { Store(state.overall, TextOf(property), TextOf(basis), values); });
}

STDMETHODIMP MaterialPart::SetPresentPhases(VARIANT phaseLabels, VARIANT phaseStatus)
{
    return Call(L"SetPresentPhases", [&] {
        const std::vector<std::wstring> labels = ReadStrings(phaseLabels, L"phaseLabels");
        const std::vector<long> status = ReadLongs(phaseStatus, L"phaseStatus");
        if (!status.empty() && status.size() != labels.size()) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"There is not one status for each phase");
        }
        std::vector<PresentPhase> phases;
        for (std::size_t i = 0; i < labels.size(); ++i) {
            PresentPhase phase{LabelOf(labels[i]), status.empty() ? kUnknownStatus : status[i], {}};
            // A phase that stays keeps what is known of it.
            for (const PresentPhase& former : state.phases) {
                if (former.label == phase.label) phase.properties = former.properties;
            }
            phases.push_back(std::move(phase));
        }
        state.phases = std::move(phases);
        state.twoPhase.clear();
    });
}

STDMETHODIMP MaterialPart::SetSinglePhaseProp(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT values)
{
    return Call(L"SetSinglePhaseProp",
                [&] { Store(PhaseOf(TextOf(phaseLabel)).properties, TextOf(property), TextOf(basis), values); });
}

STDMETHODIMP MaterialPart::SetTwoPhaseProp(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT values)
{
    return Call(L"SetTwoPhaseProp",
                [&] { Store(state.twoPhase[LabelPair(phaseLabels)], TextOf(property), TextOf(basis), values); });
}

}  // namespace zelt::sample
