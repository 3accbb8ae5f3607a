// IDispatch of a whole object: a script reaches every member of every dual interface that the object has, not only one interface's.
// The object's script interface comes first and keeps its own identifiers. Members of the others, in the order of the object's
// interface map and then of this module's type libraries, get identifiers as they are asked for, and keep them as long as the object
// lives. Names that nothing here knows are left to the object (Object::FindMember).
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

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
    // A member beyond the script interface. With a null identifier of an interface it is one that the object found.
    struct Member {
        IID iid;
        DISPID id;
        std::wstring name;
    };

    IDispatch* Script();
    HRESULT FindFurther(LPOLESTR* names, UINT count, LCID locale, DISPID* ids);
    bool FindIn(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids, HRESULT& result);
    DISPID IdOf(REFIID iid, DISPID id, const wchar_t* name);

    Object& object;
    IDispatch* script = nullptr;  // a part of the object, chosen when it is first needed
    std::vector<Member> members;  // a member's place makes its identifier
};

}  // namespace com
