#include "expected_log.h"

#include <oleauto.h>
#include <comutil.h>

#include <cstdio>
#include <stdexcept>

#include "sample_values.h"

namespace zelt::test {

std::string Escaped(const std::string& plain)
{
    std::string text;
    for (const char c : plain) {
        switch (c) {
            case '"': text += "&quot;"; break;
            case '&': text += "&amp;"; break;
            case '\'': text += "&apos;"; break;
            case '<': text += "&lt;"; break;
            case '>': text += "&gt;"; break;
            default: text += c;
        }
    }
    return text;
}

namespace {

template <class T>
std::string Formatted(const char* format, T value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string AddressText(IUnknown* pointer)
{
    char digits[32];
    std::snprintf(digits, sizeof digits, "0x%0*llX", static_cast<int>(2 * sizeof(void*)),
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(pointer)));
    return digits;
}

std::string Line(int level, const std::string& value)
{
    return std::string(level, ' ') + "<argval value=\"" + Escaped(value) + "\"/>\n";
}

std::string QuotedText(BSTR text)
{
    std::string plain = "\"";
    for (const wchar_t* c = text; *c; ++c) plain += static_cast<char>(*c);
    return plain + '"';
}

std::string BaseName(VARTYPE type)
{
    switch (type) {
        case VT_EMPTY: return "VT_EMPTY";
        case VT_I4: return "VT_I4";
        case VT_R8: return "VT_R8";
        case VT_BSTR: return "VT_BSTR";
        case VT_BOOL: return "VT_BOOL";
        case VT_VARIANT: return "VT_VARIANT";
        case VT_DISPATCH: return "VT_DISPATCH";
        default: throw std::runtime_error("no name for this type");
    }
}

std::string VariantName(VARTYPE type)
{
    return (type & VT_ARRAY ? "VT_ARRAY|" : "") + BaseName(static_cast<VARTYPE>(type & VT_TYPEMASK));
}

std::string VariantBody(const VARIANT& value, int level);

std::string ElementBody(SAFEARRAY* array, VARTYPE type, LONG at, int level)
{
    _variant_t element;
    void* place = type == VT_VARIANT ? static_cast<void*>(&element) : static_cast<void*>(&element.lVal);
    if (FAILED(SafeArrayGetElement(array, &at, place))) throw std::runtime_error("cannot read an element");
    if (type != VT_VARIANT) element.vt = type;
    if (type == VT_BOOL) return Line(level, element.boolVal ? "TRUE" : "FALSE");
    if (type != VT_VARIANT) return VariantBody(element, level);
    const std::string blanks(level, ' ');
    return blanks + "<argval value=\"" + VariantName(element.vt) + "\">\n" + VariantBody(element, level + 1) + blanks +
           "</argval>\n";
}

std::string ArrayBody(const VARIANT& value, int level)
{
    LONG lower = 0, upper = -1;
    SafeArrayGetLBound(value.parray, 1, &lower);
    SafeArrayGetUBound(value.parray, 1, &upper);
    const std::string blanks(level, ' ');
    std::string body = blanks + "<info value=\"Lower bound: " + std::to_string(lower) + "\"/>\n" + blanks +
                       "<info value=\"Upper bound: " + std::to_string(upper) + "\"/>\n";
    const auto type = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
    if (type == VT_DISPATCH) return body + blanks + "<warning value=\"Value type is not supported by logger\"/>\n";
    for (LONG at = lower; at <= upper; ++at) body += ElementBody(value.parray, type, at, level);
    return body;
}

std::string VariantBody(const VARIANT& value, int level)
{
    if (value.vt & VT_ARRAY) return ArrayBody(value, level);
    switch (value.vt) {
        case VT_EMPTY: return {};
        case VT_R8: return Line(level, Formatted("%lg", value.dblVal));
        case VT_I4: return Line(level, std::to_string(value.lVal));
        case VT_BSTR: return Line(level, QuotedText(value.bstrVal));
        default: throw std::runtime_error("no text for this type");
    }
}

struct Sample {
    const char* type;
    const char* value;
};

// The name of value 1 of each enumeration in the method table.
constexpr Sample kSecondNames[] = {
    {"CapeValidationStatus", "CAPE_INVALID"},
    {"CapePortType", "CAPE_ENERGY"},
    {"CapePortDirection", "CAPE_OUTLET"},
    {"CapeParamMode", "CAPE_OUTPUT"},
    {"CapeParamType", "CAPE_INT"},
    {"CapeReactionType", "CAPE_KINETIC"},
    {"CapeReactionRateBasis", "CAPE_HETEROGENEOUS"},
};

std::string ScalarText(const std::string& type, const VARIANT& value)
{
    if (type == "VT_R4") return Formatted("%lg", static_cast<double>(value.fltVal));
    if (type == "string") return value.bstrVal ? QuotedText(value.bstrVal) : "<NULL>";
    if (type == "double") return Formatted("%lg", value.dblVal);
    if (type == "long") return std::to_string(value.lVal);
    if (type == "short") return std::to_string(value.iVal);
    if (type == "VARIANT_BOOL") return value.boolVal ? "VARIANT_TRUE" : "VARIANT_FALSE";
    if (type == "flags" && value.lVal == 3) return "|";
    if (type == "interface") return value.pdispVal ? "interface pointer " + AddressText(value.pdispVal) : "NULL";
    for (const Sample& sample : kSecondNames) {
        if (type == sample.type && value.lVal == 1) return sample.value;
    }
    throw std::runtime_error("no text for a value of " + type);
}

}  // namespace

ExpectedCall::ExpectedCall(const std::string& logged, bool isIn, const std::string& object)
    : text("<func name=\"" + logged + "\" direc=\"" + (isIn ? "in" : "out") + "\" object=\"" + Escaped(object) +
           "\">\n")
{}

void ExpectedCall::Message(const char* element, const std::string& message)
{
    text += std::string(" <") + element + " value=\"" + Escaped(message) + "\"/>\n";
}

void ExpectedCall::Enclose(const TableStep& argument, const std::string& type, const std::string& body)
{
    text += " <arg name=\"" + argument.name + "\" direc=\"" + (argument.isLoggedIn ? "in" : "out") + "\" type=\"" +
            type + "\">\n" + body + " </arg>\n";
}

void ExpectedCall::Argument(const TableStep& argument, const VARIANT& value)
{
    if (LibraryType(argument.type) != VT_VARIANT) {
        const std::string type = argument.type == "flags" ? "int" : argument.type;
        const bool isNamed = !argument.secondName.empty() && value.lVal == 1;
        return Enclose(argument, type, Line(2, isNamed ? argument.secondName : ScalarText(argument.type, value)));
    }
    std::string body = VariantBody(value, 2);
    const VARTYPE expected = ExpectedVariantType(argument.type);
    if (expected != VT_EMPTY && value.vt != expected && !(value.vt == VT_EMPTY && argument.mayBeEmpty)) {
        body += "  <error value=\"Invalid type for argument " + argument.name + ": expected " + VariantName(expected) +
                "\"/>\n";
    }
    Enclose(argument, VariantName(value.vt), body);
}

void ExpectedCall::NamedObject(const TableStep& argument, IUnknown* proxy, const std::string& name)
{
    Enclose(argument, "interface",
            Line(2, "interface to object \"" + name + "\" (address " + AddressText(proxy) + ")"));
}

}  // namespace zelt::test
