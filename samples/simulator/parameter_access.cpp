#include "samples/simulator/parameter_access.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {

using Microsoft::WRL::ComPtr;

std::wstring ValueText(const VARIANT& value)
{
    if (V_VT(&value) & VT_ARRAY) {
        std::wstring text;
        for (const double number : ReadDoubles(value, L"value"))
            text += (text.empty() ? L"" : L", ") + NumberText(number);
        return text;
    }
    if (V_VT(&value) == VT_R8) return NumberText(V_R8(&value));
    if (V_VT(&value) == VT_BOOL) return V_BOOL(&value) ? L"true" : L"false";
    _variant_t text;
    if (FAILED(VariantChangeTypeEx(&text, const_cast<VARIANT*>(&value), LOCALE_INVARIANT, 0, VT_BSTR))) return L"?";
    return std::wstring(TextOf(V_BSTR(&text)));
}

_variant_t ValueOf(ICapeParameter* parameter)
{
    _variant_t value;
    CheckCall(parameter->get_value(&value), parameter, L"get_value");
    return value;
}

ComPtr<IDispatch> ItemOf(ICapeCollection* collection, long number)
{
    ComPtr<IDispatch> item;
    CheckCall(collection->Item(_variant_t(number), &item), collection, L"Item");
    if (!item) throw CapeFailure(ECapeUnknownHR, L"A collection gives no item");
    return item;
}

}  // namespace zelt::sample
