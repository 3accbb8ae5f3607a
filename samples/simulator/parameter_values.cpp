#include "samples/simulator/parameter_values.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/parameter_access.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

std::wstring NameOfItem(IDispatch* item)
{
    const auto identification = Required<ICapeIdentification>(item, L"ICapeIdentification");
    _bstr_t name;
    CheckCall(identification->get_ComponentName(name.GetAddress()), identification.Get(), L"get_ComponentName");
    return std::wstring(TextOf(name.GetBSTR()));
}

ComPtr<IDispatch> SpecificationOf(ICapeParameter* parameter)
{
    ComPtr<IDispatch> specification;
    CheckCall(parameter->get_Specification(&specification), parameter, L"get_Specification");
    return specification;
}

eCapeParamType TypeOf(IDispatch* specification)
{
    const auto spec = Required<ICapeParameterSpec>(specification, L"ICapeParameterSpec");
    return Ask(spec.Get(), &ICapeParameterSpec::get_Type, L"get_Type");
}

double NumberFrom(const std::wstring& text)
{
    _variant_t number, source = MakeText(text);
    if (FAILED(VariantChangeTypeEx(&number, &source, LOCALE_INVARIANT, 0, VT_R8))) {
        throw CapeFailure(ECapeInvalidArgumentHR, Quoted(text) + L" is no number");
    }
    return V_R8(&number);
}

_variant_t ValueFrom(eCapeParamType type, const std::wstring& text)
{
    if (type == CAPE_OPTION) return MakeText(text);
    if (type == CAPE_BOOLEAN) {
        if (SameName(text, L"true") || SameName(text, L"false")) return _variant_t(SameName(text, L"true"));
        throw CapeFailure(ECapeInvalidArgumentHR, Quoted(text) + L" is neither true nor false");
    }
    if (type == CAPE_ARRAY) {
        std::vector<double> values;
        for (std::size_t start = 0; start <= text.size();) {
            const std::size_t end = std::min(text.find(L';', start), text.size());
            values.push_back(NumberFrom(text.substr(start, end - start)));
            start = end + 1;
        }
        return MakeDoubles(values);
    }
    const double number = NumberFrom(text);
    if (type != CAPE_INT) return _variant_t(number);
    const double whole = std::nearbyint(number);
    if (whole != number || std::fabs(whole) > std::numeric_limits<long>::max()) {
        throw CapeFailure(ECapeInvalidArgumentHR, Quoted(text) + L" is no integer");
    }
    return _variant_t(static_cast<long>(whole));
}

}  // namespace

void ShowValues(IDispatch* object, Report& report)
{
    const auto collection = Required<ICapeCollection>(object, L"ICapeCollection");
    const long count = Ask(collection.Get(), &ICapeCollection::Count, L"Count");
    for (long number = 1; number <= count; ++number) {
        const ComPtr<IDispatch> item = ItemOf(collection.Get(), number);
        report.Line(NameOfItem(item.Get()) + L": " +
                    ValueText(ValueOf(Required<ICapeParameter>(item.Get(), L"ICapeParameter").Get())));
    }
}

void SetParameter(IDispatch* object, const std::wstring& name, const std::wstring& text)
{
    const auto collection = Required<ICapeCollection>(object, L"ICapeCollection");
    ComPtr<IDispatch> item;
    CheckCall(collection->Item(MakeText(name), &item), collection.Get(), (L"Parameter " + Quoted(name)).c_str());
    const auto parameter = Required<ICapeParameter>(item.Get(), L"ICapeParameter");
    const eCapeParamType type = TypeOf(SpecificationOf(parameter.Get()).Get());
    CheckCall(parameter->put_value(ValueFrom(type, text)), parameter.Get(), L"put_value");
}

WrongValue::WrongValue(IDispatch* object)
{
    const auto collection = Required<ICapeCollection>(object, L"ICapeCollection");
    const long count = Ask(collection.Get(), &ICapeCollection::Count, L"Count");
    for (long number = 1; number <= count; ++number) {
        const auto candidate = Required<ICapeParameter>(ItemOf(collection.Get(), number).Get(), L"ICapeParameter");
        const ComPtr<IDispatch> specification = SpecificationOf(candidate.Get());
        if (TypeOf(specification.Get()) != CAPE_REAL) continue;
        former = ValueOf(candidate.Get());
        const auto real = Required<ICapeRealParameterSpec>(specification.Get(), L"ICapeRealParameterSpec");
        const double upper = Ask(real.Get(), &ICapeRealParameterSpec::get_UpperBound, L"get_UpperBound");
        const _variant_t wrong(upper + std::fabs(upper) + 1);
        CheckCall(candidate->put_value(wrong), candidate.Get(), L"put_value");
        parameter = candidate;
        return;
    }
}

WrongValue::~WrongValue()
{
    if (parameter) parameter->put_value(former);
}

}  // namespace zelt::sample
