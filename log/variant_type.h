// Names of VARTYPEs as logs write them.
#pragma once

#include <windows.h>
#include <wtypes.h>

#include <string>

namespace zelt {

// Stands for "any type" where an expected VARTYPE is given.
inline constexpr VARTYPE kAnyType = 0xFFFF;

// "VT_ARRAY|VT_R8": the flags as prefixes (array, vector, by reference, reserved, in this order), then the base type's name, or
// `unknown` for a base type without a name. Inside markup, `unknown` must be passed escaped.
void AppendVariantTypeName(std::string& out, VARTYPE type, const char* unknown = "<unknown>");
std::string VariantTypeName(VARTYPE type);

}  // namespace zelt
