#include "core/identification.h"

#include <oleauto.h>

#include "system/narrow.h"

namespace zelt {

namespace {

void TakeName(CapeOpenBase& proxy, BSTR name)
{
    com::Attempt([&] { proxy.Rename(Narrow(TextOf(name))); });
}

// The proxy takes over a name that its object has accepted. A proxy that has a name before its object is made takes the new
// name at once.
struct Renames : Mark, NoSteps {
    BSTR name;

    explicit Renames(BSTR name) : name(name) {}
    std::optional<HRESULT> Answer(LoggedCall& call) const
    {
        CapeOpenBase& proxy = call.Proxy();
        if (!proxy.Wrapped() && proxy.IsNamedEarly()) TakeName(proxy, name);
        return {};
    }
    void Finish(LoggedCall& call, HRESULT& result) const
    {
        if (SUCCEEDED(result)) TakeName(call.Proxy(), name);
    }
};

}  // namespace

STDMETHODIMP LoggedIdentification::put_ComponentName(BSTR name)
{
    return LOGGED(ICapeIdentification, put_ComponentName, In("name", name), ChangesObject(), Renames(name));
}

std::optional<HRESULT> OutOrUninitialized::Answer(LoggedCall& call) const
{
    if (call.Proxy().Wrapped()) return {};
    call.Say(Sentence::NotInitialized);
    if (!value) return E_POINTER;
    *value = SysAllocString(L"Uninitialized object");
    return *value ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP SupportErrorInfo::InterfaceSupportsErrorInfo(REFIID iid)
{
    if (!object.Admits("ISupportErrorInfo::InterfaceSupportsErrorInfo")) return RPC_E_WRONG_THREAD;
    const auto support = QueryForeign<ISupportErrorInfo>(static_cast<CapeOpenBase&>(object).Wrapped());
    return support ? CallForeign([&] { return support->InterfaceSupportsErrorInfo(iid); }) : S_FALSE;
}

STDMETHODIMP OriginalObject::GetOriginalObject(IUnknown** origObject)
{
    if (!object.Admits("IOriginalObject::GetOriginalObject")) return RPC_E_WRONG_THREAD;
    if (!origObject) return E_POINTER;
    *origObject = static_cast<CapeOpenBase&>(object).Wrapped();
    if (!*origObject) return E_UNEXPECTED;
    HoldForeign(*origObject);
    return S_OK;
}

}  // namespace zelt
