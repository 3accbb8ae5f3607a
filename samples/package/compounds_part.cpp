#include "samples/package/compounds_part.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/compound_list.h"
#include "samples/package/constants.h"

namespace zelt::sample {
namespace {

template <class Row>
_variant_t NamesOf(std::span<const Row> table)
{
    std::vector<std::wstring> names;
    for (const Row& row : table) names.emplace_back(row.name);
    return MakeStrings(names);
}

_variant_t Evaluate(const PackageModel& model, std::span<const CompoundFunction> table, const VARIANT& props,
                    double variable, const VARIANT& compIds)
{
    const std::vector<const Compound*> compounds = model.Select(ReadStrings(compIds, L"compIds"));
    std::vector<double> values;
    for (const std::wstring& name : ReadStrings(props, L"props")) {
        const CompoundFunction& function = FindFunction(table, name);
        for (const Compound* compound : compounds) values.push_back(function.value(*compound, variable));
    }
    return MakeDoubles(values);
}

}  // namespace

STDMETHODIMP CompoundsPart::GetCompoundConstant(VARIANT props, VARIANT compIds, VARIANT* propVals)
{
    return Call(L"GetCompoundConstant", [&] {
        const std::vector<const Compound*> compounds = model.Select(ReadStrings(compIds, L"compIds"));
        std::vector<_variant_t> values;
        for (const std::wstring& name : ReadStrings(props, L"props")) {
            const CompoundConstant& constant = FindConstant(name);
            for (const Compound* compound : compounds) values.push_back(constant.value(*compound));
        }
        Return(propVals, MakeVariants(values));
    });
}

STDMETHODIMP CompoundsPart::GetCompoundList(VARIANT* compIds, VARIANT* formulae, VARIANT* names, VARIANT* boilTemps,
                                            VARIANT* molwts, VARIANT* casnos)
{
    return Call(L"GetCompoundList",
                [&] { ReplaceCompoundList(model.Compounds(), compIds, formulae, names, boilTemps, molwts, casnos); });
}

STDMETHODIMP CompoundsPart::GetConstPropList(VARIANT* props)
{
    return Call(L"GetConstPropList", [&] { Return(props, NamesOf(CompoundConstants())); });
}

STDMETHODIMP CompoundsPart::GetNumCompounds(long* num)
{
    if (!num) return E_POINTER;
    *num = static_cast<long>(model.Compounds().size());
    return S_OK;
}

STDMETHODIMP CompoundsPart::GetPDependentProperty(VARIANT props, double pressure, VARIANT compIds, VARIANT* propVals)
{
    return Call(L"GetPDependentProperty", [&] {
        CheckPressure(pressure);
        Replace(propVals, Evaluate(model, PressureFunctions(), props, pressure, compIds));
    });
}

STDMETHODIMP CompoundsPart::GetPDependentPropList(VARIANT* props)
{
    return Call(L"GetPDependentPropList", [&] { Return(props, NamesOf(PressureFunctions())); });
}

STDMETHODIMP CompoundsPart::GetTDependentProperty(VARIANT props, double temperature, VARIANT compIds, VARIANT* propVals)
{
    return Call(L"GetTDependentProperty", [&] {
        CheckTemperature(temperature);
        Replace(propVals, Evaluate(model, TemperatureFunctions(), props, temperature, compIds));
    });
}

STDMETHODIMP CompoundsPart::GetTDependentPropList(VARIANT* props)
{
    return Call(L"GetTDependentPropList", [&] { Return(props, NamesOf(TemperatureFunctions())); });
}

STDMETHODIMP UniversalConstantPart::GetUniversalConstant(BSTR constantId, VARIANT* constantValue)
{
    return Call(L"GetUniversalConstant",
                [&] { Return(constantValue, _variant_t(FindUniversalConstant(TextOf(constantId)).value)); });
}

STDMETHODIMP UniversalConstantPart::GetUniversalConstantList(VARIANT* constantIds)
{
    return Call(L"GetUniversalConstantList", [&] { Return(constantIds, NamesOf(UniversalConstants())); });
}

}  // namespace zelt::sample
