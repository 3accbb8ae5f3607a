// Recognisable values for the types of tests/data/proxied_methods.txt, and what is needed to hand them on and compare
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

// The value of argument `index` of a method. `object` (borrowed) is what interface pointers stand for; with Nulls strings,
// pointers and VARIANTs are null or empty, and numbers stay.
_variant_t SampleValue(const TableStep& argument, std::size_t index, Filling filling, IDispatch* object);

// Writes a copy of `value` to where a value of that type stands, without looking at what is there.
void StoreValue(void* place, VARTYPE type, const VARIANT& value);

// The value that stands there, copied.
_variant_t LoadValue(const void* place, VARTYPE type);

// A copy in which a null string stays null.
_variant_t CopyOf(const VARIANT& value);

// Equal in type and to the bit: text by its whole length, arrays by bounds and elements, pointers by address.
bool IsSameValue(const VARIANT& a, const VARIANT& b);

// The VARTYPE that an argument of a table's VARIANT type must have; VT_EMPTY for "any" and for what is no VARIANT.
VARTYPE ExpectedVariantType(const std::string& type);

// The type that the library must give to an argument of a table's type.
VARTYPE LibraryType(const std::string& type);

}  // namespace zelt::test
