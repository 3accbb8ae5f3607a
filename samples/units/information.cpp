#include "samples/units/information.h"

#include <wrl/client.h>

#include <cmath>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kPower = L"work";

// The collection's parameter with this name; null if there is none. Compares the name of each item, because a collection need
// not support access by name.
ComPtr<ICapeParameter> FindParameter(IDispatch* object, std::wstring_view name)
{
    ComPtr<ICapeCollection> collection;
    if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(&collection)))) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The stream is not a collection of parameters");
    }
    long count = 0;
    CheckCall(collection->Count(&count), collection.Get(), L"Count");
    for (long number = 1; number <= count; ++number) {
        ComPtr<IDispatch> item;
        CheckCall(collection->Item(_variant_t(number), &item), collection.Get(), L"Item");
        ComPtr<ICapeIdentification> identification;
        ComPtr<ICapeParameter> parameter;
        _bstr_t text;
        if (item && SUCCEEDED(item.As(&identification)) && SUCCEEDED(item.As(&parameter)) &&
            SUCCEEDED(identification->get_ComponentName(text.GetAddress())) && SameName(TextOf(text.GetBSTR()), name)) {
            return parameter;
        }
    }
    return nullptr;
}

}  // namespace

double PowerOf(IDispatch* energyStream)
{
    const ComPtr<ICapeParameter> parameter = FindParameter(energyStream, kPower);
    if (!parameter) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The energy stream has no parameter " + Quoted(kPower));
    }
    _variant_t value, number;
    CheckCall(parameter->get_value(&value), parameter.Get(), L"Energy stream");
    if (FAILED(VariantChangeTypeEx(&number, &value, LOCALE_INVARIANT, 0, VT_R8)) || !std::isfinite(V_R8(&number))) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The energy stream's " + Quoted(kPower) + L" is not a number");
    }
    return V_R8(&number);
}

void Tell(IDispatch* informationStream, const wchar_t* name, double value)
{
    const ComPtr<ICapeParameter> parameter = FindParameter(informationStream, name);
    if (parameter) CheckCall(parameter->put_value(_variant_t(value)), parameter.Get(), L"Information stream");
}

}  // namespace zelt::sample
