#include "core/described_values.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>

#include "core/value_arguments.h"

namespace zelt {
namespace {

using com::DualParameter;

template <class T>
T Read(const void* place)
{
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

// Logs a value of an enumeration by its name. A value without a name, such as a sum of flags, is logged as a number.
void WriteNamedValue(LogDocument& document, const DualParameter& parameter, bool isIn, long value)
{
    const com::NamedValues& known = *parameter.enumeration;
    const auto found =
        std::find_if(known.values.begin(), known.values.end(), [value](const auto& one) { return one.first == value; });
    // As in rows, the types of the standard's enumerations are logged without their first letter, the "e".
    const std::string_view name = known.name;
    const std::string_view type = name.starts_with("eCape") ? name.substr(1) : name;
    const std::string shown = found != known.values.end() ? found->second : std::to_string(value);
    WriteNamedValueArg(document, parameter.name.c_str(), isIn, type, value, shown);
}

// Logs the address of a value that is not read, such as a structure, a C string, or what lies behind more than one pointer.
void WriteAddress(LogDocument& document, const DualParameter& parameter, bool isIn, VARTYPE type, const void* address)
{
    WriteAddressArg(document, parameter.name.c_str(), isIn, VariantTypeName(type, "&lt;unknown&gt;"), address);
}

// Logs a value that has no writer of its own by putting it into a VARIANT, which does not own it.
void WriteInVariant(LogDocument& document, const DualParameter& parameter, bool isIn, const void* place)
{
    VARIANT holder;
    VariantInit(&holder);
    if (parameter.type == VT_DECIMAL) {
        std::memcpy(&holder.decVal, place, sizeof holder.decVal);
    } else {
        std::memcpy(&holder.llVal, place, std::min(parameter.size, sizeof holder.llVal));
    }
    holder.vt = parameter.type == VT_HRESULT ? static_cast<VARTYPE>(VT_ERROR) : parameter.type;
    WriteArg(document, parameter.name, isIn, holder);
}

void WriteValue(LogDocument& document, const DualParameter& parameter, bool isIn, const void* place)
{
    const std::string& name = parameter.name;
    if (parameter.enumeration) return WriteNamedValue(document, parameter, isIn, Read<long>(place));
    switch (parameter.type) {
        case VT_I2: return WriteArg(document, name, isIn, Read<short>(place));
        case VT_I4:
        case VT_INT: return WriteArg(document, name, isIn, Read<long>(place));
        case VT_R8: return WriteArg(document, name, isIn, Read<double>(place));
        case VT_BOOL: return WriteVariantBoolArg(document, name, isIn, Read<VARIANT_BOOL>(place));
        case VT_BSTR: return WriteArg(document, name, isIn, Read<BSTR>(place));
        case VT_DISPATCH:
        case VT_UNKNOWN: return WriteArg(document, name, isIn, Read<IUnknown*>(place));
        case VT_VARIANT: return WriteArg(document, name, isIn, *static_cast<const VARIANT*>(place));
        case VT_I1:
        case VT_UI1:
        case VT_UI2:
        case VT_UI4:
        case VT_UINT:
        case VT_ERROR:
        case VT_HRESULT:
        case VT_R4:
        case VT_CY:
        case VT_DATE:
        case VT_I8:
        case VT_UI8:
        case VT_DECIMAL: return WriteInVariant(document, parameter, isIn, place);
        default: break;
    }
    if (parameter.type & VT_ARRAY) return WriteInVariant(document, parameter, isIn, place);
    const bool isPointer = parameter.type == VT_LPSTR || parameter.type == VT_LPWSTR;
    WriteAddress(document, parameter, isIn, parameter.type, isPointer ? Read<const void*>(place) : place);
}

// Follows one pointer to the value, but not several.
void WriteParameter(LogDocument& document, const DualParameter& parameter, bool isIn, const void* words)
{
    const void* place = parameter.Argument(words);
    if (parameter.pointers > 1) {
        return WriteAddress(document, parameter, isIn, VT_PTR, Read<const void*>(place));
    }
    if (parameter.pointers == 1) {
        place = Read<const void*>(place);
        if (!place) {
            return isIn ? WriteAddress(document, parameter, isIn, VT_PTR, nullptr)
                        : WarnNullOutput(document, parameter.name.c_str());
        }
    }
    WriteValue(document, parameter, isIn, place);
}

}  // namespace

void WriteDescribedInputs(LogDocument& document, const com::DualMethod& method, const void* words)
{
    for (const DualParameter& parameter : method.parameters) {
        if (!parameter.isOut) WriteParameter(document, parameter, true, words);
    }
}

void WriteDescribedOutputs(LogDocument& document, const com::DualMethod& method, const void* words)
{
    for (const DualParameter& parameter : method.parameters) {
        if (parameter.isOut) WriteParameter(document, parameter, false, words);
    }
}

}  // namespace zelt
