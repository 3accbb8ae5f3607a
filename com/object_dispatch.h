// IDispatch of a whole object: a script reaches every member of every dual interface that the object has, not only one interface's.
// The members of the object's script interface come first and keep their own identifiers. Then come those of this module's libraries,
// in the order of the libraries, and those of interfaces that only the registry describes; last, names that only something else knows
// (Object::FindMember). Identifiers follow from interface and member alone: programs keep them for all objects of a kind.
#pragma once

#include <windows.h>
#include <oaidl.h>

namespace com {

class Object;

class ObjectDispatch final : public IDispatch {
public:
    explicit ObjectDispatch(Object& object) : object(object) {}

    STDMETHOD(QueryInterface)(REFIID iid, void** result) override;
    STDMETHOD_(ULONG, AddRef)() override;
    STDMETHOD_(ULONG, Release)() override;
    STDMETHOD(GetTypeInfoCount)(UINT* count) override;
    STDMETHOD(GetTypeInfo)(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHOD(GetIDsOfNames)(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHOD(Invoke)(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* argumentError) override;

private:
    IDispatch* Script();
    HRESULT FindFurther(LPOLESTR* names, UINT count, LCID locale, DISPID* ids);
    bool FindIn(std::size_t place, REFIID iid, LPOLESTR* names, UINT count, DISPID* ids, HRESULT& result);
    HRESULT InvokeFurther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                          EXCEPINFO* exception, UINT* argumentError);

    Object& object;
    IDispatch* script = nullptr;  // a part of the object, chosen when it is first needed
};

}  // namespace com
