// The interfaces that the proxy of a unit operation declares besides those of its base. The rows of methods that change the
// unit have ChangesObject before the arguments.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedUnit final : LoggedInterface<ICapeUnit> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_ports)(IDispatch** ports) override
    {
        return LOGGED(ICapeUnit, get_ports, WrappedOut("ports", ports, {WrapKind::PortCollection}));
    }
    STDMETHOD(get_ValStatus)(eCapeValidationStatus* status) override
    {
        return LOGGED(ICapeUnit, get_ValStatus, Out("ValStatus", status));
    }
    STDMETHOD(Calculate)() override { return LOGGED(ICapeUnit, Calculate, ChangesObject()); }
    STDMETHOD(Validate)(BSTR* message, VARIANT_BOOL* isValid) override
    {
        return LOGGED(ICapeUnit, Validate, Out("message", message), OutBool("isValid", isValid));
    }
};

struct LoggedUnitReport final : LoggedInterface<ICapeUnitReport> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_reports)(VARIANT* reports) override
    {
        return LOGGED(ICapeUnitReport, get_reports, Out("reports", reports, kStrings));
    }
    STDMETHOD(get_selectedReport)(BSTR* report) override
    {
        return LOGGED(ICapeUnitReport, get_selectedReport, Out("report", report));
    }
    STDMETHOD(put_selectedReport)(BSTR report) override
    {
        return LOGGED(ICapeUnitReport, put_selectedReport, ChangesObject(), In("report", report));
    }
    STDMETHOD(ProduceReport)(BSTR* message) override
    {
        return LOGGED(ICapeUnitReport, ProduceReport, Out("message", message));
    }
};

struct LoggedUnitKineticContext final : LoggedInterface<ICapeKineticReactionContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetReactionObject)(IDispatch** reactionsObject) override
    {
        return LOGGED(ICapeKineticReactionContext, SetReactionObject, ChangesObject(),
                      WrappedInSlot("reactionsObject", reactionsObject, {WrapKind::ReactionObject}));
    }
};

// Its method has the same name and signature as that of the kinetic context; separate parts keep the two apart.
struct LoggedUnitElectrolyteContext final : LoggedInterface<ICapeElectrolyteReactionContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetReactionObject)(IDispatch** reactionsObject) override
    {
        return LOGGED(ICapeElectrolyteReactionContext, SetReactionObject, ChangesObject(),
                      WrappedInSlot("reactionsObject", reactionsObject, {WrapKind::ReactionObject}));
    }
};

}  // namespace zelt
