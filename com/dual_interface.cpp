#include "com/dual_interface.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <map>

#include "com/failure.h"
#include "com/iid_less.h"
#include "com/type_info.h"

namespace com {
namespace {

using Microsoft::WRL::ComPtr;

// Releases, at the end of a scope, what an ITypeInfo handed out.
template <class Description, void (STDMETHODCALLTYPE ITypeInfo::*Return)(Description*)>
struct ReturnTo {
    ITypeInfo* info;
    void operator()(Description* lent) const { (info->*Return)(lent); }
};
using Attributes = std::unique_ptr<TYPEATTR, ReturnTo<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>>;
using Function = std::unique_ptr<FUNCDESC, ReturnTo<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>>;
using Variable = std::unique_ptr<VARDESC, ReturnTo<VARDESC, &ITypeInfo::ReleaseVarDesc>>;

Attributes AttributesOf(ITypeInfo* info)
{
    TYPEATTR* attributes = nullptr;
    Check(info->GetTypeAttr(&attributes));
    return Attributes(attributes, {info});
}

ComPtr<ITypeInfo> Referred(ITypeInfo* info, HREFTYPE reference)
{
    ComPtr<ITypeInfo> referred;
    Check(info->GetRefTypeInfo(reference, &referred));
    return referred;
}

std::string TakeName(BSTR name)
{
    std::string text;
    // Identifiers consist of letters, digits and underscores. Any other character is logged as a question mark.
    for (const wchar_t* letter = name; letter && *letter; ++letter) {
        const wchar_t c = *letter;
        const bool isPlain =
            (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || (c >= L'0' && c <= L'9') || c == L'_';
        text += isPlain ? static_cast<char>(c) : '?';
    }
    SysFreeString(name);
    return text;
}

std::string NameOf(ITypeInfo* info, MEMBERID member)
{
    BSTR name = nullptr;
    Check(info->GetDocumentation(member, &name, nullptr, nullptr, nullptr));
    return TakeName(name);
}

// Bytes of a value of a plain type; 0 for any other type.
std::size_t SizeOf(VARTYPE type)
{
    switch (type) {
        case VT_I1:
        case VT_UI1: return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL: return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_ERROR:
        case VT_HRESULT:
        case VT_R4: return 4;
        case VT_R8:
        case VT_CY:
        case VT_DATE:
        case VT_I8:
        case VT_UI8: return 8;
        case VT_DECIMAL: return sizeof(DECIMAL);
        case VT_VARIANT: return sizeof(VARIANT);
        case VT_BSTR:
        case VT_DISPATCH:
        case VT_UNKNOWN:
        case VT_LPSTR:
        case VT_LPWSTR: return sizeof(void*);
        default: return 0;
    }
}

std::shared_ptr<const NamedValues> ValuesOf(ITypeInfo* info, UINT count)
{
    auto values = std::make_shared<NamedValues>();
    values->name = NameOf(info, MEMBERID_NIL);
    for (UINT i = 0; i < count; ++i) {
        VARDESC* described = nullptr;
        Check(info->GetVarDesc(i, &described));
        const Variable variable(described, {info});
        if (variable->varkind != VAR_CONST || !variable->lpvarValue) continue;
        VARIANT number;
        VariantInit(&number);
        if (FAILED(VariantChangeType(&number, variable->lpvarValue, 0, VT_I4))) continue;
        values->values.emplace_back(number.lVal, NameOf(info, variable->memid));
    }
    return values;
}

void Describe(ITypeInfo* info, const TYPEDESC& type, DualParameter& parameter);

// Describes a value whose type has a name.
void DescribeNamed(ITypeInfo* named, DualParameter& parameter)
{
    const Attributes attributes = AttributesOf(named);
    switch (attributes->typekind) {
        case TKIND_ALIAS: return Describe(named, attributes->tdescAlias, parameter);
        case TKIND_ENUM:
            parameter.type = VT_I4;
            parameter.size = sizeof(long);
            parameter.enumeration = ValuesOf(named, attributes->cVars);
            return;
        case TKIND_INTERFACE:
        case TKIND_DISPATCH:
        case TKIND_COCLASS:
            if (parameter.pointers-- == 0) throw Failure(TYPE_E_UNSUPFORMAT);
            if (attributes->typekind != TKIND_COCLASS) parameter.iid = attributes->guid;
            parameter.type = VT_UNKNOWN;
            parameter.size = sizeof(void*);
            return;
        default:
            parameter.type = VT_RECORD;
            parameter.size = attributes->cbSizeInstance;
            if (parameter.size == 0 && parameter.pointers == 0) throw Failure(TYPE_E_UNSUPFORMAT);
            return;
    }
}

void Describe(ITypeInfo* info, const TYPEDESC& type, DualParameter& parameter)
{
    const TYPEDESC* value = &type;
    for (; value->vt == VT_PTR; value = value->lptdesc) ++parameter.pointers;
    switch (value->vt) {
        case VT_USERDEFINED: return DescribeNamed(Referred(info, value->hreftype).Get(), parameter);
        case VT_SAFEARRAY: {
            DualParameter element;
            Describe(info, *value->lptdesc, element);
            parameter.type = static_cast<VARTYPE>(VT_ARRAY | element.type);
            parameter.size = sizeof(void*);
            return;
        }
        default:
            parameter.type = value->vt;
            parameter.size = SizeOf(value->vt);
            if (value->vt == VT_DISPATCH) parameter.iid = IID_IDispatch;
            if (value->vt == VT_UNKNOWN) parameter.iid = IID_IUnknown;
            // Behind a pointer, a value of an unknown type is accepted: the pointer is passed on, and not followed.
            if (parameter.size == 0 && parameter.pointers == 0) throw Failure(TYPE_E_UNSUPFORMAT);
    }
}

std::size_t WordsOf(const DualParameter& parameter)
{
#ifdef _WIN64
    static_cast<void>(parameter);
    return 1;
#else
    return parameter.pointers > 0 ? 1 : (parameter.size + sizeof(void*) - 1) / sizeof(void*);
#endif
}

std::string Prefix(INVOKEKIND kind)
{
    switch (kind) {
        case INVOKE_PROPERTYGET: return "get_";
        case INVOKE_PROPERTYPUT: return "put_";
        case INVOKE_PROPERTYPUTREF: return "putref_";
        default: return "";
    }
}

DualMethod DescribeMethod(ITypeInfo* info, const FUNCDESC& function, const std::string& interfaceName)
{
    if (function.callconv != CC_STDCALL || function.elemdescFunc.tdesc.vt != VT_HRESULT || function.cParams < 0) {
        throw Failure(TYPE_E_UNSUPFORMAT);
    }
    std::vector<BSTR> given(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    std::vector<std::string> names;
    names.reserve(given.size());
    UINT found = 0;
    Check(info->GetNames(function.memid, given.data(), static_cast<UINT>(given.size()), &found));
    for (BSTR name : given) names.push_back(TakeName(name));

    DualMethod method;
    method.name = interfaceName + "::" + Prefix(function.invkind) + names[0];
    for (SHORT i = 0; i < function.cParams; ++i) {
        const ELEMDESC& element = function.lprgelemdescParam[i];
        DualParameter parameter;
        const std::size_t number = static_cast<std::size_t>(i) + 1;
        // A parameter without a name in the library gets the member's name. So does a put's new value: the library may give it
        // the name of the get's result.
        const bool isNewValue = number + 1 == names.size() &&
                                (function.invkind == INVOKE_PROPERTYPUT || function.invkind == INVOKE_PROPERTYPUTREF);
        parameter.name = isNewValue || names[number].empty() ? names[0] : names[number];
        parameter.isOut = element.paramdesc.wParamFlags & PARAMFLAG_FOUT;
        parameter.isIn = !parameter.isOut || (element.paramdesc.wParamFlags & PARAMFLAG_FIN);
        Describe(info, element.tdesc, parameter);
        parameter.place = method.words;
        method.words += WordsOf(parameter);
        method.parameters.push_back(std::move(parameter));
    }
    // Enough for any method. Copying a page or more of arguments to the stack could skip the stack's guard page.
    constexpr std::size_t kMostWords = 256;
    if (method.words > kMostWords) throw Failure(TYPE_E_UNSUPFORMAT);
    return method;
}

// A dual interface's type information may be its dispinterface, which leads to the real signatures.
ComPtr<ITypeInfo> WithSignatures(ITypeInfo* info)
{
    const Attributes attributes = AttributesOf(info);
    if (attributes->typekind == TKIND_INTERFACE) return info;
    if (attributes->typekind != TKIND_DISPATCH || !(attributes->wTypeFlags & TYPEFLAG_FDUAL)) {
        throw Failure(TYPE_E_WRONGTYPEKIND);
    }
    HREFTYPE reference = 0;
    Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    return Referred(info, reference);
}

// Appends the methods that an interface adds to IDispatch, those of its bases first.
void AppendMethods(ITypeInfo* info, const std::string& interfaceName, int depth, std::vector<DualMethod>& methods)
{
    constexpr int kMostBases = 16;
    const Attributes attributes = AttributesOf(info);
    if (IsEqualIID(attributes->guid, IID_IDispatch)) return;
    HREFTYPE base = 0;
    // IUnknown has no base: an interface that derives from it and not from IDispatch is not dual.
    if (attributes->cImplTypes == 0 || depth > kMostBases) throw Failure(TYPE_E_WRONGTYPEKIND);
    Check(info->GetRefTypeOfImplType(0, &base));
    AppendMethods(WithSignatures(Referred(info, base).Get()).Get(), interfaceName, depth + 1, methods);

    std::vector<Function> functions;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* described = nullptr;
        Check(info->GetFuncDesc(i, &described));
        functions.emplace_back(described, ReturnTo<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>{info});
    }
    std::stable_sort(functions.begin(), functions.end(),
                     [](const Function& a, const Function& b) { return a->oVft < b->oVft; });
    for (const Function& function : functions) methods.push_back(DescribeMethod(info, *function, interfaceName));
}

std::shared_ptr<const DualInterface> Make(REFIID iid)
{
    auto made = std::make_shared<DualInterface>();
    ITypeInfo* own = nullptr;
    if (SUCCEEDED(TypeInfoOf(iid, &own))) {
        made->info = own;
    } else {
        Check(RegisteredTypeInfo(iid, &made->info));
    }
    made->iid = iid;
    const ComPtr<ITypeInfo> signatures = WithSignatures(made->info.Get());
    AppendMethods(signatures.Get(), NameOf(signatures.Get(), MEMBERID_NIL), 0, made->methods);
    return made;
}

auto& Known()
{
    static auto& known = *new std::map<IID, std::shared_ptr<const DualInterface>, IidLess>;
    return known;
}

}  // namespace

const void* DualParameter::Argument(const void* words) const
{
    const auto* argument = static_cast<const void* const*>(words) + place;
#ifdef _WIN64
    // A value that fits no register is passed as the address of a copy.
    const bool fits = size == 1 || size == 2 || size == 4 || size == 8;
    if (pointers == 0 && !fits) return *argument;
#endif
    return argument;
}

std::shared_ptr<const DualInterface> DualInterfaceOf(REFIID iid)
{
    if (const auto known = Known().find(iid); known != Known().end()) return known->second;
    std::shared_ptr<const DualInterface> made;
    // A failure is not remembered: the interface's library may be registered later.
    if (SUCCEEDED(NoThrow([&] {
            made = Make(iid);
            Known().emplace(iid, made);
            return S_OK;
        })))
        return made;
    return nullptr;
}

void ReleaseDualInterfaces() { Known().clear(); }

}  // namespace com
