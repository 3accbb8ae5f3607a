// A part that implements a dual interface: it serves IDispatch from type information, for this interface alone.
#pragma once

#include "com/object.h"
#include "com/type_info.h"

namespace com {

// Methods of IDispatch for a dual interface that `known` describes and `instance` implements.
[[nodiscard]] HRESULT DispatchGetTypeInfoCount(Object& object, UINT* count);
[[nodiscard]] HRESULT DispatchGetTypeInfo(ITypeInfo* known, UINT index, ITypeInfo** info);
[[nodiscard]] HRESULT DispatchInvoke(ITypeInfo* known, void* instance, DISPID member, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argumentError);

// The same for the dual interface `iid`, which one of this module's type libraries describes.
[[nodiscard]] HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info);
[[nodiscard]] HRESULT DispatchGetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids);
[[nodiscard]] HRESULT DispatchInvoke(REFIID iid, void* instance, DISPID member, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError);

template <class I>
class DualPart : public Part<I> {
public:
    using Part<I>::Part;

    STDMETHOD(GetTypeInfoCount)(UINT* count) override { return DispatchGetTypeInfoCount(this->object, count); }
    STDMETHOD(GetTypeInfo)(UINT index, LCID, ITypeInfo** info) override
    {
        if (!this->object.Admits("IDispatch::GetTypeInfo")) return RPC_E_WRONG_THREAD;
        return DispatchGetTypeInfo(__uuidof(I), index, info);
    }
    STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override
    {
        if (!this->object.Admits("IDispatch::GetIDsOfNames")) return RPC_E_WRONG_THREAD;
        return DispatchGetIDsOfNames(__uuidof(I), names, count, ids);
    }
    STDMETHOD(Invoke)(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* argumentError) override
    {
        if (!this->object.Admits("IDispatch::Invoke")) return RPC_E_WRONG_THREAD;
        return DispatchInvoke(__uuidof(I), static_cast<I*>(this), member, flags, parameters, result, exception,
                              argumentError);
    }

protected:
    ~DualPart() = default;
};

}  // namespace com
