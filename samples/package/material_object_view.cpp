#include "samples/package/material_object_view.h"

#include "samples/component/cape_failure.h"
#include "samples/component/variant.h"
#include "samples/package/words10.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kWho = L"Material object";

}  // namespace

MaterialObjectView::MaterialObjectView(IDispatch* object)
{
    if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(&material)))) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The material object does not implement ICapeThermoMaterialObject");
    }
}

std::vector<std::wstring> MaterialObjectView::CompoundIds() const
{
    _variant_t ids;
    CheckCall(material->get_ComponentIds(&ids), material.Get(), kWho);
    return ReadStrings(ids, L"compIds");
}

std::vector<std::wstring> MaterialObjectView::PhaseIds() const
{
    _variant_t ids;
    CheckCall(material->get_PhaseIds(&ids), material.Get(), kWho);
    return ReadStrings(ids, L"PhaseIds");
}

PhaseState MaterialObjectView::StateOf(const std::wstring& phase) const
{
    return {Single(L"temperature", kWhole, L""), Single(L"pressure", kWhole, L""), Fractions(phase)};
}

double MaterialObjectView::Single(const wchar_t* property, const std::wstring& phase, const wchar_t* basis) const
{
    const std::vector<double> values = Get(property, phase, kMixture, basis);
    if (values.size() != 1) {
        throw CapeFailure(ECapeDataHR,
                          std::wstring(L"The material object does not give exactly one value for ") + property);
    }
    return values.front();
}

// A composition is a property of the material's compounds, not of a mixture, so it has no calculation type.
std::vector<double> MaterialObjectView::Fractions(const std::wstring& phase) const
{
    return Get(L"fraction", phase, L"", L"mole");
}

std::vector<double> MaterialObjectView::Get(const wchar_t* property, const std::wstring& phase, const wchar_t* calcType,
                                            const wchar_t* basis) const
{
    _variant_t values;
    CheckCall(material->GetProp(MakeBstr(property).GetBSTR(), MakeBstr(phase).GetBSTR(), _variant_t(),
                                MakeBstr(calcType).GetBSTR(), MakeBstr(basis).GetBSTR(), &values),
              material.Get(), kWho);
    return ReadDoubles(values, L"results");
}

void MaterialObjectView::Set(const wchar_t* property, const std::wstring& phase, const wchar_t* calcType,
                             const wchar_t* basis, std::span<const double> values) const
{
    CheckCall(material->SetProp(MakeBstr(property).GetBSTR(), MakeBstr(phase).GetBSTR(), _variant_t(),
                                MakeBstr(calcType).GetBSTR(), MakeBstr(basis).GetBSTR(), MakeDoubles(values)),
              material.Get(), kWho);
}

}  // namespace zelt::sample
