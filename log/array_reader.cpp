#include "log/array_reader.h"

#include <oleauto.h>

#include <cstdint>

namespace zelt {
namespace {

const char* ElementWord(VARTYPE elementType)
{
    switch (elementType) {
        case VT_EMPTY: return "EMPTY";
        case VT_I2: return "short";
        case VT_I4: return "long";
        case VT_R8: return "double precision";
        case VT_BSTR: return "string";
        case VT_VARIANT: return "VARIANT";
        default: return "<unknown>";
    }
}

// The size of the element types that are read; 0 for the others.
ULONG ElementSize(VARTYPE elementType)
{
    switch (elementType) {
        case VT_I2:
        case VT_BOOL: return sizeof(short);
        case VT_I4: return sizeof(LONG);
        case VT_R8: return sizeof(double);
        case VT_BSTR: return sizeof(BSTR);
        case VT_VARIANT: return sizeof(VARIANT);
        default: return 0;
    }
}

}  // namespace

ArrayReader::ArrayReader(SAFEARRAY* array, VARTYPE elementType, VARTYPE declaredType)
{
    VARTYPE actual = VT_EMPTY;
    if (!array || SafeArrayGetDim(array) != 1) {
        message = "unexpected dimension; 1-dimensional array expected";
    } else if (FAILED(SafeArrayGetLBound(array, 1, &lowerBound))) {
        message = "failed to get lower bound";
    } else if (FAILED(SafeArrayGetUBound(array, 1, &upperBound)) || std::int64_t{upperBound} - lowerBound < -1) {
        // Where the difference is less than -1, the array has more elements than a bound can express.
        message = "failed to get upper bound";
    } else if ((SUCCEEDED(SafeArrayGetVartype(array, &actual)) ? actual : declaredType) != elementType ||
               (ElementSize(elementType) != 0 && array->cbElements != ElementSize(elementType))) {
        message = std::string("Expected an array of type ") + ElementWord(elementType);
    } else {
        isOpen = true;
        data = array->pvData;
    }
}

}  // namespace zelt
