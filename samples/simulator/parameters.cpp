#include "samples/simulator/parameters.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/parameter_access.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kTypeNames[] = {L"real", L"integer", L"option", L"boolean", L"list"};
constexpr const wchar_t* kStatusNames[] = {L"not validated", L"invalid", L"valid"};
constexpr const wchar_t* kModeNames[] = {L"input", L"output", L"input and output"};

template <std::size_t N>
std::wstring NameOf(const wchar_t* const (&names)[N], int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < N ? names[index] : L"unknown";
}

// What a walk needs from one specification: its text, a legal value, and an illegal value, if there is any.
struct Trial {
    std::wstring range;     // the first part of the text
    std::wstring verdicts;  // the second part
    _variant_t legal;
    _variant_t wrong;
};

std::wstring Verdict(const _bstr_t& message, VARIANT_BOOL isOK)
{
    const std::wstring text = message.length() ? std::wstring(static_cast<const wchar_t*>(message)) : std::wstring();
    return std::wstring(isOK ? L"accepted" : L"refused") + (text.empty() ? L"" : L": " + text);
}

// Lets the typed interface validate a value whose verdict is known.
template <class I, class T>
std::wstring Judge(I* spec, T value, bool expected)
{
    _bstr_t message;
    VARIANT_BOOL isOK = VARIANT_FALSE;
    CheckCall(spec->Validate(value, message.GetAddress(), &isOK), spec, L"Validate");
    if ((isOK != VARIANT_FALSE) != expected) {
        throw CapeFailure(ECapeUnknownHR, L"A specification misjudges a value");
    }
    return Verdict(message, isOK);
}

Trial WalkReal(ICapeRealParameterSpec* spec)
{
    const double initial = Ask(spec, &ICapeRealParameterSpec::get_DefaultValue, L"get_DefaultValue");
    const double lower = Ask(spec, &ICapeRealParameterSpec::get_LowerBound, L"get_LowerBound");
    const double upper = Ask(spec, &ICapeRealParameterSpec::get_UpperBound, L"get_UpperBound");
    const double legal = 0.25 * lower + 0.75 * upper, wrong = upper + std::fabs(upper) + 1;
    return {NumberText(lower) + L" to " + NumberText(upper) + L", " + NumberText(initial) + L" by default",
            Judge(spec, legal, true) + L"; " + Judge(spec, wrong, false), _variant_t(legal), _variant_t(wrong)};
}

Trial WalkInteger(ICapeIntegerParameterSpec* spec)
{
    const long initial = Ask(spec, &ICapeIntegerParameterSpec::get_DefaultValue, L"get_DefaultValue");
    const long lower = Ask(spec, &ICapeIntegerParameterSpec::get_LowerBound, L"get_LowerBound");
    const long upper = Ask(spec, &ICapeIntegerParameterSpec::get_UpperBound, L"get_UpperBound");
    Trial trial{
        std::to_wstring(lower) + L" to " + std::to_wstring(upper) + L", " + std::to_wstring(initial) + L" by default",
        Judge(spec, upper, true), _variant_t(upper), _variant_t()};
    if (upper == std::numeric_limits<long>::max()) return trial;
    trial.wrong = _variant_t(upper + 1);
    trial.verdicts += L"; " + Judge(spec, upper + 1, false);
    return trial;
}

Trial WalkOption(ICapeOptionParameterSpec* spec)
{
    _bstr_t initial;
    _variant_t list;
    CheckCall(spec->get_DefaultValue(initial.GetAddress()), spec, L"get_DefaultValue");
    CheckCall(spec->get_OptionList(&list), spec, L"get_OptionList");
    const bool restricted = Ask(spec, &ICapeOptionParameterSpec::get_RestrictedToList, L"get_RestrictedToList") != 0;
    const std::vector<std::wstring> options = ReadStrings(list, L"optionNames");
    const std::wstring byDefault(TextOf(initial.GetBSTR()));
    Trial trial;
    for (const std::wstring& option : options) trial.range += (trial.range.empty() ? L"" : L" | ") + option;
    trial.range += (restricted ? L", no others, " : L", or others, ") + byDefault + L" by default";
    trial.legal = MakeText(options.empty() ? byDefault : options.back());
    trial.verdicts = Judge(spec, V_BSTR(&trial.legal), true);
    if (!restricted) return trial;
    trial.wrong = MakeText(L"something else");
    trial.verdicts += L"; " + Judge(spec, V_BSTR(&trial.wrong), false);
    return trial;
}

Trial WalkBoolean(ICapeBooleanParameterSpec* spec)
{
    const bool initial = Ask(spec, &ICapeBooleanParameterSpec::get_DefaultValue, L"get_DefaultValue") != VARIANT_FALSE;
    return {std::wstring(initial ? L"true" : L"false") + L" by default",
            Judge(spec, static_cast<VARIANT_BOOL>(initial ? VARIANT_FALSE : VARIANT_TRUE), true), _variant_t(!initial),
            _variant_t()};
}

Trial WalkArray(ICapeArrayParameterSpec* spec)
{
    _variant_t size, specs;
    const long dimensions = Ask(spec, &ICapeArrayParameterSpec::get_NumDimensions, L"get_NumDimensions");
    CheckCall(spec->get_Size(&size), spec, L"get_Size");
    CheckCall(spec->get_ItemsSpecifications(&specs), spec, L"get_ItemsSpecifications");
    const std::vector<long> lengths = ReadLongs(size, L"Size");
    const std::vector<ComPtr<IDispatch>> items = ReadInterfaces(specs, L"specs");
    if (dimensions != 1 || lengths.size() != 1 || static_cast<std::size_t>(lengths[0]) != items.size()) {
        throw CapeFailure(ECapeLimitedImplHR, L"A parameter of this shape is not understood");
    }
    Trial trial;
    std::vector<double> legal, wrong;
    for (const ComPtr<IDispatch>& item : items) {
        const auto real = Required<ICapeRealParameterSpec>(item.Get(), L"ICapeRealParameterSpec");
        const Trial inner = WalkReal(real.Get());
        trial.range += (trial.range.empty() ? L"" : L" / ") + inner.range;
        legal.push_back(V_R8(&inner.legal));
        wrong.push_back(V_R8(&inner.wrong));
    }
    trial.legal = MakeDoubles(legal);
    trial.wrong = MakeDoubles(wrong);
    for (const auto& [values, expected] : {std::pair(&trial.legal, true), std::pair(&trial.wrong, false)}) {
        _variant_t messages, verdicts;
        CheckCall(spec->Validate(*values, &messages, &verdicts), spec, L"Validate");
        const std::vector<bool> judged = ReadBooleans(verdicts, L"isOK");
        if (ReadStrings(messages, L"message").size() != items.size() ||
            judged != std::vector<bool>(items.size(), expected)) {
            throw CapeFailure(ECapeUnknownHR, L"A specification misjudges a list");
        }
    }
    trial.verdicts = L"accepted; refused";
    return trial;
}

Trial WalkSpecification(IDispatch* object, int type)
{
    switch (type) {
        case CAPE_REAL: return WalkReal(Required<ICapeRealParameterSpec>(object, L"ICapeRealParameterSpec").Get());
        case CAPE_INT:
            return WalkInteger(Required<ICapeIntegerParameterSpec>(object, L"ICapeIntegerParameterSpec").Get());
        case CAPE_OPTION:
            return WalkOption(Required<ICapeOptionParameterSpec>(object, L"ICapeOptionParameterSpec").Get());
        case CAPE_BOOLEAN:
            return WalkBoolean(Required<ICapeBooleanParameterSpec>(object, L"ICapeBooleanParameterSpec").Get());
        case CAPE_ARRAY: return WalkArray(Required<ICapeArrayParameterSpec>(object, L"ICapeArrayParameterSpec").Get());
        default: throw CapeFailure(ECapeUnknownHR, L"A parameter has no known type");
    }
}

std::wstring ValidateParameter(ICapeParameter* parameter, bool expected)
{
    _bstr_t message;
    VARIANT_BOOL isOK = VARIANT_FALSE;
    CheckCall(parameter->Validate(message.GetAddress(), &isOK), parameter, L"Validate");
    if ((isOK != VARIANT_FALSE) != expected) throw CapeFailure(ECapeUnknownHR, L"A parameter misjudges its value");
    const eCapeValidationStatus status = Ask(parameter, &ICapeParameter::get_ValStatus, L"get_ValStatus");
    if (status != (expected ? CAPE_VALID : CAPE_INVALID)) {
        throw CapeFailure(ECapeUnknownHR, L"A parameter's status is not what Validate says");
    }
    return Verdict(message, isOK);
}

void WalkParameter(IDispatch* object, Report& report)
{
    const auto parameter = Required<ICapeParameter>(object, L"ICapeParameter");
    const auto identification = Required<ICapeIdentification>(object, L"ICapeIdentification");
    _bstr_t name;
    CheckCall(identification->get_ComponentName(name.GetAddress()), identification.Get(), L"get_ComponentName");

    ComPtr<IDispatch> specification;
    CheckCall(parameter->get_Specification(&specification), parameter.Get(), L"get_Specification");
    const auto spec = Required<ICapeParameterSpec>(specification.Get(), L"ICapeParameterSpec");
    const eCapeParamType type = Ask(spec.Get(), &ICapeParameterSpec::get_Type, L"get_Type");
    _variant_t dimensionality;
    CheckCall(spec->get_Dimensionality(&dimensionality), spec.Get(), L"get_Dimensionality");
    ReadDoubles(dimensionality, L"dim");

    const eCapeParamMode mode = Ask(parameter.Get(), &ICapeParameter::get_Mode, L"get_Mode");
    const eCapeValidationStatus status = Ask(parameter.Get(), &ICapeParameter::get_ValStatus, L"get_ValStatus");
    const _variant_t initial = ValueOf(parameter.Get());
    const Trial trial = WalkSpecification(specification.Get(), type);
    report.Line(std::wstring(TextOf(name.GetBSTR())) + L": " + NameOf(kTypeNames, type) + L", " +
                NameOf(kModeNames, mode) + L", " + NameOf(kStatusNames, status) + L", " + ValueText(initial));
    report.Line(L"    " + trial.range + L"; " + trial.verdicts);

    CheckCall(parameter->put_Mode(mode), parameter.Get(), L"put_Mode");
    CheckCall(parameter->put_value(trial.legal), parameter.Get(), L"put_value");
    std::wstring text = L"    set to " + ValueText(ValueOf(parameter.Get())) + L": ";
    text += ValidateParameter(parameter.Get(), true);
    if (V_VT(&trial.wrong) != VT_EMPTY) {
        CheckCall(parameter->put_value(trial.wrong), parameter.Get(), L"put_value");
        text += L"; to " + ValueText(ValueOf(parameter.Get())) + L": " + ValidateParameter(parameter.Get(), false);
    }
    CheckCall(parameter->Reset(), parameter.Get(), L"Reset");
    report.Line(text + L"; reset to " + ValueText(ValueOf(parameter.Get())));
}

}  // namespace

void WalkParameters(IDispatch* object, Report& report)
{
    const auto collection = Required<ICapeCollection>(object, L"ICapeCollection");
    const long count = Ask(collection.Get(), &ICapeCollection::Count, L"Count");
    for (long number = 1; number <= count; ++number) WalkParameter(ItemOf(collection.Get(), number).Get(), report);
}

std::vector<ComPtr<IDispatch>> FirstParameter(IDispatch* object)
{
    const auto collection = Required<ICapeCollection>(object, L"ICapeCollection");
    if (Ask(collection.Get(), &ICapeCollection::Count, L"Count") < 1) return {};
    const ComPtr<IDispatch> item = ItemOf(collection.Get(), 1);
    ComPtr<IDispatch> specification;
    const auto parameter = Required<ICapeParameter>(item.Get(), L"ICapeParameter");
    CheckCall(parameter->get_Specification(&specification), parameter.Get(), L"get_Specification");
    return {item, specification};
}

}  // namespace zelt::sample
