#include "core/array_reader.h"

#include <oleauto.h>

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

}  // namespace

ArrayReader::ArrayReader(SAFEARRAY* source, VARTYPE elementType) : array(source)
{
    VARTYPE actual = VT_EMPTY;
    if (!array || SafeArrayGetDim(array) != 1) {
        message = "unexpected dimension; 1-dimensional array expected";
    } else if (FAILED(SafeArrayGetLBound(array, 1, &lowerBound))) {
        message = "failed to get lower bound";
    } else if (FAILED(SafeArrayGetUBound(array, 1, &upperBound))) {
        message = "failed to get upper bound";
    } else if (FAILED(SafeArrayGetVartype(array, &actual)) || actual != elementType ||
               FAILED(SafeArrayAccessData(array, &data))) {
        message = std::string("Expected an array of type ") + ElementWord(elementType);
        data = nullptr;
    }
}

ArrayReader::~ArrayReader()
{
    if (data) SafeArrayUnaccessData(array);
}

}  // namespace zelt
