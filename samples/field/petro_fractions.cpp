#include "samples/field/petro_fractions.h"

#include <wrl/client.h>

#include "samples/component/text.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kBoilingPoint = L"boilingpoint";

CapeFailure Missing(std::wstring_view name)
{
    return {ECapeThrmPropertyNotAvailableHR, L"There is no petroleum property " + Quoted(name)};
}

}  // namespace

STDMETHODIMP PetroFractionsPart::SetPetroProp(BSTR propertyID, VARIANT, BSTR, VARIANT values)
{
    return Call(L"SetPetroProp", [&] { properties[Lower(TextOf(propertyID))] = ReadDoubles(values, L"values"); });
}

STDMETHODIMP PetroFractionsPart::GetPetroProp(BSTR propertyID, VARIANT, BSTR, VARIANT* values)
{
    return Call(L"GetPetroProp", [&] {
        const auto found = properties.find(Lower(TextOf(propertyID)));
        if (found == properties.end()) throw Missing(TextOf(propertyID));
        Return(values, MakeDoubles(found->second));
    });
}

STDMETHODIMP PetroFractionsPart::Characterize()
{
    return Call(L"Characterize", [&] {
        if (properties.contains(kBoilingPoint)) return;
        CapeFailure failure(ECapeBadInvOrderHR, L"Without boiling points there is nothing to characterize");
        failure.requestedOperation = L"SetPetroProp";
        throw failure;
    });
}

STDMETHODIMP PetroFractionsPart::RemovePetroProp(BSTR propertyID, VARIANT)
{
    return Call(L"RemovePetroProp", [&] {
        if (properties.erase(Lower(TextOf(propertyID))) == 0) throw Missing(TextOf(propertyID));
    });
}

STDMETHODIMP PetroFractionsPart::DefineFromPetroFractions(IDispatch* originFractionsSet)
{
    return Call(L"DefineFromPetroFractions", [&] {
        Microsoft::WRL::ComPtr<ICapeThermoPetroFractions> origin;
        if (!originFractionsSet || FAILED(originFractionsSet->QueryInterface(IID_PPV_ARGS(&origin)))) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"The origin has no petroleum fractions");
        }
        _variant_t values;
        CheckCall(
            origin->GetPetroProp(MakeBstr(kBoilingPoint).GetBSTR(), _variant_t(), MakeBstr(L"").GetBSTR(), &values),
            origin.Get(), L"Origin");
        properties[kBoilingPoint] = ReadDoubles(values, L"values");
    });
}

}  // namespace zelt::sample
