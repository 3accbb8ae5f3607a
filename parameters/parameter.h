// CParameter: the proxy of a parameter. A read-only collection makes its parameters read-only.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedParameter final : LoggedInterface<ICapeParameter> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_Specification)(IDispatch** spec) override
    {
        return LOGGED(ICapeParameter, get_Specification,
                      WrappedOut("spec", spec, {WrapKind::ParameterSpec}, Shown::AsReturned));
    }
    STDMETHOD(get_value)(VARIANT* value) override { return LOGGED(ICapeParameter, get_value, Out("value", value)); }
    STDMETHOD(put_value)(VARIANT value) override
    {
        return LOGGED(ICapeParameter, put_value, ChangesObject(), In("value", value));
    }
    STDMETHOD(get_ValStatus)(eCapeValidationStatus* status) override
    {
        return LOGGED(ICapeParameter, get_ValStatus, Out("ValStatus", status));
    }
    STDMETHOD(get_Mode)(eCapeParamMode* mode) override { return LOGGED(ICapeParameter, get_Mode, Out("Mode", mode)); }
    STDMETHOD(put_Mode)(eCapeParamMode mode) override
    {
        return LOGGED(ICapeParameter, put_Mode, ChangesObject(), In("Mode", mode));
    }
    STDMETHOD(Validate)(BSTR* message, VARIANT_BOOL* isOK) override
    {
        return LOGGED(ICapeParameter, Validate, Out("message", message), OutBool("isOK", isOK));
    }
    STDMETHOD(Reset)() override { return LOGGED(ICapeParameter, Reset, ChangesObject()); }
};

class CParameter final : public ExposedObjectBase {
public:
    CParameter() : ExposedObjectBase(kTraits), parameter(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &parameter; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Parameter", .inheritsReadOnly = true};
    LoggedParameter parameter;
};

}  // namespace zelt
