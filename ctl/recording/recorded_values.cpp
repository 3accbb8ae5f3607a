#include "ctl/recording/recorded_values.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace zelt::ctl {

using namespace recording;

namespace {

// VARTYPEs: two flags, the mask of the type without them, and the types that are treated separately.
constexpr std::uint16_t kArray = 0x2000, kByRef = 0x4000, kBase = 0xFFF;
constexpr std::uint16_t kR4 = 4, kR8 = 5, kDate = 7, kBool = 11, kUI1 = 17, kUI2 = 18, kUI4 = 19, kUInt = 23;

struct TypeName {
    std::uint16_t type;
    const char* name;
};
constexpr TypeName kTypeNames[] = {
    {0, "VT_EMPTY"},    {1, "VT_NULL"},     {2, "VT_I2"},       {3, "VT_I4"},       {4, "VT_R4"},     {5, "VT_R8"},
    {6, "VT_CY"},       {7, "VT_DATE"},     {8, "VT_BSTR"},     {9, "VT_DISPATCH"}, {10, "VT_ERROR"}, {11, "VT_BOOL"},
    {12, "VT_VARIANT"}, {13, "VT_UNKNOWN"}, {14, "VT_DECIMAL"}, {16, "VT_I1"},      {17, "VT_UI1"},   {18, "VT_UI2"},
    {19, "VT_UI4"},     {20, "VT_I8"},      {21, "VT_UI8"},     {22, "VT_INT"},     {23, "VT_UINT"},  {36, "VT_RECORD"},
};

template <class T>
T Read(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

template <class T>
void Write(char* bytes, T value)
{
    std::memcpy(bytes, &value, sizeof value);
}

std::uint16_t ElementType(const ArrayValue& array, std::uint16_t declared)
{
    return array.elementType.value_or(static_cast<std::uint16_t>(declared & kBase));
}

bool IsRealType(std::uint16_t type, std::size_t size)
{
    return (type == kR4 && size == sizeof(float)) || ((type == kR8 || type == kDate) && size == sizeof(double));
}

std::size_t CountNumbers(const ArrayValue& array)
{
    switch (array.elementSize) {
        case 1:
        case 2:
        case 4:
        case 8: return array.numbers.size() / array.elementSize;
        default: return 0;
    }
}

std::int64_t IntegerAt(const char* place, std::uint16_t type, std::size_t size)
{
    switch (size) {
        case 1: return type == kUI1 ? Read<std::uint8_t>(place) : Read<std::int8_t>(place);
        case 2: return type == kUI2 ? Read<std::uint16_t>(place) : Read<std::int16_t>(place);
        case 4:
            if (type == kUI4 || type == kUInt) return Read<std::uint32_t>(place);
            return Read<std::int32_t>(place);
        default: return Read<std::int64_t>(place);
    }
}

Scalar NumberAt(const ArrayValue& array, std::uint16_t type, std::size_t index)
{
    const std::size_t size = array.elementSize;
    const char* const place = array.numbers.data() + index * size;
    Scalar number;
    number.type = type;
    number.form = IsRealType(type, size) ? Value::Form::Real : Value::Form::Integer;
    if (number.form == Value::Form::Integer) {
        number.integer = IntegerAt(place, type, size);
    } else {
        number.real = size == sizeof(float) ? Read<float>(place) : Read<double>(place);
    }
    return number;
}

void AppendNumberText(char* place, std::size_t size, const Scalar& number)
{
    if (number.form == Value::Form::Real) {
        return size == sizeof(float) ? Write(place, static_cast<float>(number.real)) : Write(place, number.real);
    }
    // Numbers of all sizes are little-endian.
    std::memcpy(place, &number.integer, size);
}

Scalar ScalarOf(const Value& value)
{
    Scalar scalar{static_cast<std::uint16_t>(value.type & kBase),
                  value.form,
                  value.integer,
                  value.real,
                  value.bytes,
                  value.address};
    if (value.form == Value::Form::Raw && scalar.type == kR4 && value.bytes.size() == sizeof(float)) {
        scalar.form = Value::Form::Real;
        scalar.real = Read<float>(value.bytes.data());
    }
    return scalar;
}

ArrayValue MapArray(const ArrayValue& array, std::uint16_t declared, const ScalarMap& map,
                    std::deque<std::string>& texts)
{
    ArrayValue mapped;
    mapped.features = array.features;
    mapped.elementSize = array.elementSize;
    mapped.elementType = array.elementType;
    mapped.bounds = array.bounds;
    for (const Value& element : array.elements) mapped.elements.push_back(MapScalars(element, map, texts));
    if (!array.numbers.data()) return mapped;
    std::string& bytes = texts.emplace_back(array.numbers.size(), '\0');
    const std::uint16_t type = ElementType(array, declared);
    for (std::size_t i = 0; i < CountNumbers(array); ++i) {
        AppendNumberText(bytes.data() + i * array.elementSize, array.elementSize, map(NumberAt(array, type, i)));
    }
    mapped.numbers = bytes;
    return mapped;
}

std::string HexadecimalText(std::uint64_t number)
{
    char text[24];
    std::snprintf(text, sizeof text, "0x%08llX", static_cast<unsigned long long>(number));
    return text;
}

template <class T>
std::string NumberText(T number)
{
    char text[32];
    return {text, std::to_chars(text, std::end(text), number).ptr};
}

std::string IntegerText(const ArgumentRecord& argument, const Scalar& scalar)
{
    switch (argument.kind) {
        case ArgumentKind::Bool: return scalar.integer ? "TRUE" : "FALSE";
        case ArgumentKind::VariantBool: return scalar.integer ? "VARIANT_TRUE" : "VARIANT_FALSE";
        case ArgumentKind::NamedValue: return std::string(argument.shown);
        case ArgumentKind::Variant:
            if (scalar.type == kBool) return scalar.integer ? "TRUE" : "FALSE";
            break;
        case ArgumentKind::Unsigned64: return NumberText(static_cast<std::uint64_t>(scalar.integer));
        default: break;
    }
    return NumberText(scalar.integer);
}

std::string PointerText(const ArgumentRecord& argument, const Scalar& scalar)
{
    if (scalar.address == 0) return "NULL";
    const std::string address = HexadecimalText(scalar.address);
    if (argument.kind == ArgumentKind::Address) return "pointer " + address;
    if (argument.kind != ArgumentKind::NamedInterface) return "interface pointer " + address;
    return "interface to object \"" + std::string(argument.shown) + "\" (address " + address + ')';
}

}  // namespace

void ForEachScalar(const Value& value, const std::function<void(const Scalar&)>& take)
{
    if (value.form == Value::Form::Variant) return ForEachScalar(value.inner.front(), take);
    if (value.form != Value::Form::Array) return take(ScalarOf(value));
    const ArrayValue& array = value.array.front();
    for (const Value& element : array.elements) ForEachScalar(element, take);
    const std::uint16_t type = ElementType(array, value.type);
    for (std::size_t i = 0; i < CountNumbers(array); ++i) take(NumberAt(array, type, i));
}

Value MapScalars(const Value& value, const ScalarMap& map, std::deque<std::string>& texts)
{
    Value mapped;
    mapped.type = value.type;
    mapped.form = value.form;
    if (value.form == Value::Form::Variant) {
        mapped.inner.push_back(MapScalars(value.inner.front(), map, texts));
        return mapped;
    }
    if (value.form == Value::Form::Array) {
        mapped.array.push_back(MapArray(value.array.front(), value.type, map, texts));
        return mapped;
    }
    const Scalar scalar = map(ScalarOf(value));
    mapped.form = scalar.form;
    mapped.integer = scalar.integer;
    mapped.real = scalar.real;
    mapped.address = scalar.address;
    if (value.form == Value::Form::Raw && scalar.form == Value::Form::Real) {
        mapped.form = Value::Form::Raw;
        std::string& bytes = texts.emplace_back(sizeof(float), '\0');
        Write(bytes.data(), static_cast<float>(scalar.real));
        mapped.bytes = bytes;
    } else if (scalar.bytes.data()) {
        mapped.bytes = texts.emplace_back(scalar.bytes);
    }
    return mapped;
}

std::string TypeText(const ArgumentRecord& argument)
{
    switch (argument.kind) {
        case ArgumentKind::Short: return "short";
        case ArgumentKind::Long: return "long";
        case ArgumentKind::Double: return "double";
        case ArgumentKind::String: return "string";
        case ArgumentKind::ClassId: return "CLSID";
        case ArgumentKind::Unsigned64: return "ULARGE_INTEGER";
        case ArgumentKind::Interface:
        case ArgumentKind::NamedInterface: return "interface";
        case ArgumentKind::Bool: return "BOOL";
        case ArgumentKind::VariantBool: return "VARIANT_BOOL";
        case ArgumentKind::Flags: return "int";
        case ArgumentKind::Variant: break;
        default: return std::string(argument.type);
    }
    std::string text;
    if (argument.value.type & kArray) text += "VT_ARRAY|";
    if (argument.value.type & kByRef) text += "VT_BYREF|";
    for (const TypeName& known : kTypeNames) {
        if (known.type == (argument.value.type & kBase)) return text += known.name;
    }
    return text += "<unknown>";
}

std::string ScalarText(const ArgumentRecord& argument, const Scalar& scalar)
{
    switch (scalar.form) {
        case Value::Form::Integer: return IntegerText(argument, scalar);
        case Value::Form::Real:
            // Before NaN came into use, the lowest number stood for "undefined".
            if (std::isnan(scalar.real) || scalar.real == std::numeric_limits<double>::lowest()) return "N/A";
            return NumberText(scalar.real);
        case Value::Form::Text: return '"' + std::string(scalar.bytes) + '"';
        case Value::Form::RawText:
        case Value::Form::Raw: return std::to_string(scalar.bytes.size()) + " bytes";
        case Value::Form::Pointer: return PointerText(argument, scalar);
        default: return argument.kind == ArgumentKind::Unreadable ? "<unable to format value>" : "NULL";
    }
}

}  // namespace zelt::ctl
