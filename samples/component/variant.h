// VARIANT arrays as the standard uses them: one-dimensional, of strings, numbers, booleans, interfaces or VARIANTs. Reading
// accepts any lower bound, references, and arrays of VARIANT instead of typed ones, as script callers send them; new
// arrays start at 0. Reading throws CapeFailure ("invalid argument"); making an array throws bad_alloc.
#pragma once

#include <windows.h>
#include <comutil.h>
#include <wrl/client.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelt::sample {

// True when the caller omitted a list: the VARIANT is empty, null, or an omitted optional argument.
bool IsLeftOut(const VARIANT& value);

// `name` is the argument's name, for the description of a failure. An omitted list reads as an empty one.
std::vector<std::wstring> ReadStrings(const VARIANT& value, const wchar_t* name);
std::vector<double> ReadDoubles(const VARIANT& value, const wchar_t* name);
std::vector<long> ReadLongs(const VARIANT& value, const wchar_t* name);
std::vector<bool> ReadBooleans(const VARIANT& value, const wchar_t* name);
std::vector<Microsoft::WRL::ComPtr<IDispatch>> ReadInterfaces(const VARIANT& value, const wchar_t* name);

_variant_t MakeStrings(std::span<const std::wstring> values);
_variant_t MakeStrings(std::initializer_list<const wchar_t*> values);
_variant_t MakeDoubles(std::span<const double> values);
_variant_t MakeLongs(std::span<const long> values);
_variant_t MakeBooleans(const std::vector<bool>& values);
_variant_t MakeVariants(std::span<const _variant_t> values);
// An array of interface pointers; the array holds a reference to each.
_variant_t MakeInterfaces(std::span<const Microsoft::WRL::ComPtr<IDispatch>> values);
_variant_t MakeText(std::wstring_view value);

// A string that the result owns.
_bstr_t MakeBstr(std::wstring_view text);

// Passes a value to an out-parameter. Its former contents may be garbage and are not freed. Throws CapeFailure for a
// null pointer.
void Return(VARIANT* out, _variant_t value);
void Return(BSTR* out, std::wstring_view text);
// Passes a value to an in-out parameter, and frees what the caller left in it.
void Replace(VARIANT* inOut, _variant_t value);
void Replace(BSTR* inOut, std::wstring_view text);

}  // namespace zelt::sample
