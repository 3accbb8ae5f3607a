#include "com/object_dispatch.h"

#include <algorithm>
#include <string>
#include <vector>

#include "com/dispatch.h"
#include "com/dual_interface.h"
#include "com/object.h"
#include "com/type_info.h"

namespace com {
namespace {

// Identifiers far from those that type libraries assign. One from kFirstMember up holds the place of an interface and the place
// of a member in it; one from kFirstName up, the place of a name that no interface of the object has.
constexpr DISPID kFirstMember = 0x5A000000;
constexpr int kMemberBits = 10;
constexpr DISPID kFirstName = 0x5C000000;
constexpr std::size_t kMostPlaces = static_cast<std::size_t>(kFirstName - kFirstMember) >> kMemberBits;

// Keeps the object alive while foreign code runs, which may release the object.
class Held {
public:
    explicit Held(Object& object) : object(object) { object.Hold(); }
    ~Held() { object.LetGo(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

private:
    Object& object;
};

// Interfaces that no library of this module describes, and names of members that belong to no interface, in the order in which
// the process met them. Never forgotten, so that identifiers stay valid.
std::vector<IID>& OtherInterfaces()
{
    static auto& known = *new std::vector<IID>;
    return known;
}
std::vector<std::wstring>& OtherNames()
{
    static auto& known = *new std::vector<std::wstring>;
    return known;
}

std::size_t PlaceOfOther(REFIID iid)
{
    std::vector<IID>& known = OtherInterfaces();
    const auto found = std::find_if(known.begin(), known.end(), [&](const IID& one) { return IsEqualIID(one, iid); });
    const auto place = static_cast<std::size_t>(found - known.begin());
    if (found == known.end()) known.push_back(iid);
    return ModuleInterfaces().size() + place;
}

bool IsOfModule(REFIID iid)
{
    ITypeInfo* info = nullptr;
    return SUCCEEDED(TypeInfoOf(iid, &info));
}

// The interface's type information in the form for late binding; null for an interface without usable type information.
Microsoft::WRL::ComPtr<ITypeInfo> InfoOf(REFIID iid)
{
    ITypeInfo* own = nullptr;
    if (SUCCEEDED(TypeInfoOf(iid, &own))) return own;
    const auto described = DualInterfaceOf(iid);
    return described ? described->info : nullptr;
}

// The place of the first function with this identifier; -1 when there is none.
int OrdinalOf(ITypeInfo* info, DISPID id)
{
    for (UINT ordinal = 0; ordinal < 1u << kMemberBits; ++ordinal) {
        FUNCDESC* function = nullptr;
        if (FAILED(info->GetFuncDesc(ordinal, &function))) break;
        const bool isIt = function->memid == id;
        info->ReleaseFuncDesc(function);
        if (isIt) return static_cast<int>(ordinal);
    }
    return -1;
}

DISPID IdAt(ITypeInfo* info, UINT ordinal)
{
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(ordinal, &function))) return DISPID_UNKNOWN;
    const DISPID id = function->memid;
    info->ReleaseFuncDesc(function);
    return id;
}

DISPID IdOfName(const wchar_t* name)
{
    std::vector<std::wstring>& known = OtherNames();
    const auto found =
        std::find_if(known.begin(), known.end(), [&](const std::wstring& one) { return IsSameMemberName(one, name); });
    const auto place = static_cast<DISPID>(found - known.begin());
    if (found == known.end()) known.emplace_back(name);
    return kFirstName + place;
}

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
    const Held held(object);
    return Script()->GetTypeInfoCount(count);
}

STDMETHODIMP ObjectDispatch::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info)
{
    if (!object.Admits("IDispatch::GetTypeInfo")) return RPC_E_WRONG_THREAD;
    const Held held(object);
    return Script()->GetTypeInfo(index, locale, info);
}

STDMETHODIMP ObjectDispatch::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    if (!object.Admits("IDispatch::GetIDsOfNames")) return RPC_E_WRONG_THREAD;
    if (!names || !ids) return E_POINTER;
    const Held held(object);
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const HRESULT own = Script()->GetIDsOfNames(reserved, names, count, locale, ids);
    // The member may be known, and only the name of one of its arguments unknown.
    if (own != DISP_E_UNKNOWNNAME || count == 0 || ids[0] != DISPID_UNKNOWN) return own;
    return NoThrow([&] { return FindFurther(names, count, locale, ids); });
}

HRESULT ObjectDispatch::FindFurther(LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    HRESULT result = DISP_E_UNKNOWNNAME;
    std::size_t place = 0;
    for (const IID& iid : ModuleInterfaces()) {
        if (FindIn(place++, iid, names, count, ids, result)) return result;
    }
    for (const InterfaceEntry* entry = object.Interfaces(); entry; entry = entry->Next()) {
        if (IsOfModule(entry->Iid()) || !InfoOf(entry->Iid())) continue;
        if (FindIn(PlaceOfOther(entry->Iid()), entry->Iid(), names, count, ids, result)) return result;
    }
    result = object.FindMember(names, count, locale, ids);
    if (ids[0] != DISPID_UNKNOWN) ids[0] = IdOfName(names[0]);
    return result;
}

bool ObjectDispatch::FindIn(std::size_t place, REFIID iid, LPOLESTR* names, UINT count, DISPID* ids, HRESULT& result)
{
    const Microsoft::WRL::ComPtr<ITypeInfo> info = InfoOf(iid);
    if (!info || place >= kMostPlaces) return false;
    const HRESULT found = info->GetIDsOfNames(names, count, ids);
    const bool isKnown = ids[0] != DISPID_UNKNOWN && (SUCCEEDED(found) || found == DISP_E_UNKNOWNNAME);
    const int ordinal = isKnown ? OrdinalOf(info.Get(), ids[0]) : -1;
    if (ordinal < 0 || !object.Reach(iid)) {
        std::fill_n(ids, count, DISPID_UNKNOWN);
        return false;
    }
    ids[0] = kFirstMember + static_cast<DISPID>(place << kMemberBits) + ordinal;
    result = found;
    return true;
}

STDMETHODIMP ObjectDispatch::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                                    VARIANT* result, EXCEPINFO* exception, UINT* argumentError)
{
    if (!object.Admits("IDispatch::Invoke")) return RPC_E_WRONG_THREAD;
    const Held held(object);
    if (member < kFirstMember) {
        const HRESULT own =
            Script()->Invoke(member, reserved, locale, flags, parameters, result, exception, argumentError);
        if (own != DISP_E_MEMBERNOTFOUND || !IsStandardMember(member)) return own;
        return NoThrow([&] {
            return object.InvokeMember(StandardMember(member), locale, flags, parameters, result, exception,
                                       argumentError);
        });
    }
    return NoThrow([&] { return InvokeFurther(member, locale, flags, parameters, result, exception, argumentError); });
}

HRESULT ObjectDispatch::InvokeFurther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                      EXCEPINFO* exception, UINT* argumentError)
{
    if (member >= kFirstName) {
        const auto number = static_cast<std::size_t>(member - kFirstName);
        if (number >= OtherNames().size()) return DISP_E_MEMBERNOTFOUND;
        // A copy, because the call may let in other calls, which may add names.
        const std::wstring name = OtherNames()[number];
        return object.InvokeMember({name}, locale, flags, parameters, result, exception, argumentError);
    }
    const auto offset = static_cast<std::size_t>(member - kFirstMember);
    const std::size_t place = offset >> kMemberBits;
    const std::vector<IID>& own = ModuleInterfaces();
    if (place >= own.size() + OtherInterfaces().size()) return DISP_E_MEMBERNOTFOUND;
    const IID iid = place < own.size() ? own[place] : OtherInterfaces()[place - own.size()];
    const Microsoft::WRL::ComPtr<ITypeInfo> info = InfoOf(iid);
    const InterfaceEntry* const entry = info ? object.Reach(iid) : nullptr;
    const DISPID id = entry ? IdAt(info.Get(), static_cast<UINT>(offset & ((1u << kMemberBits) - 1))) : DISPID_UNKNOWN;
    if (id == DISPID_UNKNOWN) return DISP_E_MEMBERNOTFOUND;
    return DispatchInvoke(info.Get(), entry->Pointer(), id, flags, parameters, result, exception, argumentError);
}

}  // namespace com
