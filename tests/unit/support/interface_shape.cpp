#include "interface_shape.h"

#include <comutil.h>
#include <wrl/client.h>

#include <algorithm>
#include <memory>

#include "com/failure.h"
#include "com/type_info.h"
#include "system/narrow.h"

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;

// Returns an owner of a description that type information lends. The owner gives it back.
template <class Description>
auto Lend(ITypeInfo* info, Description* description, void (STDMETHODCALLTYPE ITypeInfo::*giveBack)(Description*))
{
    const auto deleter = [info, giveBack](Description* lent) { (info->*giveBack)(lent); };
    return std::unique_ptr<Description, decltype(deleter)>(description, deleter);
}

auto AttributesOf(ITypeInfo* info)
{
    TYPEATTR* attributes = nullptr;
    com::Check(info->GetTypeAttr(&attributes));
    return Lend(info, attributes, &ITypeInfo::ReleaseTypeAttr);
}

std::string MemberName(ITypeInfo* info, MEMBERID member)
{
    _bstr_t name;
    com::Check(info->GetDocumentation(member, name.GetAddress(), nullptr, nullptr, nullptr));
    return Narrow(TextOf(name.GetBSTR()));
}

// A type library lists a dual interface in its late-bound form. Returns the form with the real signatures.
ComPtr<ITypeInfo> EarlyBound(ITypeInfo* info)
{
    ComPtr<ITypeInfo> early;
    HREFTYPE reference = 0;
    if (AttributesOf(info)->typekind == TKIND_INTERFACE) {
        early = info;
    } else {
        com::Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
        com::Check(info->GetRefTypeInfo(reference, &early));
    }
    return early;
}

void SetType(ITypeInfo* info, const TYPEDESC* type, int pointers, ParameterShape& parameter);

void SetEnumeration(ITypeInfo* named, UINT count, ParameterShape& parameter)
{
    parameter.type = VT_I4;
    parameter.enumeration = MemberName(named, MEMBERID_NIL);
    for (UINT i = 0; i < count; ++i) {
        VARDESC* raw = nullptr;
        com::Check(named->GetVarDesc(i, &raw));
        const auto constant = Lend(named, raw, &ITypeInfo::ReleaseVarDesc);
        if (_variant_t(1L) == *constant->lpvarValue) parameter.secondName = MemberName(named, constant->memid);
    }
}

// A type with a name: an alias, an enumeration, or an interface.
void SetNamedType(ITypeInfo* named, int pointers, ParameterShape& parameter)
{
    const auto attributes = AttributesOf(named);
    switch (attributes->typekind) {
        case TKIND_ALIAS: return SetType(named, &attributes->tdescAlias, pointers, parameter);
        case TKIND_ENUM: SetEnumeration(named, attributes->cVars, parameter); break;
        default: parameter.type = VT_DISPATCH; --pointers;
    }
    if (pointers < 0 || pointers > 1) throw com::Failure(TYPE_E_UNSUPFORMAT);
    parameter.isReference = pointers == 1;
}

void SetType(ITypeInfo* info, const TYPEDESC* type, int pointers, ParameterShape& parameter)
{
    for (; type->vt == VT_PTR; type = type->lptdesc) ++pointers;
    if (type->vt == VT_USERDEFINED) {
        ComPtr<ITypeInfo> named;
        com::Check(info->GetRefTypeInfo(type->hreftype, &named));
        return SetNamedType(named.Get(), pointers, parameter);
    }
    parameter.type = type->vt == VT_INT ? static_cast<VARTYPE>(VT_I4) : type->vt;
    if (pointers > 1) throw com::Failure(TYPE_E_UNSUPFORMAT);
    parameter.isReference = pointers == 1;
}

MethodShape DescribeMethod(ITypeInfo* info, UINT index)
{
    FUNCDESC* raw = nullptr;
    com::Check(info->GetFuncDesc(index, &raw));
    const auto function = Lend(info, raw, &ITypeInfo::ReleaseFuncDesc);
    MethodShape method;
    method.slot = static_cast<unsigned>(function->oVft) / sizeof(void*);
    method.id = function->memid;
    method.kind = function->invkind;
    const char* prefix = method.kind == INVOKE_PROPERTYGET ? "get_" : method.kind == INVOKE_PROPERTYPUT ? "put_" : "";
    method.name = prefix + MemberName(info, function->memid);

    std::vector<BSTR> names(function->cParams + 1u, nullptr);
    UINT found = 0;
    com::Check(info->GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &found));
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& element = function->lprgelemdescParam[i];
        const USHORT flags = element.paramdesc.wParamFlags;
        ParameterShape parameter;
        // The list has no name for the value of a property put.
        if (names[i + 1]) parameter.name = Narrow(TextOf(names[i + 1]));
        parameter.isOut = flags & PARAMFLAG_FOUT;
        parameter.isIn = !parameter.isOut || (flags & PARAMFLAG_FIN);
        parameter.isResult = flags & PARAMFLAG_FRETVAL;
        SetType(info, &element.tdesc, 0, parameter);
        method.parameters.push_back(parameter);
    }
    for (BSTR name : names) _bstr_t(name, false);
    return method;
}

std::unique_ptr<InterfaceShape> Describe(ITypeInfo* found)
{
    const ComPtr<ITypeInfo> info = EarlyBound(found);
    const auto attributes = AttributesOf(info.Get());
    auto shape = std::make_unique<InterfaceShape>();
    shape->name = MemberName(info.Get(), MEMBERID_NIL);
    shape->iid = attributes->guid;
    for (UINT i = 0; i < attributes->cFuncs; ++i) shape->methods.push_back(DescribeMethod(info.Get(), i));
    std::sort(shape->methods.begin(), shape->methods.end(),
              [](const MethodShape& a, const MethodShape& b) { return a.slot < b.slot; });
    for (unsigned i = 0; i < shape->methods.size(); ++i) {
        if (shape->methods[i].slot != kFirstOwnSlot + i) throw com::Failure(TYPE_E_UNSUPFORMAT);
    }
    return shape;
}

}  // namespace

std::size_t ParameterShape::Size() const
{
    if (isReference) return sizeof(void*);
    switch (type) {
        case VT_I2:
        case VT_BOOL: return sizeof(short);
        case VT_I4: return sizeof(long);
        case VT_R4: return sizeof(float);
        case VT_R8: return sizeof(double);
        case VT_BSTR:
        case VT_DISPATCH: return sizeof(void*);
        case VT_VARIANT: return sizeof(VARIANT);
        default: throw com::Failure(TYPE_E_UNSUPFORMAT);
    }
}

const InterfaceShape* ShapeOf(REFIID iid)
{
    // Never emptied, because vtables made from the shapes refer to them.
    static auto& known = *new std::vector<std::unique_ptr<InterfaceShape>>;
    for (const auto& shape : known) {
        if (IsEqualIID(shape->iid, iid)) return shape.get();
    }
    ITypeInfo* info = nullptr;
    if (FAILED(com::TypeInfoOf(iid, &info))) return nullptr;
    known.push_back(Describe(info));
    return known.back().get();
}

const InterfaceShape* ShapeNamed(const std::string& name)
{
    for (int number = 1; number <= com::CountTypeLibraries(); ++number) {
        ComPtr<ITypeLib> library;
        com::Check(com::LoadModuleTypeLibrary(number, &library));
        for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
            ComPtr<ITypeInfo> info;
            com::Check(library->GetTypeInfo(i, &info));
            if (MemberName(info.Get(), MEMBERID_NIL) == name) return ShapeOf(AttributesOf(info.Get())->guid);
        }
    }
    return nullptr;
}

}  // namespace zelt::test
