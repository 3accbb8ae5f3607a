// Recognisable values for the types of tests/data/proxied_methods.txt, with functions to store and compare
// them. The same argument gets the same value in every process, so that two processes can check each other.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <comutil.h>

#include <string>

#include "interface_shape.h"
#include "method_table.h"

namespace zelt::test {

enum class Filling { Samples, Nulls };

// The value of argument `index` of a method. `object` (borrowed) is used for interface pointers; with Nulls, strings,
// pointers and VARIANTs are null or empty, and numbers stay.
_variant_t SampleValue(const TableStep& argument, std::size_t index, Filling filling, IDispatch* object);

// Copies `value` to a place for a value of that type, without reading what is there.
void StoreValue(void* place, VARTYPE type, const VARIANT& value);

// A copy of the value at that place.
_variant_t LoadValue(const void* place, VARTYPE type);

// A copy in which a null string stays null.
_variant_t CopyOf(const VARIANT& value);

// Equal in type and in every bit: text by its whole length, arrays by bounds and elements, pointers by address.
bool IsSameValue(const VARIANT& a, const VARIANT& b);

// The VARTYPE that a VARIANT must have for a type of the table, such as "doubles"; VT_EMPTY for "any" and for types that are
// not VARIANTs.
VARTYPE ExpectedVariantType(const std::string& type);

// The VARTYPE that the type library must give an argument for a type of the table.
VARTYPE LibraryType(const std::string& type);

}  // namespace zelt::test
