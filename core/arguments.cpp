#include "core/arguments.h"

#include <zelt.h>

namespace zelt {

void WarnNullOutput(LogDocument& document, const char* name)
{
    com::NoThrow([&] {
        document.WriteWarning(std::string("Null pointer passed for output argument ") + name);
        return S_OK;
    });
}

void WrappedIn::Describe(LoggedCall& call) const
{
    if (LogDocument* log = call.Document()) WriteArg(*log, name, true, static_cast<IUnknown*>(pointer));
}

HRESULT WrappedIn::Prepare(LoggedCall& call)
{
    if (!pointer || !call.Document()) return S_OK;
    const HRESULT wrapped = Wrap(site, pointer, call.Proxy(), &proxy);
    if (FAILED(wrapped) || !proxy) return wrapped;
    const HRESULT queried = proxy->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(wrapper.Receive()));
    proxy->Release();
    return queried;
}

void WrappedOut::Finish(LoggedCall& call, HRESULT& result) const
{
    LogDocument* log = call.Document();
    if (!pointer) {
        if (log && SUCCEEDED(result)) WarnNullOutput(*log, name);
        return;
    }
    if (FAILED(result)) {
        *pointer = nullptr;
        return;
    }
    CapeOpenBase* proxy = nullptr;
    if (*pointer) {
        const HRESULT wrapped = Wrap(site, *pointer, call.Proxy(), &proxy);
        if (wrapped != S_FALSE) ReleaseForeign(*pointer);
        if (FAILED(wrapped)) {
            result = wrapped;
            return;
        }
    }
    if (proxy) {
        proxy->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(pointer));
        proxy->Release();
    }
    if (!log) return;
    if (proxy) {
        WriteNamedInterfaceArg(*log, name, false, *pointer, proxy->Name());
    } else {
        WriteArg(*log, name, false, static_cast<IUnknown*>(*pointer));
    }
}

void InSlot::Describe(LoggedCall& call) const
{
    if (LogDocument* log = call.Document()) WriteArg(*log, name, true, static_cast<IUnknown*>(copy));
}

void Write::Describe(LoggedCall& call) const
{
    LogDocument* log = call.Document();
    if (log && call.Proxy().IsReadOnly()) log->WriteError("This object should be considered read-only");
}

void ErrorIf::Describe(LoggedCall& call) const
{
    LogDocument* log = call.Document();
    if (log && condition) log->WriteError(text);
}

HRESULT HoldOriginal::Prepare(LoggedCall&)
{
    const ForeignPtr<IOriginalObject> proxy = QueryForeign<IOriginalObject>(object);
    if (proxy) CallForeign([&] { return proxy->GetOriginalObject(original.Receive()); });
    return S_OK;
}

}  // namespace zelt
