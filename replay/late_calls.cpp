#include "replay/late_calls.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "replay/values.h"
#include "system/narrow.h"

namespace zelt::replay {
namespace {

using com::DualMethod;
using com::DualParameter;
using recording::ArgumentRecord;

constexpr std::string_view kInterface = "IDispatch::";
constexpr std::string_view kResult = "result";

DualParameter& AddVariant(DualMethod& method, bool isOut)
{
    DualParameter& parameter = method.parameters.emplace_back();
    parameter.isIn = !isOut;
    parameter.isOut = isOut;
    parameter.type = VT_VARIANT;
    parameter.pointers = 1;
    parameter.size = sizeof(VARIANT);
    parameter.place = method.words++;
    return parameter;
}

// What Invoke gets and gives. Nothing here is owned.
struct Passed {
    std::vector<VARIANT> arguments;                       // the last one first
    std::vector<std::pair<VARIANT*, VARIANT*>> returned;  // an argument passed by reference, and its output
    VARIANT* result = nullptr;
};

Passed PassedOf(const DualMethod& method, VARIANT* const* cells)
{
    Passed passed;
    std::vector<const DualParameter*> inputs;
    for (const DualParameter& parameter : method.parameters) {
        if (!parameter.isOut) inputs.push_back(&parameter);
    }
    for (std::size_t i = inputs.size(); i-- > 0;) passed.arguments.push_back(*cells[inputs[i]->place]);
    for (const DualParameter& output : method.parameters) {
        if (!output.isOut) continue;
        if (output.name == kResult) passed.result = cells[output.place];
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            if (inputs[i]->name != output.name) continue;
            VARIANT* const value = cells[inputs[i]->place];
            VARIANT& argument = passed.arguments[inputs.size() - 1 - i];
            const bool isTyped = output.isIn && value->vt != VT_EMPTY && value->vt != VT_DECIMAL;
            argument.vt = VT_BYREF | (isTyped ? value->vt : static_cast<VARTYPE>(VT_VARIANT));
            argument.byref = isTyped ? static_cast<void*>(&value->llVal) : value;
            passed.returned.emplace_back(value, cells[output.place]);
        }
    }
    return passed;
}

// Whether an argument that came back had the type that it was passed with. The recording does not say to what the caller's
// reference pointed: if the type is the same, it was probably a variable of this type, otherwise it must have been a VARIANT.
bool KeepsType(const recording::KeptCall& call, const ArgumentRecord& output)
{
    return std::any_of(call.arguments.begin(), call.arguments.end(), [&](const ArgumentRecord& argument) {
        return !argument.isOut && argument.name == output.name && argument.value.type == output.value.type;
    });
}

HRESULT CodeOf(EXCEPINFO& exception)
{
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
    return exception.scode != 0 ? exception.scode : DISP_E_EXCEPTION;
}

HRESULT Invoke(IDispatch& object, DISPID id, WORD flags, Passed& passed)
{
    const bool sets = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPID newValue = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {passed.arguments.data(), sets ? &newValue : nullptr,
                             static_cast<UINT>(passed.arguments.size()), sets ? 1u : 0u};
    // A call that failed has no result in the recording, although its caller may have asked for one.
    VARIANT unwanted;
    VariantInit(&unwanted);
    VARIANT* const result = passed.result || sets ? passed.result : &unwanted;
    EXCEPINFO exception = {};
    const HRESULT invoked =
        object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, &exception, nullptr);
    VariantClear(&unwanted);
    return invoked == DISP_E_EXCEPTION ? CodeOf(exception) : invoked;
}

// Puts `value` where `reference` points, in place of what was there. The reference then owns what `value` owned.
HRESULT PutWhere(const VARIANT& reference, VARIANT& value)
{
    DualParameter place;
    place.type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
    if (place.type == VT_VARIANT) {
        Free(place, reference.pvarVal);
        *reference.pvarVal = value;
        VariantInit(&value);
        return S_OK;
    }
    const HRESULT changed = VariantChangeType(&value, &value, 0, place.type);
    if (FAILED(changed)) return changed;
    if (place.type & VT_ARRAY) {
        SafeArrayDestroy(*reference.pparray);
        *reference.pparray = value.parray;
    } else if (place.type == VT_DECIMAL) {
        *reference.pdecVal = value.decVal;
    } else {
        const SAFEARRAY* const sized = SafeArrayCreateVector(place.type, 0, 0);
        if (!sized) return DISP_E_BADVARTYPE;
        const std::size_t size = sized->cbElements;
        SafeArrayDestroy(const_cast<SAFEARRAY*>(sized));
        Free(place, reference.byref);
        std::memcpy(reference.byref, &value.llVal, size);
    }
    VariantInit(&value);
    return S_OK;
}

}  // namespace

bool IsLate(std::string_view member) { return member.starts_with(kInterface); }

bool IsUseOf(std::string_view member, std::wstring_view name)
{
    const std::vector<com::LateUse> uses = com::UsesOf(Widen(member));
    return std::any_of(uses.begin(), uses.end(),
                       [&](const com::LateUse& use) { return com::IsSameMemberName(use.member.name, name); });
}

std::shared_ptr<const com::DualInterface> LateInterface(const recording::KeptCall& call)
{
    auto made = std::make_shared<com::DualInterface>();
    made->iid = IID_IDispatch;
    DualMethod& method = made->methods.emplace_back();
    method.name = call.call.member;
    for (const ArgumentRecord& argument : call.arguments) {
        DualParameter& parameter = AddVariant(method, argument.isOut);
        parameter.name = argument.name;
        if (argument.isOut) parameter.isIn = KeepsType(call, argument);
    }
    return made;
}

HRESULT CallLate(IDispatch& object, const DualMethod& method, const void* words)
{
    Passed passed = PassedOf(method, static_cast<VARIANT* const*>(words));
    HRESULT result = DISP_E_UNKNOWNNAME;
    for (const com::LateUse& use : com::UsesOf(Widen(method.name))) {
        DISPID id = use.member.standard;
        auto* name = const_cast<wchar_t*>(use.member.name.c_str());
        if (id == DISPID_UNKNOWN) {
            result = object.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
            if (FAILED(result)) continue;
        }
        result = Invoke(object, id, use.flags, passed);
        break;
    }
    for (const auto& [value, output] : passed.returned) std::swap(*value, *output);
    return result;
}

LateCall::LateCall(const com::LateMember& member, WORD flags, const DISPPARAMS* parameters, VARIANT* result)
    : result(result)
{
    method.name = Narrow(com::NameOfUse(member, flags));
    const UINT count = parameters ? parameters->cArgs : 0;
    for (UINT i = count; i-- > 0;) {
        const VARIANT& argument = parameters->rgvarg[i];
        VariantCopyInd(&Add(false), const_cast<VARIANT*>(&argument));
        if ((argument.vt & VT_BYREF) && argument.byref) references.push_back(&argument);
    }
    for (std::size_t i = 0; i < references.size(); ++i) Add(true);
    if (result) Add(true);
}

LateCall::~LateCall()
{
    for (const auto& cell : cells) VariantClear(cell.get());
}

VARIANT& LateCall::Add(bool isOut)
{
    AddVariant(method, isOut);
    cells.push_back(std::make_unique<VARIANT>());
    VariantInit(cells.back().get());
    words.push_back(cells.back().get());
    return *cells.back();
}

HRESULT LateCall::GiveOutputs()
{
    const std::size_t first = cells.size() - references.size() - (result ? 1 : 0);
    for (std::size_t i = 0; i < references.size(); ++i) {
        const HRESULT put = PutWhere(*references[i], *cells[first + i]);
        if (FAILED(put)) return put;
    }
    if (result) std::swap(*result, *cells.back());
    return S_OK;
}

HRESULT ThrownAs(HRESULT failure, EXCEPINFO* exception)
{
    if (!exception) return DISP_E_EXCEPTION;
    *exception = {};
    exception->scode = failure;
    Microsoft::WRL::ComPtr<IErrorInfo> information;
    if (GetErrorInfo(0, &information) == S_OK) information->GetDescription(&exception->bstrDescription);
    return DISP_E_EXCEPTION;
}

}  // namespace zelt::replay
