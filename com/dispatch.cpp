#include "com/dispatch.h"

namespace com {

HRESULT DispatchGetTypeInfoCount(Object& object, UINT* count)
{
    if (!object.Admits("IDispatch::GetTypeInfoCount")) return RPC_E_WRONG_THREAD;
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
}

HRESULT DispatchGetTypeInfo(ITypeInfo* known, UINT index, ITypeInfo** info)
{
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    known->AddRef();
    *info = known;
    return S_OK;
}

HRESULT DispatchInvoke(ITypeInfo* known, void* instance, DISPID member, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT* argumentError)
{
    // Error information left over from an earlier call must not be mistaken for this call's.
    SetErrorInfo(0, nullptr);
    return known->Invoke(instance, member, flags, parameters, result, exception, argumentError);
}

HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info)
{
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    ITypeInfo* known = nullptr;
    const HRESULT found = TypeInfoOf(iid, &known);
    return FAILED(found) ? found : DispatchGetTypeInfo(known, index, info);
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
    return DispatchInvoke(info, instance, member, flags, parameters, result, exception, argumentError);
}

}  // namespace com
