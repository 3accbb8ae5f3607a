#include "com/object_dispatch.h"

#include "com/dispatch.h"
#include "com/object.h"
#include "com/type_info.h"

namespace com {
namespace {

// Far from the identifiers that libraries give their members.
constexpr DISPID kFirstFurther = 0x5A000000;

}  // namespace

STDMETHODIMP ObjectDispatch::QueryInterface(REFIID iid, void** result) { return object.QueryInterface(iid, result); }
STDMETHODIMP_(ULONG) ObjectDispatch::AddRef() { return object.AddRef(); }
STDMETHODIMP_(ULONG) ObjectDispatch::Release() { return object.Release(); }

IDispatch* ObjectDispatch::Script()
{
    if (!script) script = object.ChooseScriptInterface();
    return script;
}

STDMETHODIMP ObjectDispatch::GetTypeInfoCount(UINT* count)
{
    if (!object.Admits("IDispatch::GetTypeInfoCount")) return RPC_E_WRONG_THREAD;
    return Script()->GetTypeInfoCount(count);
}

STDMETHODIMP ObjectDispatch::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info)
{
    if (!object.Admits("IDispatch::GetTypeInfo")) return RPC_E_WRONG_THREAD;
    return Script()->GetTypeInfo(index, locale, info);
}

STDMETHODIMP ObjectDispatch::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    if (!object.Admits("IDispatch::GetIDsOfNames")) return RPC_E_WRONG_THREAD;
    const HRESULT own = Script()->GetIDsOfNames(reserved, names, count, locale, ids);
    // The member may be known and one of its arguments not.
    if (own != DISP_E_UNKNOWNNAME || count == 0 || ids[0] != DISPID_UNKNOWN) return own;
    return NoThrow([&] { return FindFurther(names, count, locale, ids); });
}

HRESULT ObjectDispatch::FindFurther(LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    HRESULT result = DISP_E_UNKNOWNNAME;
    for (const InterfaceEntry* entry = object.Interfaces(); entry; entry = entry->Next()) {
        if (FindIn(entry->Iid(), names, count, ids, result)) return result;
    }
    for (const IID& iid : ModuleInterfaces()) {
        if (FindIn(iid, names, count, ids, result)) return result;
    }
    result = object.FindMember(names, count, locale, ids);
    if (ids[0] != DISPID_UNKNOWN) ids[0] = IdOf(IID_NULL, ids[0], names[0]);
    return result;
}

bool ObjectDispatch::FindIn(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids, HRESULT& result)
{
    ITypeInfo* info = nullptr;
    if (FAILED(TypeInfoOf(iid, &info))) return false;
    const HRESULT found = info->GetIDsOfNames(names, count, ids);
    if (ids[0] == DISPID_UNKNOWN || (FAILED(found) && found != DISP_E_UNKNOWNNAME) || !object.Reach(iid)) {
        ids[0] = DISPID_UNKNOWN;
        return false;
    }
    ids[0] = IdOf(iid, ids[0], names[0]);
    result = found;
    return true;
}

DISPID ObjectDispatch::IdOf(REFIID iid, DISPID id, const wchar_t* name)
{
    std::size_t place = 0;
    while (place < members.size() && !(members[place].id == id && IsEqualIID(members[place].iid, iid))) ++place;
    if (place == members.size()) members.push_back({iid, id, name});
    return kFirstFurther + static_cast<DISPID>(place);
}

STDMETHODIMP ObjectDispatch::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                                    VARIANT* result, EXCEPINFO* exception, UINT* argumentError)
{
    if (!object.Admits("IDispatch::Invoke")) return RPC_E_WRONG_THREAD;
    const auto place = static_cast<std::size_t>(static_cast<long long>(member) - kFirstFurther);
    if (member < kFirstFurther || place >= members.size()) {
        return Script()->Invoke(member, reserved, locale, flags, parameters, result, exception, argumentError);
    }
    // A copy, because the call may let others in that ask for more members.
    return NoThrow([&] {
        const Member wanted = members[place];
        if (IsEqualIID(wanted.iid, IID_NULL)) {
            return object.InvokeMember(wanted.name, wanted.id, locale, flags, parameters, result, exception,
                                       argumentError);
        }
        const InterfaceEntry* entry = object.Reach(wanted.iid);
        if (!entry) return DISP_E_MEMBERNOTFOUND;
        return DispatchInvoke(wanted.iid, entry->Pointer(), wanted.id, flags, parameters, result, exception,
                              argumentError);
    });
}

}  // namespace com
