#include "method_call.h"

#include <oleauto.h>

#include <cstring>
#include <stdexcept>
#include <vector>

namespace zelt::test {

MethodCall::MethodCall(const MethodShape& method, const TableRow& row, Filling filling, IDispatch* object)
    : method(method)
{
    const auto steps = row.Arguments();
    if (steps.size() != method.parameters.size()) throw std::runtime_error(row.Key() + " has other arguments");
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const ParameterShape& shape = method.parameters[i];
        if (LibraryType(steps[i]->type) != shape.type) {
            throw std::runtime_error(row.Key() + ": " + steps[i]->name + " is of another type");
        }
        Argument& argument = arguments.emplace_back();
        argument.shape = &shape;
        std::memset(&argument.storage, 0, sizeof argument.storage);
        if (shape.isOut) continue;
        _variant_t sample = SampleValue(*steps[i], i, filling, object);
        argument.value.Attach(sample);
        // `argument.value` still owns a value that is passed in through a pointer.
        if (shape.isReference) {
            const VARIANT& lent = argument.value;
            if (shape.type == VT_VARIANT) {
                argument.storage.variant = lent;
            } else {
                std::memcpy(&argument.storage, &lent.llVal, sizeof lent.llVal);
            }
        }
    }
}

MethodCall::~MethodCall()
{
    for (Argument& argument : arguments) {
        if (!OwnsStorage(argument)) continue;
        VARIANT left;
        VariantInit(&left);
        if (argument.shape->type == VT_VARIANT) {
            left = argument.storage.variant;
        } else {
            left.vt = argument.shape->type;
            std::memcpy(&left.lVal, &argument.storage, sizeof(double));
        }
        VariantClear(&left);
    }
}

void MethodCall::PassNullSlots()
{
    for (Argument& argument : arguments) {
        argument.isNullReference = argument.shape->isReference && !argument.shape->isOut;
    }
}

void* MethodCall::Reference(std::size_t index) const
{
    const Argument& argument = arguments[index];
    return argument.isNullReference ? nullptr : const_cast<Storage*>(&argument.storage);
}

HRESULT MethodCall::CallEarly(IUnknown* pointer)
{
    std::vector<VARTYPE> types;
    std::vector<VARIANT> references(arguments.size());
    std::vector<VARIANT*> values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        Argument& argument = arguments[i];
        if (argument.shape->isReference) {
            references[i].vt = VT_BYREF | VT_VARIANT;
            references[i].byref = Reference(i);
            types.push_back(references[i].vt);
            values.push_back(&references[i]);
        } else {
            types.push_back(argument.shape->type);
            values.push_back(&argument.value);
        }
    }
    VARIANT result;
    VariantInit(&result);
    const HRESULT called = DispCallFunc(pointer, method.slot * sizeof(void*), CC_STDCALL, VT_I4,
                                        static_cast<UINT>(types.size()), types.data(), values.data(), &result);
    return FAILED(called) ? called : static_cast<HRESULT>(result.lVal);
}

HRESULT MethodCall::CallLate(IDispatch* pointer)
{
    std::vector<VARIANT> passed;  // the last argument comes first
    VARIANT* result = nullptr;
    _variant_t returned;
    Argument* receiver = nullptr;
    for (std::size_t i = arguments.size(); i-- > 0;) {
        Argument& argument = arguments[i];
        if (argument.shape->isResult) {
            result = &returned;
            receiver = &argument;
            continue;
        }
        VARIANT value = argument.value;
        if (argument.shape->isReference) {
            value.vt = static_cast<VARTYPE>(VT_BYREF | argument.shape->type);
            value.byref = Reference(i);
        }
        passed.push_back(value);
    }
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
    if (method.kind == INVOKE_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    EXCEPINFO exception = {};
    const HRESULT called = pointer->Invoke(method.id, IID_NULL, LOCALE_NEUTRAL, static_cast<WORD>(method.kind),
                                           &parameters, result, &exception, nullptr);
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) _bstr_t(text, false);
    if (FAILED(called)) return called == DISP_E_EXCEPTION ? exception.scode : called;
    if (!receiver) return called;
    if (receiver->shape->type != VT_VARIANT && returned.vt != receiver->shape->type) return DISP_E_TYPEMISMATCH;
    StoreValue(&receiver->storage, receiver->shape->type, returned);
    return called;
}

_variant_t MethodCall::Value(std::size_t index) const
{
    const Argument& argument = arguments[index];
    if (!argument.shape->isReference) return CopyOf(argument.value);
    return LoadValue(&argument.storage, argument.shape->type);
}

std::string MethodCall::Bytes(std::size_t index) const
{
    const Argument& argument = arguments[index];
    if (argument.shape->isReference) {
        void* reference = Reference(index);
        return std::string(reinterpret_cast<const char*>(&reference), sizeof reference);
    }
    const VARIANT& value = argument.value;
    const void* bytes = argument.shape->type == VT_VARIANT ? static_cast<const void*>(&value) : &value.lVal;
    return std::string(static_cast<const char*>(bytes), argument.shape->Size());
}

}  // namespace zelt::test
