// IDispatch of a whole object: a script reaches the members of all the object's dual interfaces. A name is looked
// up first in the object's script interface, whose members keep their own identifiers. Then come the interfaces
// that this module's type libraries describe, in the order of the libraries, then those in the object's map that only the
// registry describes, and last the names that no interface has (Object::FindMember). An identifier depends only on the
// interface and the member, because programs get it from one object and use it for every object of that kind. The identifiers
// that Automation itself defines, such as those of an object's value and enumerator, are used without a look-up: they go to the
// script interface first, then to Object::InvokeMember.
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
