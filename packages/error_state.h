// The CAPE-OPEN error of an object of our own: the last failure, offered through ECapeRoot and ECapeUser and, for callers that
// know only automation, through IErrorInfo.
#pragma once

#include <cape-open.h>

#include <string>

#include "com/dispatch.h"

namespace zelt {

class ErrorState {
public:
    ErrorState(com::Object& object, const IID& raisingInterface);

    // Replaces the error and sets the thread's error information. Returns the code.
    [[nodiscard]] HRESULT Raise(HRESULT code, std::wstring description, std::wstring scope, std::wstring interfaceName);

    const std::wstring& Description() const { return description; }

private:
    struct RootPart final : com::DualPart<ECapeRoot> {
        RootPart(com::Object& object, ErrorState& state) : DualPart(object), state(state) {}
        STDMETHOD(get_name)(BSTR* name) override;
        ErrorState& state;
    };
    struct UserPart final : com::DualPart<ECapeUser> {
        UserPart(com::Object& object, ErrorState& state) : DualPart(object), state(state) {}
        STDMETHOD(get_code)(long* code) override;
        STDMETHOD(get_description)(BSTR* description) override;
        STDMETHOD(get_scope)(BSTR* scope) override;
        STDMETHOD(get_interfaceName)(BSTR* interfaceName) override;
        STDMETHOD(get_operation)(BSTR* operation) override;
        STDMETHOD(get_moreInfo)(BSTR* moreInfo) override;
        ErrorState& state;
    };
    template <class I>
    struct Marker final : com::DualPart<I> {
        using com::DualPart<I>::DualPart;
    };
    struct SupportPart final : com::Part<ISupportErrorInfo> {
        SupportPart(com::Object& object, const IID& raisingInterface) : Part(object), raisingInterface(raisingInterface)
        {}
        STDMETHOD(InterfaceSupportsErrorInfo)(REFIID iid) override
        {
            return IsEqualIID(iid, raisingInterface) ? S_OK : S_FALSE;
        }
        const IID& raisingInterface;
    };

    HRESULT code = S_OK;
    std::wstring description;
    std::wstring scope;
    std::wstring interfaceName;

    RootPart root;
    UserPart user;
    Marker<ECapeUnknown> unknown;
    Marker<ECapeInvalidArgument> invalidArgument;
    Marker<ECapeFailedInitialisation> failedInitialisation;
    SupportPart support;
    const IID& raisingInterface;
};

}  // namespace zelt
