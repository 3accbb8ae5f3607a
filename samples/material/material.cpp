#include "samples/material/material.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr long kUnknownStatus = CAPE_UNKNOWNPHASESTATUS;

// The properties that CopyFromMaterial copies, if they are set.
constexpr struct {
    const wchar_t* name;
    const wchar_t* basis;
} kCopied[] = {{L"temperature", L""},
               {L"pressure", L""},
               {L"fraction", L"mole"},
               {L"phaseFraction", L"mole"},
               {L"totalFlow", L"mole"}};

}  // namespace

STDMETHODIMP MaterialPart::ClearAllProps()
{
    return Call(L"ClearAllProps", [&] { store.state = MaterialState(); });
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
            store.Store(copy.overall, row.name, row.basis, values);
        }
        _variant_t labels, status;
        CheckCall(other->GetPresentPhases(&labels, &status), other.Get(), L"Source material");
        const std::vector<std::wstring> names = ReadStrings(labels, L"phaseLabels");
        const std::vector<long> states = ReadLongs(status, L"phaseStatus");
        for (std::size_t i = 0; i < names.size(); ++i) {
            PresentPhase phase{store.LabelOf(names[i]), i < states.size() ? states[i] : kUnknownStatus, {}};
            for (const auto& row : kCopied) {
                _variant_t values;
                if (SUCCEEDED(other->GetSinglePhaseProp(MakeBstr(row.name).GetBSTR(), MakeBstr(names[i]).GetBSTR(),
                                                        MakeBstr(row.basis).GetBSTR(), &values))) {
                    store.Store(phase.properties, row.name, row.basis, values);
                }
            }
            copy.phases.push_back(std::move(phase));
        }
        store.state = std::move(copy);
    });
}

STDMETHODIMP MaterialPart::CreateMaterial(IDispatch** materialObject)
{
    if (!materialObject) return E_POINTER;
    *materialObject = nullptr;
    return Call(L"CreateMaterial", [&] {
        CheckCall(com::Create<Material>(IID_IDispatch, reinterpret_cast<void**>(materialObject), store.SharedSlate(),
                                        std::wstring(L"Created material"), ReadHook(), link),
                  nullptr, L"Material object");
    });
}

STDMETHODIMP MaterialPart::GetOverallProp(BSTR property, BSTR basis, VARIANT* results)
{
    return Call(L"GetOverallProp", [&] {
        store.OnRead(L"GetOverallProp");
        Replace(results, MakeDoubles(store.Find(store.state.overall, TextOf(property), TextOf(basis))));
    });
}

STDMETHODIMP MaterialPart::GetOverallTPFraction(double* temperature, double* pressure, VARIANT* composition)
{
    if (!temperature || !pressure) return E_POINTER;
    return Call(L"GetOverallTPFraction", [&] {
        store.OnRead(L"GetOverallTPFraction");
        const std::vector<double> fractions = store.Find(store.state.overall, L"fraction", L"mole");
        *temperature = store.Find(store.state.overall, L"temperature", L"").front();
        *pressure = store.Find(store.state.overall, L"pressure", L"").front();
        Replace(composition, MakeDoubles(fractions));
    });
}

STDMETHODIMP MaterialPart::GetPresentPhases(VARIANT* phaseLabels, VARIANT* phaseStatus)
{
    return Call(L"GetPresentPhases", [&] {
        store.OnRead(L"GetPresentPhases");
        std::vector<std::wstring> labels;
        std::vector<long> status;
        for (const PresentPhase& phase : store.state.phases) {
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
        store.OnRead(L"GetSinglePhaseProp");
        Replace(results,
                MakeDoubles(store.Find(store.PhaseOf(TextOf(phaseLabel)).properties, TextOf(property), TextOf(basis))));
    });
}

STDMETHODIMP MaterialPart::GetTPFraction(BSTR phaseLabel, double* temperature, double* pressure, VARIANT* composition)
{
    if (!temperature || !pressure) return E_POINTER;
    return Call(L"GetTPFraction", [&] {
        store.OnRead(L"GetTPFraction");
        const PropertyBag& bag = store.PhaseOf(TextOf(phaseLabel)).properties;
        const std::vector<double> fractions = store.Find(bag, L"fraction", L"mole");
        *temperature = store.Find(bag, L"temperature", L"").front();
        *pressure = store.Find(bag, L"pressure", L"").front();
        Replace(composition, MakeDoubles(fractions));
    });
}

STDMETHODIMP MaterialPart::GetTwoPhaseProp(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT* results)
{
    return Call(L"GetTwoPhaseProp", [&] {
        store.OnRead(L"GetTwoPhaseProp");
        Replace(results, MakeDoubles(store.Find(store.state.twoPhase[store.LabelPair(phaseLabels)], TextOf(property),
                                                TextOf(basis))));
    });
}

STDMETHODIMP MaterialPart::SetOverallProp(BSTR property, BSTR basis, VARIANT values)
{
    return Call(L"SetOverallProp", [&] { store.Store(store.state.overall, TextOf(property), TextOf(basis), values); });
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
            PresentPhase phase{store.LabelOf(labels[i]), status.empty() ? kUnknownStatus : status[i], {}};
            // A phase that stays present keeps its known values.
            for (const PresentPhase& former : store.state.phases) {
                if (former.label == phase.label) phase.properties = former.properties;
            }
            phases.push_back(std::move(phase));
        }
        store.state.phases = std::move(phases);
        store.state.twoPhase.clear();
    });
}

STDMETHODIMP MaterialPart::SetSinglePhaseProp(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT values)
{
    return Call(L"SetSinglePhaseProp", [&] {
        store.Store(store.PhaseOf(TextOf(phaseLabel)).properties, TextOf(property), TextOf(basis), values);
    });
}

STDMETHODIMP MaterialPart::SetTwoPhaseProp(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT values)
{
    return Call(L"SetTwoPhaseProp", [&] {
        store.Store(store.state.twoPhase[store.LabelPair(phaseLabels)], TextOf(property), TextOf(basis), values);
    });
}

}  // namespace zelt::sample
