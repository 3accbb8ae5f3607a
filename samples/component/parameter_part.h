// ICapeParameter around a state that the parameter shares with its component. The specification is a separate object; a
// derived class can make the parameter its own specification.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/component/parameter_objects.h"
#include "samples/component/variant.h"

namespace zelt::sample {

class ParameterPart : public CapePart<ICapeParameter> {
public:
    ParameterPart(com::Object& object, CapeErrors& errors, std::shared_ptr<ParameterState> state)
        : CapePart(object, errors, L"ICapeParameter"), state(std::move(state))
    {}

    STDMETHOD(get_Specification)(IDispatch** spec) override
    {
        if (!spec) return E_POINTER;
        *spec = nullptr;
        return Call(L"get_Specification", [&] {
            if (!specification) {
                specification = CreateSpecification(state->definition.name, state->definition.specification);
            }
            specification.CopyTo(spec);
        });
    }
    STDMETHOD(get_value)(VARIANT* value) override
    {
        return Call(L"get_value", [&] { Return(value, state->value); });
    }
    // The type is checked here, the bounds by Validate.
    STDMETHOD(put_value)(VARIANT value) override
    {
        return Call(L"put_value", [&] {
            state->value = ConvertValue(state->definition.specification, value);
            state->status = CAPE_NOT_VALIDATED;
        });
    }
    STDMETHOD(get_ValStatus)(eCapeValidationStatus* status) override
    {
        if (!status) return E_POINTER;
        *status = state->status;
        return S_OK;
    }
    STDMETHOD(get_Mode)(eCapeParamMode* mode) override
    {
        if (!mode) return E_POINTER;
        *mode = state->mode;
        return S_OK;
    }
    STDMETHOD(put_Mode)(eCapeParamMode mode) override
    {
        return Call(L"put_Mode", [&] {
            if (mode < CAPE_INPUT || mode > CAPE_INPUT_OUTPUT) {
                throw CapeFailure::OutOfBounds(L"mode", mode, CAPE_INPUT, CAPE_INPUT_OUTPUT);
            }
            state->mode = mode;
        });
    }
    STDMETHOD(Validate)(BSTR* message, VARIANT_BOOL* isOK) override
    {
        if (!isOK) return E_POINTER;
        return Call(L"Validate", [&] {
            const std::wstring objection = ObjectionTo(state->definition.specification, state->value);
            Replace(message, objection);
            *isOK = objection.empty() ? VARIANT_TRUE : VARIANT_FALSE;
            state->status = objection.empty() ? CAPE_VALID : CAPE_INVALID;
        });
    }
    STDMETHOD(Reset)() override
    {
        return Call(L"Reset", [&] {
            state->value = InitialValue(state->definition.specification);
            state->status = CAPE_NOT_VALIDATED;
        });
    }

private:
    std::shared_ptr<ParameterState> state;
    Microsoft::WRL::ComPtr<IDispatch> specification;
};

}  // namespace zelt::sample
