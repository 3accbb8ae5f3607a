#include "core/identification.h"

#include <oleauto.h>

#include "core/narrow.h"

namespace zelt {

STDMETHODIMP LoggedIdentification::put_ComponentName(BSTR name)
{
    const HRESULT result = LOGGED(ICapeIdentification, put_ComponentName, In("name", name), Write());
    if (FAILED(result)) return result;
    com::NoThrow([&] {
        Proxy().Rename(Narrow(TextOf(name)));
        return S_OK;
    });
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

STDMETHODIMP OriginalObject::GetOriginalObject(IUnknown** origObject)
{
    if (!origObject) return E_POINTER;
    *origObject = static_cast<CapeOpenBase&>(object).Wrapped();
    if (!*origObject) return E_UNEXPECTED;
    (*origObject)->AddRef();
    return S_OK;
}

}  // namespace zelt
