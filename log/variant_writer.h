// Writer of VARIANT arguments: the type attribute is the value's own VARTYPE, which is checked against the expected one. Where
// an array is expected, the elements of an array are logged only if they have the expected type.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include "log/log_document.h"
#include "log/variant_type.h"

namespace zelt {

// What a VARIANT argument should hold. A failed check is logged as an error, and the call continues.
struct Shape {
    VARTYPE type;     // kAnyType: no check
    bool allowEmpty;  // VT_EMPTY may stand for a list that is left out
};

inline constexpr Shape kAnything{kAnyType, false};
inline constexpr Shape kStrings{VT_ARRAY | VT_BSTR, false};
inline constexpr Shape kOptionalStrings{VT_ARRAY | VT_BSTR, true};
inline constexpr Shape kDoubles{VT_ARRAY | VT_R8, false};
inline constexpr Shape kOptionalDoubles{VT_ARRAY | VT_R8, true};
inline constexpr Shape kIntegers{VT_ARRAY | VT_I4, false};
inline constexpr Shape kBooleans{VT_ARRAY | VT_BOOL, false};
inline constexpr Shape kVariants{VT_ARRAY | VT_VARIANT, false};
inline constexpr Shape kObjects{VT_ARRAY | VT_DISPATCH, false};

void WriteArg(LogDocument& document, std::string_view name, bool isIn, const VARIANT& value,
              Shape expected = kAnything);

}  // namespace zelt
