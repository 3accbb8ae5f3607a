#include "samples/material/material_object_part.h"

#include <set>

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/material/material.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kWho = L"Property package";

// Properties of pure compounds are stored separately from those of the mixture.
std::wstring StoredName(std::wstring_view property, std::wstring_view calcType)
{
    std::wstring name(property);
    if (SameName(calcType, L"Pure")) return name + L" (pure)";
    if (!calcType.empty() && !SameName(calcType, L"Mixture")) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"There is no type of calculation " + Quoted(calcType));
    }
    return name;
}

// The index of each of these compounds in the slate.
std::vector<std::size_t> PlacesOf(const Slate& slate, const std::vector<std::wstring>& ids)
{
    std::vector<std::size_t> places;
    for (const std::wstring& id : ids) {
        const SlateCompound* compound = slate.FindCompound(id);
        if (!compound) throw CapeFailure(ECapeInvalidArgumentHR, L"The material object has no compound " + Quoted(id));
        places.push_back(static_cast<std::size_t>(compound - slate.compounds.data()));
    }
    return places;
}

bool InOrder(const std::vector<std::size_t>& places, std::size_t count)
{
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] != i) return false;
    }
    return places.size() == count;
}

}  // namespace

ICapeThermoPropertyPackage* MaterialObjectPart::Package() const
{
    if (!link || !link->package) {
        throw CapeFailure(ECapeBadInvOrderHR, L"The material object has no property package that calculates for it");
    }
    return link->package.Get();
}

ComPtr<IDispatch> MaterialObjectPart::Self() const
{
    ComPtr<IDispatch> self;
    com::Check(object.QueryInterface(IID_PPV_ARGS(&self)));
    return self;
}

PropertyBag& MaterialObjectPart::BagOf(std::wstring_view property, std::wstring_view phase, bool make)
{
    if (SameName(phase, L"Overall") || SameName(property, L"temperature") || SameName(property, L"pressure")) {
        return store.state.overall;
    }
    const std::wstring& label = store.LabelOf(phase);
    for (PresentPhase& present : store.state.phases) {
        if (present.label == label) return present.properties;
    }
    if (!make) {
        throw CapeFailure(ECapeThrmPropertyNotAvailableHR, L"The material object has no phase " + Quoted(label));
    }
    store.state.phases.push_back({label, CAPE_UNKNOWNPHASESTATUS, {}});
    return store.state.phases.back().properties;
}

STDMETHODIMP MaterialObjectPart::get_ComponentIds(VARIANT* compIds)
{
    return Call(L"get_ComponentIds", [&] {
        std::vector<std::wstring> ids;
        for (const SlateCompound& compound : store.SharedSlate()->compounds) ids.push_back(compound.id);
        Return(compIds, MakeStrings(ids));
    });
}

STDMETHODIMP MaterialObjectPart::get_PhaseIds(VARIANT* phaseIds)
{
    return Call(L"get_PhaseIds", [&] {
        std::vector<std::wstring> labels;
        for (const PresentPhase& phase : store.state.phases) labels.push_back(phase.label);
        Return(phaseIds, MakeStrings(labels));
    });
}

STDMETHODIMP MaterialObjectPart::GetUniversalConstant(VARIANT props, VARIANT* propVals)
{
    return Call(L"GetUniversalConstant", [&] {
        std::vector<_variant_t> values;
        for (const std::wstring& name : ReadStrings(props, L"props")) values.push_back(UniversalConstantValue(name));
        Return(propVals, MakeVariants(values));
    });
}

STDMETHODIMP MaterialObjectPart::GetComponentConstant(VARIANT props, VARIANT compIds, VARIANT* propVals)
{
    return Call(L"GetComponentConstant",
                [&] { Return(propVals, CompoundConstantValues(*store.SharedSlate(), props, compIds)); });
}

STDMETHODIMP MaterialObjectPart::CalcProp(VARIANT props, VARIANT phases, BSTR calcType)
{
    return Call(L"CalcProp",
                [&] { CheckCall(Package()->CalcProp(Self().Get(), props, phases, calcType), Package(), kWho); });
}

STDMETHODIMP MaterialObjectPart::GetProp(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis,
                                         VARIANT* results)
{
    return Call(L"GetProp", [&] {
        store.OnRead(L"GetProp");
        const PropertyBag& bag = BagOf(TextOf(property), TextOf(phase), false);
        const std::vector<double> values =
            store.Find(bag, StoredName(TextOf(property), TextOf(calcType)), TextOf(basis));
        const std::vector<std::wstring> ids = ReadStrings(compIds, L"compIds");
        if (ids.empty() || values.size() != store.SharedSlate()->compounds.size()) {
            Return(results, MakeDoubles(values));
            return;
        }
        std::vector<double> selected;
        for (const std::size_t place : PlacesOf(*store.SharedSlate(), ids)) selected.push_back(values[place]);
        Return(results, MakeDoubles(selected));
    });
}

STDMETHODIMP MaterialObjectPart::SetProp(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis,
                                         VARIANT values)
{
    return Call(L"SetProp", [&] {
        const Slate& slate = *store.SharedSlate();
        const std::vector<std::size_t> places = PlacesOf(slate, ReadStrings(compIds, L"compIds"));
        if (!places.empty() && !InOrder(places, slate.compounds.size())) {
            throw CapeFailure(ECapeLimitedImplHR, L"Values are set for all compounds at once, in the material's order");
        }
        const std::wstring name = StoredName(TextOf(property), TextOf(calcType));
        store.Store(BagOf(TextOf(property), TextOf(phase), true), name, TextOf(basis), values);
    });
}

STDMETHODIMP MaterialObjectPart::CalcEquilibrium(BSTR flashType, VARIANT props)
{
    return Call(L"CalcEquilibrium",
                [&] { CheckCall(Package()->CalcEquilibrium(Self().Get(), flashType, props), Package(), kWho); });
}

STDMETHODIMP MaterialObjectPart::SetIndependentVar(VARIANT, VARIANT)
{
    return Call(L"SetIndependentVar", [] { throw CapeFailure(ECapeNoImplHR, L"There are no independent variables"); });
}

STDMETHODIMP MaterialObjectPart::GetIndependentVar(VARIANT, VARIANT*)
{
    return Call(L"GetIndependentVar", [] { throw CapeFailure(ECapeNoImplHR, L"There are no independent variables"); });
}

STDMETHODIMP MaterialObjectPart::PropCheck(VARIANT props, VARIANT* valid)
{
    return Call(L"PropCheck", [&] { CheckCall(Package()->PropCheck(Self().Get(), props, valid), Package(), kWho); });
}

STDMETHODIMP MaterialObjectPart::AvailableProps(VARIANT* props)
{
    return Call(L"AvailableProps", [&] {
        std::set<std::wstring> names;
        for (const auto& [key, values] : store.state.overall) names.insert(key.property);
        for (const PresentPhase& phase : store.state.phases) {
            for (const auto& [key, values] : phase.properties) names.insert(key.property);
        }
        Return(props, MakeStrings(std::vector<std::wstring>(names.begin(), names.end())));
    });
}

STDMETHODIMP MaterialObjectPart::RemoveResults(VARIANT props)
{
    return Call(L"RemoveResults", [&] {
        const std::vector<std::wstring> names = ReadStrings(props, L"props");
        if (names.empty()) {
            store.state.phases.clear();
            store.state.twoPhase.clear();
        }
        for (PresentPhase& phase : store.state.phases) {
            std::erase_if(phase.properties, [&](const auto& entry) {
                for (const std::wstring& name : names) {
                    if (SameName(entry.first.property, name)) return true;
                }
                return false;
            });
        }
    });
}

HRESULT MaterialObjectPart::Make(const wchar_t* operation, const wchar_t* name, MaterialState state, IDispatch** result)
{
    if (!result) return E_POINTER;
    *result = nullptr;
    return Call(operation, [&] {
        CheckCall(com::Create<Material>(IID_IDispatch, reinterpret_cast<void**>(result), store.SharedSlate(),
                                        std::wstring(name), ReadHook(), link, std::move(state)),
                  nullptr, L"Material object");
    });
}

STDMETHODIMP MaterialObjectPart::CreateMaterialObject(IDispatch** materialObject)
{
    return Make(L"CreateMaterialObject", L"Created material", {}, materialObject);
}

STDMETHODIMP MaterialObjectPart::Duplicate(IDispatch** clone)
{
    return Make(L"Duplicate", L"Duplicate", store.state, clone);
}

STDMETHODIMP MaterialObjectPart::ValidityCheck(VARIANT props, VARIANT* relList)
{
    return Call(L"ValidityCheck",
                [&] { CheckCall(Package()->ValidityCheck(Self().Get(), props, relList), Package(), kWho); });
}

STDMETHODIMP MaterialObjectPart::GetPropList(VARIANT* props)
{
    return Call(L"GetPropList", [&] { CheckCall(Package()->GetPropList(props), Package(), kWho); });
}

STDMETHODIMP MaterialObjectPart::GetNumComponents(long* numComp)
{
    if (!numComp) return E_POINTER;
    *numComp = static_cast<long>(store.SharedSlate()->compounds.size());
    return S_OK;
}

}  // namespace zelt::sample
