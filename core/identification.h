// The interfaces that every proxy has besides the error interfaces: identification, the way back to the wrapped object, and
// whether error information is available.
#pragma once

#include <zelt.h>

#include "core/logged_interface.h"

namespace zelt {

// A text that comes back. A proxy without a wrapped object returns a placeholder, so that a list of names can show something.
struct OutOrUninitialized : OutArgument<BSTR, ByType> {
    OutOrUninitialized(std::string_view name, BSTR* text) : OutArgument(name, text, {}) {}
    std::optional<HRESULT> Answer(LoggedCall& call) const;
};

struct LoggedIdentification final : LoggedInterface<ICapeIdentification> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_ComponentName)(BSTR* name) override
    {
        return LOGGED(ICapeIdentification, get_ComponentName, OutOrUninitialized("name", name));
    }
    STDMETHOD(put_ComponentName)(BSTR name) override;
    STDMETHOD(get_ComponentDescription)(BSTR* desc) override
    {
        return LOGGED(ICapeIdentification, get_ComponentDescription, OutOrUninitialized("desc", desc));
    }
    STDMETHOD(put_ComponentDescription)(BSTR desc) override
    {
        return LOGGED(ICapeIdentification, put_ComponentDescription, In("desc", desc), ChangesObject());
    }
};

// Not logged: the server itself calls it, on its own proxies.
struct OriginalObject final : com::DualPart<IOriginalObject> {
    explicit OriginalObject(CapeOpenBase& proxy) : DualPart(proxy) {}
    STDMETHOD(GetOriginalObject)(IUnknown** origObject) override;
};

// Whether the wrapped object sets error information for an interface; callers ask before they read it. Not logged.
struct SupportErrorInfo final : com::Part<ISupportErrorInfo> {
    explicit SupportErrorInfo(CapeOpenBase& proxy) : Part(proxy) {}
    STDMETHOD(InterfaceSupportsErrorInfo)(REFIID iid) override;
};

}  // namespace zelt
