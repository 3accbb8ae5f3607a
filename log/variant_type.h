// Names of VARTYPEs as logs write them.
#pragma once

#include <windows.h>
#include <wtypes.h>

#include <string>

#include "log/entry_text.h"

namespace zelt {

// Stands for "any type" where an expected VARTYPE is given.
inline constexpr VARTYPE kAnyType = 0xFFFF;

// "VT_ARRAY|VT_R8": the flags as prefixes (array, vector, by reference, reserved, in this order), then the base type's name, or
// `unknown` for a base type without a name. Inside markup, `unknown` must be passed escaped.
std::string VariantTypeName(VARTYPE type, const char* unknown = "<unknown>");
void AppendVariantTypeName(EntryText& out, VARTYPE type, const char* unknown);

}  // namespace zelt
