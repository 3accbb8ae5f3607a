// The CAPE-OPEN error interfaces of a proxy: each getter is forwarded to the wrapped object, so that a caller reads the wrapped
// object's error through logged calls. The interfaces without methods only identify the error's class.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedRoot final : LoggedInterface<ECapeRoot> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_name)(BSTR* name) override { return LOGGED(ECapeRoot, get_name, Out("name", name)); }
};

struct LoggedUser final : LoggedInterface<ECapeUser> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_code)(long* code) override { return LOGGED(ECapeUser, get_code, Out("code", code)); }
    STDMETHOD(get_description)(BSTR* description) override
    {
        return LOGGED(ECapeUser, get_description, Out("description", description));
    }
    STDMETHOD(get_scope)(BSTR* scope) override { return LOGGED(ECapeUser, get_scope, Out("scope", scope)); }
    STDMETHOD(get_interfaceName)(BSTR* interfaceName) override
    {
        return LOGGED(ECapeUser, get_interfaceName, Out("interfaceName", interfaceName));
    }
    STDMETHOD(get_operation)(BSTR* operation) override
    {
        return LOGGED(ECapeUser, get_operation, Out("operation", operation));
    }
    STDMETHOD(get_moreInfo)(BSTR* moreInfo) override
    {
        return LOGGED(ECapeUser, get_moreInfo, Out("moreInfo", moreInfo));
    }
};

struct LoggedBadArgument final : LoggedInterface<ECapeBadArgument> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_position)(short* position) override
    {
        return LOGGED(ECapeBadArgument, get_position, Out("position", position));
    }
};

struct LoggedBadCOParameter final : LoggedInterface<ECapeBadCOParameter> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_parameterName)(BSTR* parameterName) override
    {
        return LOGGED(ECapeBadCOParameter, get_parameterName, Out("parameterName", parameterName));
    }
    STDMETHOD(get_parameter)(IDispatch** parameter) override
    {
        return LOGGED(ECapeBadCOParameter, get_parameter, Out("parameter", parameter));
    }
};

struct LoggedBadInvOrder final : LoggedInterface<ECapeBadInvOrder> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_requestedOperation)(BSTR* requestedOperation) override
    {
        return LOGGED(ECapeBadInvOrder, get_requestedOperation, Out("requestedOperation", requestedOperation));
    }
};

// The argument of each of the two bounds is logged under the method's own name, as readers of existing logs expect.
struct LoggedBoundaries final : LoggedInterface<ECapeBoundaries> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_LowerBound)(double* bound) override
    {
        return LOGGED(ECapeBoundaries, get_LowerBound, Out("get_LowerBound", bound));
    }
    STDMETHOD(get_UpperBound)(double* bound) override
    {
        return LOGGED(ECapeBoundaries, get_UpperBound, Out("get_UpperBound", bound));
    }
    STDMETHOD(get_value)(double* value) override { return LOGGED(ECapeBoundaries, get_value, Out("value", value)); }
    STDMETHOD(get_Type)(BSTR* type) override { return LOGGED(ECapeBoundaries, get_Type, Out("Type", type)); }
};

struct LoggedPersistenceNotFound final : LoggedInterface<ECapePersistenceNotFound> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_itemName)(BSTR* itemName) override
    {
        return LOGGED(ECapePersistenceNotFound, get_itemName, Out("itemName", itemName));
    }
};

// An interface without methods of its own.
template <class I>
struct LoggedMarker final : LoggedInterface<I> {
    using LoggedInterface<I>::LoggedInterface;
};

// All the error interfaces that proxies offer, as one member of every proxy.
struct ErrorInterfaces {
    explicit ErrorInterfaces(CapeOpenBase& proxy);

    LoggedRoot root;
    LoggedUser user;
    LoggedBadArgument badArgument;
    LoggedBadCOParameter badCOParameter;
    LoggedBadInvOrder badInvOrder;
    LoggedBoundaries boundaries;
    LoggedPersistenceNotFound persistenceNotFound;
    LoggedMarker<ECapeUnknown> unknown;
    LoggedMarker<ECapeData> data;
    LoggedMarker<ECapeLicenceError> licenceError;
    LoggedMarker<ECapeInvalidArgument> invalidArgument;
    LoggedMarker<ECapeOutOfBounds> outOfBounds;
    LoggedMarker<ECapeImplementation> implementation;
    LoggedMarker<ECapeNoImpl> noImpl;
    LoggedMarker<ECapeLimitedImpl> limitedImpl;
    LoggedMarker<ECapeComputation> computation;
    LoggedMarker<ECapeOutOfResources> outOfResources;
    LoggedMarker<ECapeNoMemory> noMemory;
    LoggedMarker<ECapeTimeOut> timeOut;
    LoggedMarker<ECapeFailedInitialisation> failedInitialisation;
    LoggedMarker<ECapeSolvingError> solvingError;
    LoggedMarker<ECapeInvalidOperation> invalidOperation;
    LoggedMarker<ECapePersistence> persistence;
    LoggedMarker<ECapeIllegalAccess> illegalAccess;
    LoggedMarker<ECapePersistenceSystemError> persistenceSystemError;
    LoggedMarker<ECapePersistenceOverflow> persistenceOverflow;
    LoggedMarker<ECapeThrmPropertyNotAvailable> thrmPropertyNotAvailable;
};

}  // namespace zelt
