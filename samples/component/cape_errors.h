// The error state of a CAPE-OPEN component and the interfaces through which a caller reads it: ECapeRoot, ECapeUser, the
// interfaces of the common classes of errors, and ISupportErrorInfo for callers that want IErrorInfo. A
// component has one CapeErrors as a member, which keeps the state of the last failure until the next one.
#pragma once

#include <windows.h>
#include <cape-open.h>
#include <oaidl.h>

#include <new>

#include "com/dispatch.h"
#include "com/failure.h"
#include "com/object.h"
#include "samples/component/cape_failure.h"
#include "samples/component/variant.h"
#include "samples/thermo/errors.h"

namespace zelt::sample {

// Returns a getter's result through `out`; fails only for a null pointer.
template <class T>
HRESULT Answer(T* out, T value)
{
    if (!out) return E_POINTER;
    *out = value;
    return S_OK;
}

class CapeErrors {
public:
    // `source` is the name that IErrorInfo gives as the error's origin; it must outlive the object.
    CapeErrors(com::Object& object, const wchar_t* source);

    // Runs a method's body, which throws when the call fails, and returns the status code. Throws nothing.
    template <class Body>
    HRESULT Run(REFIID iid, const wchar_t* interfaceName, const wchar_t* operation, Body&& body) noexcept
    {
        try {
            body();
            return S_OK;
        } catch (...) {
            return Caught(iid, interfaceName, operation);
        }
    }

    // Makes `failure` the component's error state and the thread's IErrorInfo.
    HRESULT Raise(REFIID iid, const wchar_t* interfaceName, const wchar_t* operation,
                  const CapeFailure& failure) noexcept;

private:
    struct State {
        HRESULT code = S_OK;
        _bstr_t description, interfaceName, operation, requestedOperation, boundType;
        double lower = 0, upper = 0, value = 0;
    };

    // Translates the current exception.
    HRESULT Caught(REFIID iid, const wchar_t* interfaceName, const wchar_t* operation) noexcept;

    struct RootPart final : com::DualPart<ECapeRoot> {
        RootPart(com::Object& object, const State& state) : DualPart(object), state(state) {}
        STDMETHOD(get_name)(BSTR* name) override;
        const State& state;
    };
    struct UserPart final : com::DualPart<ECapeUser> {
        UserPart(com::Object& object, const State& state) : DualPart(object), state(state) {}
        STDMETHOD(get_code)(long* code) override;
        STDMETHOD(get_description)(BSTR* description) override;
        STDMETHOD(get_scope)(BSTR* scope) override;
        STDMETHOD(get_interfaceName)(BSTR* interfaceName) override;
        STDMETHOD(get_operation)(BSTR* operation) override;
        STDMETHOD(get_moreInfo)(BSTR* moreInfo) override;
        const State& state;
    };
    struct BadArgumentPart final : com::DualPart<ECapeBadArgument> {
        using DualPart::DualPart;
        STDMETHOD(get_position)(short* position) override;
    };
    struct BadInvOrderPart final : com::DualPart<ECapeBadInvOrder> {
        BadInvOrderPart(com::Object& object, const State& state) : DualPart(object), state(state) {}
        STDMETHOD(get_requestedOperation)(BSTR* operation) override;
        const State& state;
    };
    struct BoundariesPart final : com::DualPart<ECapeBoundaries> {
        BoundariesPart(com::Object& object, const State& state) : DualPart(object), state(state) {}
        STDMETHOD(get_LowerBound)(double* bound) override;
        STDMETHOD(get_UpperBound)(double* bound) override;
        STDMETHOD(get_value)(double* value) override;
        STDMETHOD(get_Type)(BSTR* type) override;
        const State& state;
    };
    struct SupportPart final : com::Part<ISupportErrorInfo> {
        using Part::Part;
        STDMETHOD(InterfaceSupportsErrorInfo)(REFIID iid) override;
    };
    // An error interface without members.
    template <class I>
    struct Marker final : com::DualPart<I> {
        using com::DualPart<I>::DualPart;
    };

    State state;
    const wchar_t* source;
    RootPart root;
    UserPart user;
    Marker<ECapeUnknown> unknown;
    Marker<ECapeData> data;
    BadArgumentPart badArgument;
    Marker<ECapeInvalidArgument> invalidArgument;
    Marker<ECapeOutOfBounds> outOfBounds;
    BoundariesPart boundaries;
    Marker<ECapeImplementation> implementation;
    Marker<ECapeNoImpl> noImpl;
    Marker<ECapeLimitedImpl> limitedImpl;
    Marker<ECapeComputation> computation;
    Marker<ECapeOutOfResources> outOfResources;
    Marker<ECapeNoMemory> noMemory;
    Marker<ECapeFailedInitialisation> failedInitialisation;
    Marker<ECapeSolvingError> solvingError;
    BadInvOrderPart badInvOrder;
    Marker<ECapeInvalidOperation> invalidOperation;
    Marker<ECapeThrmPropertyNotAvailable> propertyNotAvailable;
    SupportPart support;
};

// A part that implements one CAPE-OPEN interface of a component and reports failures through the component's error state.
template <class I>
class CapePart : public com::DualPart<I> {
protected:
    CapePart(com::Object& object, CapeErrors& errors, const wchar_t* interfaceName)
        : com::DualPart<I>(object), errors(errors), interfaceName(interfaceName)
    {}
    ~CapePart() = default;

    template <class Body>
    HRESULT Call(const wchar_t* operation, Body&& body) noexcept
    {
        return errors.Run(__uuidof(I), interfaceName, operation, std::forward<Body>(body));
    }

private:
    CapeErrors& errors;
    const wchar_t* interfaceName;
};

}  // namespace zelt::sample
