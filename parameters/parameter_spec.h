// CParameterSpec: the proxy of a parameter's specification, with the typed specifications of all five kinds. The parameter's type
// determines which of them the wrapped object has; the others are refused.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedParameterSpec final : LoggedInterface<ICapeParameterSpec> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_Type)(eCapeParamType* type) override
    {
        return LOGGED(ICapeParameterSpec, get_Type, Out("Type", type));
    }
    STDMETHOD(get_Dimensionality)(VARIANT* dim) override
    {
        return LOGGED(ICapeParameterSpec, get_Dimensionality, Out("dim", dim, kDoubles));
    }
};

struct LoggedRealSpec final : LoggedInterface<ICapeRealParameterSpec> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_DefaultValue)(double* value) override
    {
        return LOGGED(ICapeRealParameterSpec, get_DefaultValue, Out("DefaultValue", value));
    }
    STDMETHOD(get_LowerBound)(double* bound) override
    {
        return LOGGED(ICapeRealParameterSpec, get_LowerBound, Out("lBound", bound));
    }
    STDMETHOD(get_UpperBound)(double* bound) override
    {
        return LOGGED(ICapeRealParameterSpec, get_UpperBound, Out("uBound", bound));
    }
    STDMETHOD(Validate)(double value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return LOGGED(ICapeRealParameterSpec, Validate, In("value", value), Out("message", message),
                      OutBool("isOK", isOK));
    }
};

struct LoggedIntegerSpec final : LoggedInterface<ICapeIntegerParameterSpec> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_DefaultValue)(long* value) override
    {
        return LOGGED(ICapeIntegerParameterSpec, get_DefaultValue, Out("pVal", value));
    }
    STDMETHOD(get_LowerBound)(long* bound) override
    {
        return LOGGED(ICapeIntegerParameterSpec, get_LowerBound, Out("pVal", bound));
    }
    STDMETHOD(get_UpperBound)(long* bound) override
    {
        return LOGGED(ICapeIntegerParameterSpec, get_UpperBound, Out("pVal", bound));
    }
    STDMETHOD(Validate)(long value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return LOGGED(ICapeIntegerParameterSpec, Validate, In("value", value), Out("message", message),
                      OutBool("isOK", isOK));
    }
};

struct LoggedBooleanSpec final : LoggedInterface<ICapeBooleanParameterSpec> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_DefaultValue)(VARIANT_BOOL* value) override
    {
        return LOGGED(ICapeBooleanParameterSpec, get_DefaultValue, OutBool("DefaultValue", value));
    }
    STDMETHOD(Validate)(VARIANT_BOOL value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return LOGGED(ICapeBooleanParameterSpec, Validate, InBool("value", value), Out("message", message),
                      OutBool("isOK", isOK));
    }
};

struct LoggedOptionSpec final : LoggedInterface<ICapeOptionParameterSpec> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_DefaultValue)(BSTR* value) override
    {
        return LOGGED(ICapeOptionParameterSpec, get_DefaultValue, Out("DefaultValue", value));
    }
    STDMETHOD(get_OptionList)(VARIANT* optionNames) override
    {
        return LOGGED(ICapeOptionParameterSpec, get_OptionList, Out("optionNames", optionNames, kStrings));
    }
    STDMETHOD(get_RestrictedToList)(VARIANT_BOOL* restricted) override
    {
        return LOGGED(ICapeOptionParameterSpec, get_RestrictedToList, OutBool("restricted", restricted));
    }
    STDMETHOD(Validate)(BSTR value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return LOGGED(ICapeOptionParameterSpec, Validate, In("value", value), Out("message", message),
                      OutBool("isOK", isOK));
    }
};

struct LoggedArraySpec final : LoggedInterface<ICapeArrayParameterSpec> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_NumDimensions)(long* count) override
    {
        return LOGGED(ICapeArrayParameterSpec, get_NumDimensions, Out("numDimensions", count));
    }
    STDMETHOD(get_Size)(VARIANT* size) override
    {
        return LOGGED(ICapeArrayParameterSpec, get_Size, Out("Size", size, kIntegers));
    }
    STDMETHOD(get_ItemsSpecifications)(VARIANT* specs) override
    {
        return LOGGED(ICapeArrayParameterSpec, get_ItemsSpecifications,
                      WrappedArrayOut("specs", specs, {WrapKind::ParameterSpec}));
    }
    STDMETHOD(Validate)(VARIANT value, VARIANT* message, VARIANT* isOK) override
    {
        return LOGGED(ICapeArrayParameterSpec, Validate, In("value", value), Out("message", message, kStrings),
                      Out("isOK", isOK, kBooleans));
    }
};

class CParameterSpec final : public ExposedObjectBase {
public:
    CParameterSpec()
        : ExposedObjectBase(kTraits),
          spec(*this),
          real(*this),
          integer(*this),
          boolean(*this),
          option(*this),
          array(*this)
    {}

protected:
    IDispatch* ScriptInterface() override { return &spec; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Parameter specification", .inheritsReadOnly = true};
    LoggedParameterSpec spec;
    LoggedRealSpec real;
    LoggedIntegerSpec integer;
    LoggedBooleanSpec boolean;
    LoggedOptionSpec option;
    LoggedArraySpec array;
};

}  // namespace zelt
