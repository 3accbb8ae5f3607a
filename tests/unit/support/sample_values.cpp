#include "sample_values.h"

#include <oleauto.h>

#include <cstring>
#include <stdexcept>

#include "com/failure.h"

namespace zelt::test {
namespace {

struct TypeRow {
    const char* name;
    VARTYPE libraryType;
    VARTYPE variantType;
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {"string",                VT_BSTR,     VT_EMPTY},
    {"double",                VT_R8,       VT_EMPTY},
    {"long",                  VT_I4,       VT_EMPTY},
    {"short",                 VT_I2,       VT_EMPTY},
    {"VT_R4",                 VT_R4,       VT_EMPTY},
    {"VARIANT_BOOL",          VT_BOOL,     VT_EMPTY},
    {"flags",                 VT_I4,       VT_EMPTY},
    {"interface",             VT_DISPATCH, VT_EMPTY},
    {"CapeValidationStatus",  VT_I4,       VT_EMPTY},
    {"CapePortType",          VT_I4,       VT_EMPTY},
    {"CapePortDirection",     VT_I4,       VT_EMPTY},
    {"CapeParamMode",         VT_I4,       VT_EMPTY},
    {"CapeParamType",         VT_I4,       VT_EMPTY},
    {"CapeReactionType",      VT_I4,       VT_EMPTY},
    {"CapeReactionRateBasis", VT_I4,       VT_EMPTY},
    {"any",                   VT_VARIANT,  VT_EMPTY},
    {"strings",               VT_VARIANT,  VT_ARRAY | VT_BSTR},
    {"doubles",               VT_VARIANT,  VT_ARRAY | VT_R8},
    {"integers",              VT_VARIANT,  VT_ARRAY | VT_I4},
    {"booleans",              VT_VARIANT,  VT_ARRAY | VT_BOOL},
    {"variants",              VT_VARIANT,  VT_ARRAY | VT_VARIANT},
    {"objects",               VT_VARIANT,  VT_ARRAY | VT_DISPATCH},
};
// clang-format on

const TypeRow& RowOf(const std::string& type)
{
    for (const TypeRow& row : kTypes) {
        if (type == row.name) return row;
    }
    // Every other enumeration of the library.
    static const TypeRow kEnumeration = {"", VT_I4, VT_EMPTY};
    if (type.starts_with("Cape")) return kEnumeration;
    throw std::runtime_error("unknown type: " + type);
}

_variant_t Scalar(VARTYPE type, std::size_t index, const std::wstring& name, IDispatch* object)
{
    _variant_t value;
    const auto number = static_cast<long>(index);
    switch (type) {
        case VT_BSTR: return _variant_t((L"the " + name + L" " + std::to_wstring(index)).c_str());
        case VT_R8: return _variant_t(0.1 + static_cast<double>(index) * 1e3);
        case VT_R4: return _variant_t(0.25f + static_cast<float>(index));
        case VT_I4: return _variant_t(70001L + number);
        case VT_I2: return _variant_t(static_cast<short>(3001 + number));
        case VT_BOOL:
            value.vt = VT_BOOL;
            value.boolVal = index % 2 ? VARIANT_FALSE : VARIANT_TRUE;
            return value;
        case VT_DISPATCH: return _variant_t(object);
        case VT_VARIANT: return index % 2 ? Scalar(VT_BSTR, index, name, object) : Scalar(VT_R8, index, name, object);
        default: throw std::runtime_error("no sample of this type");
    }
}

// Two elements, and a lower bound that is not 0.
_variant_t Array(VARTYPE element, std::size_t index, const std::wstring& name, IDispatch* object)
{
    SAFEARRAYBOUND bound = {2, static_cast<LONG>(3 + index)};
    _variant_t value;
    value.parray = SafeArrayCreate(element, 1, &bound);
    if (!value.parray) throw com::Failure(E_OUTOFMEMORY);
    value.vt = static_cast<VARTYPE>(VT_ARRAY | element);
    for (LONG i = 0; i < 2; ++i) {
        LONG at = bound.lLbound + i;
        _variant_t item = Scalar(element, 10 * index + i, name, object);
        void* source = element == VT_VARIANT                          ? static_cast<void*>(&item)
                       : element == VT_BSTR || element == VT_DISPATCH ? static_cast<void*>(item.bstrVal)
                                                                      : static_cast<void*>(&item.lVal);
        com::Check(SafeArrayPutElement(value.parray, &at, source));
    }
    return value;
}

std::size_t SizeOf(VARTYPE type)
{
    switch (type) {
        case VT_I2:
        case VT_BOOL: return 2;
        case VT_R4:
        case VT_I4: return 4;
        case VT_R8: return 8;
        case VT_BSTR:
        case VT_DISPATCH: return sizeof(void*);
        default: throw std::runtime_error("no size of this type");
    }
}

bool IsSameText(BSTR a, BSTR b)
{
    return SysStringByteLen(a) == SysStringByteLen(b) && !a == !b &&
           (!a || std::memcmp(a, b, SysStringByteLen(a)) == 0);
}

bool IsSameArray(SAFEARRAY* a, SAFEARRAY* b, VARTYPE element)
{
    if (!a || !b || SafeArrayGetDim(a) != 1 || SafeArrayGetDim(b) != 1) return false;
    VARTYPE types[2];
    LONG lower[2], upper[2];
    SAFEARRAY* arrays[] = {a, b};
    for (int i = 0; i < 2; ++i) {
        com::Check(SafeArrayGetVartype(arrays[i], &types[i]));
        com::Check(SafeArrayGetLBound(arrays[i], 1, &lower[i]));
        com::Check(SafeArrayGetUBound(arrays[i], 1, &upper[i]));
    }
    if (types[0] != types[1] || types[0] != element || lower[0] != lower[1] || upper[0] != upper[1]) return false;
    for (LONG at = lower[0]; at <= upper[0]; ++at) {
        _variant_t items[2];
        for (int i = 0; i < 2; ++i) {
            void* place = element == VT_VARIANT ? static_cast<void*>(&items[i]) : static_cast<void*>(&items[i].lVal);
            com::Check(SafeArrayGetElement(arrays[i], &at, place));
            if (element != VT_VARIANT) items[i].vt = element;
        }
        if (!IsSameValue(items[0], items[1])) return false;
    }
    return true;
}

}  // namespace

VARTYPE ExpectedVariantType(const std::string& type) { return RowOf(type).variantType; }

VARTYPE LibraryType(const std::string& type) { return RowOf(type).libraryType; }

_variant_t SampleValue(const TableStep& argument, std::size_t index, Filling filling, IDispatch* object)
{
    const std::wstring name(argument.name.begin(), argument.name.end());
    const TypeRow& row = RowOf(argument.type);
    if (filling == Filling::Nulls && row.libraryType == VT_VARIANT) return _variant_t();
    if (filling == Filling::Nulls && (row.libraryType == VT_BSTR || row.libraryType == VT_DISPATCH)) {
        VARIANT null;
        null.vt = row.libraryType;
        null.bstrVal = nullptr;
        return _variant_t(null, false);
    }
    if (argument.type == "flags") return _variant_t(3L);
    if (argument.type.starts_with("Cape")) return _variant_t(1L);
    if (row.variantType != VT_EMPTY) {
        return Array(static_cast<VARTYPE>(row.variantType & VT_TYPEMASK), index, name, object);
    }
    return Scalar(row.libraryType, index, name, object);
}

_variant_t CopyOf(const VARIANT& value)
{
    VARIANT shallow = value;
    if (value.vt == VT_BSTR && !value.bstrVal) return _variant_t(shallow, false);
    return _variant_t(value);
}

void StoreValue(void* place, VARTYPE type, const VARIANT& value)
{
    _variant_t copy = CopyOf(value);
    if (type == VT_VARIANT) {
        *static_cast<VARIANT*>(place) = copy.Detach();
        return;
    }
    std::memcpy(place, &copy.lVal, SizeOf(type));
    copy.Detach();
}

_variant_t LoadValue(const void* place, VARTYPE type)
{
    if (type == VT_VARIANT) return _variant_t(*static_cast<const VARIANT*>(place));
    VARIANT borrowed;
    VariantInit(&borrowed);
    borrowed.vt = type;
    std::memcpy(&borrowed.lVal, place, SizeOf(type));
    return CopyOf(borrowed);
}

bool IsSameValue(const VARIANT& a, const VARIANT& b)
{
    if (a.vt != b.vt) return false;
    if (a.vt & VT_ARRAY) return IsSameArray(a.parray, b.parray, static_cast<VARTYPE>(a.vt & VT_TYPEMASK));
    if (a.vt == VT_EMPTY) return true;
    if (a.vt == VT_BSTR) return IsSameText(a.bstrVal, b.bstrVal);
    return std::memcmp(&a.lVal, &b.lVal, SizeOf(a.vt)) == 0;
}

}  // namespace zelt::test
