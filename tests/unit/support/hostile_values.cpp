#include "hostile_values.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace zelt::test {
namespace {

constexpr VARTYPE kHostileElements[] = {VT_I2,       VT_I4,    VT_R4,   VT_R8,      VT_CY,      VT_DATE,    VT_BSTR,
                                        VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT, VT_UNKNOWN, VT_DECIMAL, VT_I1,
                                        VT_UI1,      VT_UI2,   VT_UI4,  VT_INT,     VT_UINT};
constexpr int kMostNesting = 20;

}  // namespace

const VARIANT& HostileValues::Next()
{
    Forget();
    value = Value(0);
    return value;
}

BSTR HostileValues::NextString()
{
    Forget();
    return String();
}

void HostileValues::Forget()
{
    for (const auto& release : owned) release();
    owned.clear();
    inner.clear();
    pointers.clear();
}

// An address at which nothing is allocated.
void* HostileValues::Wild()
{
    constexpr std::uintptr_t kAddresses[] = {1, 2, 7, 0x1000, 0xFFFF, ~std::uintptr_t{0}, ~std::uintptr_t{0x0F}};
    return reinterpret_cast<void*>(dice.Of(kAddresses));
}

BSTR HostileValues::String()
{
    if (dice.Once(6)) return nullptr;
    if (dice.Once(6)) return static_cast<BSTR>(Wild());
    std::wstring text;
    for (std::uint32_t i = dice.Once(20) ? 3000 : dice.Below(12); i > 0; --i) {
        text += dice.Once(3) ? static_cast<wchar_t>(dice.Any()) : static_cast<wchar_t>(L' ' + dice.Below(95));
    }
    BSTR string = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    owned.push_back([string] { SysFreeString(string); });
    return string;
}

VARIANT HostileValues::Scalar(VARTYPE type)
{
    constexpr double kNumbers[] = {0.0,
                                   -0.0,
                                   1e308,
                                   -1.7976931348623157e308,
                                   4.9e-324,
                                   std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity()};
    VARIANT scalar;
    for (std::size_t i = 0; i < sizeof scalar / 4; ++i) reinterpret_cast<std::uint32_t*>(&scalar)[i] = dice.Any();
    scalar.vt = type;
    switch (type) {
        case VT_BSTR: scalar.bstrVal = String(); break;
        case VT_R8:
            if (dice.Once(2)) scalar.dblVal = dice.Of(kNumbers);
            break;
        // The bits of these types are used as pointers.
        case VT_DISPATCH:
        case VT_UNKNOWN:
        case VT_RECORD:
        case VT_PTR:
        case VT_LPSTR:
        case VT_LPWSTR: scalar.byref = dice.Once(3) ? nullptr : Wild(); break;
        default: break;
    }
    return scalar;
}

VARIANT HostileValues::Value(int nesting)
{
    VARTYPE type = dice.Once(4) ? static_cast<VARTYPE>(dice.Below(80)) : dice.Of(kHostileElements);
    if (dice.Once(40)) type = static_cast<VARTYPE>(dice.Below(0x1000));
    VARIANT made = Scalar(type);
    if (nesting < kMostNesting && !dice.Once(3)) {
        made.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        made.parray = dice.Once(12) ? static_cast<SAFEARRAY*>(dice.Once(2) ? nullptr : Wild()) : Array(type, nesting);
    }
    if (dice.Once(6)) {
        // Adds one more pointer, which may lead nowhere.
        made.vt |= VT_BYREF;
        inner.push_back(made);
        pointers.push_back(made.parray);
        made.byref = made.vt & VT_ARRAY ? static_cast<void*>(&pointers.back()) : &inner.back().lVal;
        if ((made.vt & VT_TYPEMASK) == VT_VARIANT && !(made.vt & VT_ARRAY)) {
            inner.push_back(Value(kMostNesting));
            made.byref = &inner.back();
        }
        if (dice.Once(4)) made.byref = dice.Once(2) ? nullptr : Wild();
    }
    if (dice.Once(30)) made.vt |= VT_VECTOR;
    if (dice.Once(30)) made.vt |= VT_RESERVED;
    return made;
}

SAFEARRAY* HostileValues::Array(VARTYPE type, int nesting)
{
    SAFEARRAYBOUND bounds[4];
    const UINT dimensions = dice.Once(4) ? 2 + dice.Below(3) : 1;
    std::size_t count = 1;
    for (SAFEARRAYBOUND& bound : bounds) {
        constexpr LONG kLower[] = {0, 1, -1, 1000, std::numeric_limits<LONG>::min()};
        bound = {dice.Below(nesting > 3 ? 2 : 5), dice.Of(kLower)};
    }
    for (UINT i = 0; i < dimensions; ++i) count *= bounds[i].cElements;
    const auto known =
        std::find(std::begin(kHostileElements), std::end(kHostileElements), type) != std::end(kHostileElements);
    SAFEARRAY* array = SafeArrayCreate(known ? type : VARTYPE{VT_I4}, dimensions, bounds);
    if (!array) return nullptr;
    Fill(array, known ? type : VARTYPE{VT_I4}, count, nesting);
    // Restores the header, which Spoil may have changed, and frees the array; what the elements point to has other owners.
    owned.push_back([array, kept = *array] {
        *array = kept;
        array->fFeatures &= ~(FADF_BSTR | FADF_VARIANT | FADF_DISPATCH | FADF_UNKNOWN | FADF_RECORD);
        SafeArrayDestroy(array);
    });
    if (dice.Once(3)) Spoil(array);
    return array;
}

void HostileValues::Fill(SAFEARRAY* array, VARTYPE type, std::size_t count, int nesting)
{
    auto* bytes = static_cast<unsigned char*>(array->pvData);
    for (std::size_t i = 0; i < count; ++i) {
        unsigned char* element = bytes + i * array->cbElements;
        if (type == VT_VARIANT) {
            VARIANT made = Value(nesting + 1);
            if (dice.Once(50)) {
                made.vt = VT_ARRAY | VT_VARIANT;
                made.parray = array;  // the array contains itself
            }
            std::memcpy(element, &made, sizeof made);
        } else if (type == VT_BSTR) {
            const BSTR string = String();
            std::memcpy(element, &string, sizeof string);
        } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
            void* wild = dice.Once(2) ? nullptr : Wild();
            std::memcpy(element, &wild, sizeof wild);
        } else {
            for (std::size_t k = 0; k < array->cbElements; ++k) element[k] = static_cast<unsigned char>(dice.Any());
        }
    }
}

// Falsifies the header.
void HostileValues::Spoil(SAFEARRAY* array)
{
    constexpr ULONG kCounts[] = {0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x20000000};
    constexpr LONG kBounds[] = {std::numeric_limits<LONG>::max(), std::numeric_limits<LONG>::min(), -2};
    constexpr USHORT kDimensions[] = {0, 0, 65535};
    constexpr ULONG kSizes[] = {0, 1, 3, 8, 16, 0xFFFFFFFF};
    switch (dice.Below(6)) {
        case 0: array->pvData = dice.Once(2) ? nullptr : Wild(); break;
        // The data must not be readable: with a false count, reading elements that do not exist could take a long time.
        case 1:
            array->rgsabound[0].cElements = dice.Of(kCounts);
            array->pvData = Wild();
            break;
        case 2: array->rgsabound[0].lLbound = dice.Of(kBounds); break;
        case 3: array->cDims = dice.Of(kDimensions); break;
        case 4: array->cbElements = dice.Of(kSizes); break;
        default: array->fFeatures = static_cast<USHORT>(dice.Any()); break;
    }
}

}  // namespace zelt::test
