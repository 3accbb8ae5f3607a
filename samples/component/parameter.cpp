#include "samples/component/parameter.h"

#include "samples/component/cape_failure.h"
#include "samples/component/parameter_objects.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kTypeNames[] = {L"a real number", L"an integer", L"a text", L"a boolean", L"a list"};
constexpr VARTYPE kVariantTypes[] = {VT_R8, VT_I4, VT_BSTR, VT_BOOL, VT_ARRAY | VT_R8};

std::wstring Outside(const std::wstring& value, const std::wstring& lower, const std::wstring& upper)
{
    return value + L" is not between " + lower + L" and " + upper;
}

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

}  // namespace

// The alternatives of Specification are in the order of the standard's enumeration.
eCapeParamType TypeOf(const Specification& specification) { return static_cast<eCapeParamType>(specification.index()); }

_variant_t InitialValue(const Specification& specification)
{
    return std::visit(Overloaded{[](const RealSpecification& s) { return _variant_t(s.initial); },
                                 [](const IntegerSpecification& s) { return _variant_t(s.initial); },
                                 [](const OptionSpecification& s) { return MakeText(s.initial); },
                                 [](const BooleanSpecification& s) { return _variant_t(s.initial); },
                                 [](const ArraySpecification& s) {
                                     std::vector<double> values;
                                     for (const RealSpecification& item : s.items) values.push_back(item.initial);
                                     return MakeDoubles(values);
                                 }},
                      specification);
}

_variant_t ConvertValue(const Specification& specification, const VARIANT& value)
{
    if (std::holds_alternative<ArraySpecification>(specification)) return MakeDoubles(ReadDoubles(value, L"value"));
    _variant_t result;
    if (FAILED(VariantChangeTypeEx(&result, const_cast<VARIANT*>(&value), LOCALE_INVARIANT, 0,
                                   kVariantTypes[specification.index()]))) {
        throw CapeFailure(ECapeInvalidArgumentHR,
                          std::wstring(L"The value must be ") + kTypeNames[specification.index()]);
    }
    return result;
}

std::wstring ObjectionTo(const RealSpecification& specification, double value)
{
    // Written so that NaN is refused too.
    if (value >= specification.lower && value <= specification.upper) return {};
    return Outside(NumberText(value), NumberText(specification.lower), NumberText(specification.upper));
}

std::wstring ObjectionTo(const IntegerSpecification& specification, long value)
{
    if (value >= specification.lower && value <= specification.upper) return {};
    return Outside(std::to_wstring(value), std::to_wstring(specification.lower), std::to_wstring(specification.upper));
}

std::wstring ObjectionTo(const OptionSpecification& specification, std::wstring_view value)
{
    if (!specification.restricted) return {};
    for (const std::wstring& option : specification.options) {
        if (SameName(option, value)) return {};
    }
    return Quoted(value) + L" is not one of the options";
}

std::wstring ObjectionTo(const Specification& specification, const VARIANT& value)
{
    const _variant_t converted = ConvertValue(specification, value);
    return std::visit(
        Overloaded{[&](const RealSpecification& s) { return ObjectionTo(s, V_R8(&converted)); },
                   [&](const IntegerSpecification& s) { return ObjectionTo(s, V_I4(&converted)); },
                   [&](const OptionSpecification& s) { return ObjectionTo(s, TextOf(V_BSTR(&converted))); },
                   [](const BooleanSpecification&) { return std::wstring(); },
                   [&](const ArraySpecification& s) {
                       const std::vector<double> values = ReadDoubles(converted, L"value");
                       if (values.size() != s.items.size()) {
                           return std::to_wstring(s.items.size()) + L" values are needed, not " +
                                  std::to_wstring(values.size());
                       }
                       for (std::size_t i = 0; i < values.size(); ++i) {
                           const std::wstring objection = ObjectionTo(s.items[i], values[i]);
                           if (!objection.empty()) return L"value " + std::to_wstring(i + 1) + L": " + objection;
                       }
                       return std::wstring();
                   }},
        specification);
}

ParameterSet::ParameterSet(std::vector<ParameterDefinition> definitions)
{
    for (ParameterDefinition& definition : definitions) {
        auto state = std::make_shared<ParameterState>();
        state->value = InitialValue(definition.specification);
        state->definition = std::move(definition);
        objects.push_back(CreateParameter(state));
        states.push_back(std::move(state));
    }
}

const VARIANT& ParameterSet::ValidValue(std::wstring_view name) const
{
    for (const auto& state : states) {
        if (!SameName(state->definition.name, name)) continue;
        const std::wstring objection = ObjectionTo(state->definition.specification, state->value);
        if (!objection.empty()) {
            throw CapeFailure(ECapeInvalidOperationHR, L"Parameter " + Quoted(name) + L": " + objection);
        }
        return state->value;
    }
    throw CapeFailure(ECapeImplementationHR, L"There is no parameter " + Quoted(name));
}

double ParameterSet::Real(std::wstring_view name) const { return V_R8(&ValidValue(name)); }
long ParameterSet::Integer(std::wstring_view name) const { return V_I4(&ValidValue(name)); }
std::wstring ParameterSet::Option(std::wstring_view name) const
{
    return std::wstring(TextOf(V_BSTR(&ValidValue(name))));
}
bool ParameterSet::Boolean(std::wstring_view name) const { return V_BOOL(&ValidValue(name)) != VARIANT_FALSE; }
std::vector<double> ParameterSet::Array(std::wstring_view name) const
{
    return ReadDoubles(ValidValue(name), L"value");
}

Microsoft::WRL::ComPtr<IDispatch> ParameterSet::Collection(std::wstring name) const
{
    return CreateCollection(std::move(name), objects);
}

}  // namespace zelt::sample
