#include "samples/component/variant.h"

#include <new>

#include "samples/component/cape_failure.h"

namespace zelt::sample {
namespace {

[[noreturn]] void FailType(const wchar_t* name, const wchar_t* expected)
{
    throw CapeFailure(ECapeInvalidArgumentHR,
                      std::wstring(L"Argument ") + name + L" must be a one-dimensional array of " + expected);
}

// Keeps an array's elements accessible while this object exists.
class Access {
public:
    Access(SAFEARRAY* array, const wchar_t* name, const wchar_t* expected) : array(array)
    {
        if (!array || SafeArrayGetDim(array) != 1) FailType(name, expected);
        long lower = 0, upper = -1;
        if (FAILED(SafeArrayGetLBound(array, 1, &lower)) || FAILED(SafeArrayGetUBound(array, 1, &upper)) ||
            FAILED(SafeArrayAccessData(array, &data))) {
            FailType(name, expected);
        }
        count = static_cast<std::size_t>(upper - lower + 1);
    }
    ~Access() { SafeArrayUnaccessData(array); }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    template <class T>
    std::span<T> Elements() const
    {
        return {static_cast<T*>(data), count};
    }

private:
    SAFEARRAY* array;
    void* data = nullptr;
    std::size_t count = 0;
};

const VARIANT& Dereferenced(const VARIANT& value)
{
    return V_VT(&value) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(&value) ? *V_VARIANTREF(&value) : value;
}

SAFEARRAY* ArrayOf(const VARIANT& value)
{
    if (!(V_VT(&value) & VT_ARRAY)) return nullptr;
    if (!(V_VT(&value) & VT_BYREF)) return V_ARRAY(&value);
    return V_ARRAYREF(&value) ? *V_ARRAYREF(&value) : nullptr;
}

VARTYPE ElementType(const VARIANT& value) { return static_cast<VARTYPE>(V_VT(&value) & VT_TYPEMASK); }

// One element of an array of VARIANT, converted without regard to the user's locale.
_variant_t Converted(const VARIANT& element, VARTYPE type, const wchar_t* name, const wchar_t* expected)
{
    _variant_t result;
    if (FAILED(VariantChangeTypeEx(&result, const_cast<VARIANT*>(&element), LOCALE_INVARIANT, 0, type))) {
        FailType(name, expected);
    }
    return result;
}

// Fills a vector from an array whose elements are `Stored` or VARIANTs that convert to `type`.
template <class Stored, class Convert>
auto ReadArray(const VARIANT& anyValue, VARTYPE type, const wchar_t* name, const wchar_t* expected, Convert&& convert)
{
    std::vector<decltype(convert(Stored{}))> result;
    const VARIANT& value = Dereferenced(anyValue);
    if (IsLeftOut(value)) return result;
    const Access access(ArrayOf(value), name, expected);
    if (ElementType(value) == type) {
        for (const Stored& element : access.Elements<Stored>()) result.push_back(convert(element));
    } else if (ElementType(value) == VT_VARIANT) {
        for (const VARIANT& element : access.Elements<VARIANT>()) {
            const _variant_t converted = Converted(element, type, name, expected);
            // The union starts at the same address for every type, so the address of the VT_R8 field serves them all.
            Stored stored;
            // NOLINTNEXTLINE(bugprone-sizeof-expression): an interface's element is the pointer itself.
            memcpy(&stored, &V_R8(&converted), sizeof(Stored));
            result.push_back(convert(stored));
        }
    } else {
        FailType(name, expected);
    }
    return result;
}

// Makes a one-dimensional array of `type` and lets `fill` set its elements; the VARIANT owns it from the start.
template <class Stored, class Fill>
_variant_t MakeArray(VARTYPE type, std::size_t count, Fill&& fill)
{
    _variant_t result;
    V_ARRAY(&result) = SafeArrayCreateVector(type, 0, static_cast<ULONG>(count));
    if (!V_ARRAY(&result)) throw std::bad_alloc();
    V_VT(&result) = static_cast<VARTYPE>(VT_ARRAY | type);
    const Access access(V_ARRAY(&result), L"result", L"values");
    std::size_t index = 0;
    for (Stored& element : access.Elements<Stored>()) fill(element, index++);
    return result;
}

BSTR NewBstr(std::wstring_view text)
{
    const BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!copy) throw std::bad_alloc();
    return copy;
}

}  // namespace

bool IsLeftOut(const VARIANT& value)
{
    return V_VT(&value) == VT_EMPTY || V_VT(&value) == VT_NULL ||
           (V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND);
}

std::vector<std::wstring> ReadStrings(const VARIANT& value, const wchar_t* name)
{
    return ReadArray<BSTR>(value, VT_BSTR, name, L"strings",
                           [](BSTR text) { return text ? std::wstring(text, SysStringLen(text)) : std::wstring(); });
}

std::vector<double> ReadDoubles(const VARIANT& value, const wchar_t* name)
{
    return ReadArray<double>(value, VT_R8, name, L"doubles", [](double element) { return element; });
}

std::vector<long> ReadLongs(const VARIANT& value, const wchar_t* name)
{
    return ReadArray<long>(value, VT_I4, name, L"integers", [](long element) { return element; });
}

std::vector<bool> ReadBooleans(const VARIANT& value, const wchar_t* name)
{
    return ReadArray<VARIANT_BOOL>(value, VT_BOOL, name, L"booleans",
                                   [](VARIANT_BOOL element) { return element != 0; });
}

std::vector<Microsoft::WRL::ComPtr<IDispatch>> ReadInterfaces(const VARIANT& value, const wchar_t* name)
{
    return ReadArray<IDispatch*>(value, VT_DISPATCH, name, L"interfaces",
                                 [](IDispatch* element) { return Microsoft::WRL::ComPtr<IDispatch>(element); });
}

_variant_t MakeStrings(std::span<const std::wstring> values)
{
    return MakeArray<BSTR>(VT_BSTR, values.size(), [&](BSTR& out, std::size_t i) { out = NewBstr(values[i]); });
}

_variant_t MakeStrings(std::initializer_list<const wchar_t*> values)
{
    return MakeArray<BSTR>(VT_BSTR, values.size(),
                           [&](BSTR& out, std::size_t i) { out = NewBstr(std::data(values)[i]); });
}

_variant_t MakeDoubles(std::span<const double> values)
{
    return MakeArray<double>(VT_R8, values.size(), [&](double& out, std::size_t i) { out = values[i]; });
}

_variant_t MakeLongs(std::span<const long> values)
{
    return MakeArray<long>(VT_I4, values.size(), [&](long& out, std::size_t i) { out = values[i]; });
}

_variant_t MakeBooleans(const std::vector<bool>& values)
{
    return MakeArray<VARIANT_BOOL>(VT_BOOL, values.size(), [&](VARIANT_BOOL& out, std::size_t i) {
        out = values[i] ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

_variant_t MakeInterfaces(std::span<const Microsoft::WRL::ComPtr<IDispatch>> values)
{
    return MakeArray<IDispatch*>(VT_DISPATCH, values.size(),
                                 [&](IDispatch*& out, std::size_t i) { values[i].CopyTo(&out); });
}

_variant_t MakeVariants(std::span<const _variant_t> values)
{
    return MakeArray<VARIANT>(VT_VARIANT, values.size(), [&](VARIANT& out, std::size_t i) {
        if (FAILED(VariantCopy(&out, const_cast<VARIANT*>(static_cast<const VARIANT*>(&values[i])))))
            throw std::bad_alloc();
    });
}

_variant_t MakeText(std::wstring_view value)
{
    _variant_t result;
    V_BSTR(&result) = NewBstr(value);
    V_VT(&result) = VT_BSTR;
    return result;
}

_bstr_t MakeBstr(std::wstring_view text) { return _bstr_t(NewBstr(text), false); }

void Return(VARIANT* out, _variant_t value)
{
    if (!out) throw CapeFailure(ECapeInvalidArgumentHR, L"A result has nowhere to go: the pointer is null");
    *out = value.Detach();
}

void Return(BSTR* out, std::wstring_view text)
{
    if (!out) throw CapeFailure(ECapeInvalidArgumentHR, L"A result has nowhere to go: the pointer is null");
    *out = NewBstr(text);
}

void Replace(VARIANT* inOut, _variant_t value)
{
    if (!inOut) throw CapeFailure(ECapeInvalidArgumentHR, L"A result has nowhere to go: the pointer is null");
    VariantClear(inOut);
    *inOut = value.Detach();
}

void Replace(BSTR* inOut, std::wstring_view text)
{
    if (!inOut) throw CapeFailure(ECapeInvalidArgumentHR, L"A result has nowhere to go: the pointer is null");
    const BSTR copy = NewBstr(text);
    SysFreeString(*inOut);
    *inOut = copy;
}

}  // namespace zelt::sample
