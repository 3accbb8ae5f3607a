#include "com/dispatch.h"

namespace com {

HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info)
{
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    const HRESULT found = TypeInfoOf(iid, info);
    if (SUCCEEDED(found)) (*info)->AddRef();
    return found;
}

HRESULT DispatchGetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids)
{
    ITypeInfo* info = nullptr;
    const HRESULT found = TypeInfoOf(iid, &info);
    return FAILED(found) ? found : info->GetIDsOfNames(names, count, ids);
}

HRESULT DispatchInvoke(REFIID iid, void* instance, DISPID member, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                       EXCEPINFO* exception, UINT* argumentError)
{
    ITypeInfo* info = nullptr;
    const HRESULT found = TypeInfoOf(iid, &info);
    if (FAILED(found)) return found;
    // Error information left over from an earlier call must not be mistaken for this call's.
    SetErrorInfo(0, nullptr);
    return info->Invoke(instance, member, flags, parameters, result, exception, argumentError);
}

}  // namespace com
