// The two bases that proxy classes derive from. LoggedProxy has the interfaces of identification.h and error_interfaces.h,
// ExposedObjectBase also ICapeUtilities.
#pragma once

#include "core/error_interfaces.h"
#include "core/identification.h"

namespace zelt {

class LoggedProxy : public CapeOpenBase {
protected:
    explicit LoggedProxy(const ProxyTraits& traits)
        : CapeOpenBase(traits), identification(*this), errors(*this), originalObject(*this), supportErrorInfo(*this)
    {}
    ~LoggedProxy() override = default;

    // Scripts find the members of ICapeIdentification first, unless a derived class names another interface.
    IDispatch* ScriptInterface() override { return &identification; }

private:
    LoggedIdentification identification;
    ErrorInterfaces errors;
    OriginalObject originalObject;
    SupportErrorInfo supportErrorInfo;
};

struct LoggedUtilities final : LoggedInterface<ICapeUtilities> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_parameters)(IDispatch** parameters) override
    {
        return LOGGED(ICapeUtilities, get_parameters,
                      WrappedOut("parameters", parameters, {WrapKind::ParameterCollection}));
    }
    STDMETHOD(put_simulationContext)(IDispatch* context) override
    {
        return LOGGED(ICapeUtilities, put_simulationContext,
                      WrappedIn("context", context, {WrapKind::SimulationContext}), ChangesObject());
    }
    STDMETHOD(Initialize)() override { return LOGGED(ICapeUtilities, Initialize, NeedsObject(), Initializes(true)); }
    STDMETHOD(Terminate)() override { return LOGGED(ICapeUtilities, Terminate, Initializes(false)); }
    STDMETHOD(Edit)() override { return LOGGED(ICapeUtilities, Edit, ChangesObject()); }
};

class ExposedObjectBase : public LoggedProxy {
protected:
    explicit ExposedObjectBase(const ProxyTraits& traits) : LoggedProxy(traits), utilities(*this) {}
    ~ExposedObjectBase() override = default;

    // The proxy's own ICapeUtilities, for calling it as an outside caller does.
    ICapeUtilities& Utilities() { return utilities; }

private:
    LoggedUtilities utilities;
};

}  // namespace zelt
