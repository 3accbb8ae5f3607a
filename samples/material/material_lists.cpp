#include "samples/material/material_lists.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

// clang-format off
const struct {
    const wchar_t* name;
    _variant_t (*value)(const SlateCompound& compound);
} kConstants[] = {
    {L"casRegistryNumber",  [](const SlateCompound& c) { return MakeText(c.casNumber); }},
    {L"chemicalFormula",    [](const SlateCompound& c) { return MakeText(c.formula); }},
    {L"iupacName",          [](const SlateCompound& c) { return MakeText(c.name); }},
    {L"molecularWeight",    [](const SlateCompound& c) { return _variant_t(c.molecularWeight); }},
    {L"normalBoilingPoint", [](const SlateCompound& c) { return _variant_t(c.boilingPoint); }},
};
constexpr struct {
    const wchar_t* name;
    double value;   // SI, exact since 2019
} kUniversalConstants[] = {
    {L"avogadroConstant",  6.02214076e23},
    {L"boltzmannConstant", 1.380649e-23},
    {L"molarGasConstant",  8.31446261815324},
};
// clang-format on

template <class Rows>
_variant_t NamesOf(const Rows& rows)
{
    std::vector<std::wstring> names;
    for (const auto& row : rows) names.emplace_back(row.name);
    return MakeStrings(names);
}

template <class Rows>
const auto& Find(const Rows& rows, std::wstring_view name, const wchar_t* kind)
{
    for (const auto& row : rows) {
        if (SameName(row.name, name)) return row;
    }
    throw CapeFailure(ECapeInvalidArgumentHR,
                      L"The material object has no " + std::wstring(kind) + L" " + Quoted(name));
}

[[noreturn]] void NoFunctions()
{
    throw CapeFailure(ECapeNoImplHR, L"The material object has constant properties only");
}

}  // namespace

_variant_t CompoundConstantValues(const Slate& slate, const VARIANT& props, const VARIANT& compIds)
{
    std::vector<const SlateCompound*> selected;
    for (const std::wstring& id : ReadStrings(compIds, L"compIds")) {
        selected.push_back(slate.FindCompound(id));
        if (!selected.back()) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"The material object has no compound " + Quoted(id));
        }
    }
    if (selected.empty()) {
        for (const SlateCompound& compound : slate.compounds) selected.push_back(&compound);
    }
    std::vector<_variant_t> values;
    for (const std::wstring& name : ReadStrings(props, L"props")) {
        const auto& constant = Find(kConstants, name, L"compound constant");
        for (const SlateCompound* compound : selected) values.push_back(constant.value(*compound));
    }
    return MakeVariants(values);
}

_variant_t UniversalConstantValue(std::wstring_view name)
{
    return _variant_t(Find(kUniversalConstants, name, L"universal constant").value);
}

STDMETHODIMP MaterialCompoundsPart::GetCompoundConstant(VARIANT props, VARIANT compIds, VARIANT* propVals)
{
    return Call(L"GetCompoundConstant", [&] { Return(propVals, CompoundConstantValues(*slate, props, compIds)); });
}

STDMETHODIMP MaterialCompoundsPart::GetCompoundList(VARIANT* compIds, VARIANT* formulae, VARIANT* names,
                                                    VARIANT* boilTemps, VARIANT* molwts, VARIANT* casnos)
{
    return Call(L"GetCompoundList", [&] {
        std::vector<std::wstring> ids, formulas, longNames, numbers;
        std::vector<double> boilingPoints, weights;
        for (const SlateCompound& compound : slate->compounds) {
            ids.push_back(compound.id);
            formulas.push_back(compound.formula);
            longNames.push_back(compound.name);
            boilingPoints.push_back(compound.boilingPoint);
            weights.push_back(compound.molecularWeight);
            numbers.push_back(compound.casNumber);
        }
        Replace(compIds, MakeStrings(ids));
        Replace(formulae, MakeStrings(formulas));
        Replace(names, MakeStrings(longNames));
        Replace(boilTemps, MakeDoubles(boilingPoints));
        Replace(molwts, MakeDoubles(weights));
        Replace(casnos, MakeStrings(numbers));
    });
}

STDMETHODIMP MaterialCompoundsPart::GetConstPropList(VARIANT* props)
{
    return Call(L"GetConstPropList", [&] { Return(props, NamesOf(kConstants)); });
}

STDMETHODIMP MaterialCompoundsPart::GetNumCompounds(long* num)
{
    if (!num) return E_POINTER;
    *num = static_cast<long>(slate->compounds.size());
    return S_OK;
}

STDMETHODIMP MaterialCompoundsPart::GetPDependentProperty(VARIANT, double, VARIANT, VARIANT*)
{
    return Call(L"GetPDependentProperty", NoFunctions);
}

STDMETHODIMP MaterialCompoundsPart::GetPDependentPropList(VARIANT* props)
{
    return Call(L"GetPDependentPropList", [&] { Return(props, _variant_t()); });
}

STDMETHODIMP MaterialCompoundsPart::GetTDependentProperty(VARIANT, double, VARIANT, VARIANT*)
{
    return Call(L"GetTDependentProperty", NoFunctions);
}

STDMETHODIMP MaterialCompoundsPart::GetTDependentPropList(VARIANT* props)
{
    return Call(L"GetTDependentPropList", [&] { Return(props, _variant_t()); });
}

STDMETHODIMP MaterialPhasesPart::GetNumPhases(long* num)
{
    if (!num) return E_POINTER;
    *num = static_cast<long>(slate->phases.size());
    return S_OK;
}

STDMETHODIMP MaterialPhasesPart::GetPhaseInfo(BSTR phaseLabel, BSTR phaseAttribute, VARIANT* value)
{
    return Call(L"GetPhaseInfo", [&] {
        const SlatePhase* phase = slate->FindPhase(std::wstring(TextOf(phaseLabel)));
        if (!phase) {
            throw CapeFailure(ECapeInvalidArgumentHR,
                              L"The material object has no phase " + Quoted(TextOf(phaseLabel)));
        }
        const std::wstring_view attribute = TextOf(phaseAttribute);
        if (SameName(attribute, L"StateOfAggregation")) {
            Return(value, MakeText(phase->stateOfAggregation));
        } else if (SameName(attribute, L"KeyCompoundId")) {
            Return(value, MakeText(phase->keyCompound));
        } else {
            Return(value, _variant_t());
        }
    });
}

STDMETHODIMP MaterialPhasesPart::GetPhaseList(VARIANT* phaseLabels, VARIANT* stateOfAggregation, VARIANT* keyCompoundId)
{
    return Call(L"GetPhaseList", [&] {
        std::vector<std::wstring> labels, states, keys;
        for (const SlatePhase& phase : slate->phases) {
            labels.push_back(phase.label);
            states.push_back(phase.stateOfAggregation);
            keys.push_back(phase.keyCompound);
        }
        Replace(phaseLabels, MakeStrings(labels));
        Replace(stateOfAggregation, MakeStrings(states));
        Replace(keyCompoundId, MakeStrings(keys));
    });
}

STDMETHODIMP MaterialConstantsPart::GetUniversalConstant(BSTR constantId, VARIANT* constantValue)
{
    return Call(L"GetUniversalConstant", [&] { Return(constantValue, UniversalConstantValue(TextOf(constantId))); });
}

STDMETHODIMP MaterialConstantsPart::GetUniversalConstantList(VARIANT* constantIds)
{
    return Call(L"GetUniversalConstantList", [&] { Return(constantIds, NamesOf(kUniversalConstants)); });
}

}  // namespace zelt::sample
