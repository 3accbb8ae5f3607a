#include "core/identification.h"

#include <oleauto.h>

#include "core/narrow.h"

namespace zelt {

namespace {

void TakeName(CapeOpenBase& proxy, BSTR name)
{
    com::NoThrow([&] {
        proxy.Rename(Narrow(TextOf(name)));
        return S_OK;
    });
}

// The proxy takes over the name that its object has accepted.
struct Renames : Mark, NoSteps {
    BSTR name;

    explicit Renames(BSTR name) : name(name) {}
    void Finish(LoggedCall& call, HRESULT& result) const
    {
        if (SUCCEEDED(result)) TakeName(call.Proxy(), name);
    }
};

}  // namespace

STDMETHODIMP LoggedIdentification::put_ComponentName(BSTR name)
{
    const bool isEarly = !Proxy().Wrapped() && Proxy().IsNamedEarly();
    const HRESULT result = LOGGED(ICapeIdentification, put_ComponentName, In("name", name), Write(), Renames(name));
    // Nothing foreign was called, so the proxy is still there.
    if (isEarly) TakeName(Proxy(), name);
    return result;
}

HRESULT LoggedIdentification::AnswerUninitialized(const char* method, const char* argument, BSTR* text)
{
    if (!text) return E_POINTER;
    LoggedCall call(Proxy(), method);
    LogDocument* log = call.Document();
    if (log) log->WriteError("Object is not created or initialized");
    *text = SysAllocString(L"Uninitialized object");
    if (!*text) return call.Close(E_OUTOFMEMORY, nullptr);
    if (log) WriteArg(*log, argument, false, *text);
    return call.Close(S_OK, nullptr);
}

STDMETHODIMP SupportErrorInfo::InterfaceSupportsErrorInfo(REFIID iid)
{
    const auto support = QueryForeign<ISupportErrorInfo>(static_cast<CapeOpenBase&>(object).Wrapped());
    return support ? CallForeign([&] { return support->InterfaceSupportsErrorInfo(iid); }) : S_FALSE;
}

STDMETHODIMP OriginalObject::GetOriginalObject(IUnknown** origObject)
{
    if (!origObject) return E_POINTER;
    *origObject = static_cast<CapeOpenBase&>(object).Wrapped();
    if (!*origObject) return E_UNEXPECTED;
    HoldForeign(*origObject);
    return S_OK;
}

}  // namespace zelt
