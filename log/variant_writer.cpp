#include "log/variant_writer.h"

#include <comutil.h>
#include <oleauto.h>

#include <array>

#include "log/arg_writer.h"
#include "log/array_reader.h"
#include "log/log_text.h"
#include "log/recording/record_argument.h"
#include "system/narrow.h"
#include "log/recording/value_recorders.h"
#include "log/value_text.h"

namespace zelt {
namespace {

// Arrays in arrays are followed to this depth; a value that contains itself would have no end.
constexpr int kDeepestArray = 16;

constexpr char kUnknownInMarkup[] = "&lt;unknown&gt;";

void AppendVariantValue(ArgWriter& arg, const VARIANT& value, VARTYPE expected, int level);

void AppendOtherScalar(ArgWriter& arg, const VARIANT& value, int level)
{
    // VARIANT_NOVALUEPROP: do not ask for an object's default property, which would be a call into the object. The source is only
    // read, though its parameter does not say so.
    _variant_t text;
    const HRESULT converted =
        VariantChangeTypeEx(&text, const_cast<VARIANT*>(&value), LOCALE_INVARIANT, VARIANT_NOVALUEPROP, VT_BSTR);
    if (FAILED(converted)) return arg.EscapedValue("<unable to format value>", nullptr, level);
    arg.EscapedValue(Narrow(TextOf(text.bstrVal)), "string value", level);
}

void AppendBound(ArgWriter& arg, Sentence sentence, LONG bound, int level)
{
    std::array<char, kLongestShortText> text;
    const char* const end = WriteDecimal(text.data(), bound);
    arg.Say(sentence, {{text.data(), end}}, level);
}

template <class T, class Append>
void AppendElements(const ArrayReader& reader, Append&& append)
{
    const T* elements = reader.Elements<T>();
    for (ULONG i = 0; i < reader.Count(); ++i) append(elements[i]);
}

void AppendNestedElement(ArgWriter& arg, const VARIANT& element, int level)
{
    if (level > kDeepestArray) return arg.Say(Sentence::UnsupportedValue, level);
    arg.Blanks(arg.Indentation(level));
    arg.Raw("<argval value=\"");
    arg.RawWith([&element](EntryText& out) { AppendVariantTypeName(out, element.vt, kUnknownInMarkup); });
    arg.Raw("\">\r\n");
    AppendVariantValue(arg, element, kAnyType, level + 1);
    arg.Line(level, "</argval>");
}

void AppendArrayElements(ArgWriter& arg, SAFEARRAY* array, VARTYPE elementType, VARTYPE declaredType, int level)
{
    const ArrayReader reader(array, elementType, declaredType);
    if (!reader.IsOpen()) return arg.Say(Sentence::TypeCheckFailed, {reader.Message()}, level);
    switch (elementType) {
        case VT_I2:
            return AppendElements<short>(reader, [&](short element) {
                arg.ShortValue([element](char* text) { return WriteDecimal(text, element); }, level);
            });
        case VT_I4:
            return AppendElements<LONG>(reader, [&](LONG element) {
                arg.ShortValue([element](char* text) { return WriteDecimal(text, element); }, level);
            });
        case VT_R8:
            return AppendElements<double>(
                reader, [&](double element) { AppendDoubleValue(arg, element, Sentence::OldUndefinedElement, level); });
        case VT_BSTR:
            return AppendElements<BSTR>(reader,
                                        [&](BSTR element) { AppendStringValue(arg, element, "<NULL>", level, level); });
        case VT_BOOL:
            return AppendElements<VARIANT_BOOL>(
                reader, [&](VARIANT_BOOL element) { arg.Value(element ? "TRUE" : "FALSE", level); });
        case VT_VARIANT:
            return AppendElements<VARIANT>(reader,
                                           [&](const VARIANT& element) { AppendNestedElement(arg, element, level); });
        default: return arg.Say(Sentence::UnsupportedValue, level);
    }
}

void AppendArray(ArgWriter& arg, const VARIANT& value, VARTYPE expected, int level)
{
    SAFEARRAY* array = nullptr;
    if (!(value.vt & VT_BYREF)) {
        array = value.parray;
    } else if (value.pparray) {
        array = *value.pparray;
    }
    const UINT dimensions = array ? SafeArrayGetDim(array) : 0;
    if (dimensions > 1) {
        std::string count;
        AppendDecimal(count, static_cast<long>(dimensions));
        return arg.Say(Sentence::MultiDimensional, {count}, level);
    }
    LONG bound = 0;
    if (dimensions == 1) {
        if (SUCCEEDED(SafeArrayGetLBound(array, 1, &bound))) AppendBound(arg, Sentence::LowerBound, bound, level);
        if (SUCCEEDED(SafeArrayGetUBound(array, 1, &bound))) AppendBound(arg, Sentence::UpperBound, bound, level);
    }
    // Where no array is expected, the elements are read as the type that the VARIANT declares.
    const bool expectsArray = expected != kAnyType && (expected & VT_ARRAY);
    const VARTYPE declared = value.vt & VT_TYPEMASK;
    AppendArrayElements(arg, array, expectsArray ? expected & VT_TYPEMASK : declared, declared, level);
}

void AppendVariantValue(ArgWriter& arg, const VARIANT& value, VARTYPE expected, int level)
{
    if (value.vt == VT_EMPTY) return;
    if (value.vt & VT_ARRAY) return AppendArray(arg, value, expected, level);
    switch (value.vt) {
        case VT_BSTR: return AppendStringValue(arg, value.bstrVal, "<EMPTY STRINGVAL>", level, level);
        case VT_R8: return AppendDoubleValue(arg, value.dblVal, Sentence::OldUndefinedVariant, level);
        default: return AppendOtherScalar(arg, value, level);
    }
}

}  // namespace

void WriteArg(LogDocument& document, std::string_view name, bool isIn, const VARIANT& value, Shape expected)
{
    const auto type = [&value](EntryText& out) { AppendVariantTypeName(out, value.vt, kUnknownInMarkup); };
    if (document.Recorder()) {
        const std::string shownType = VariantTypeName(value.vt, kUnknownInMarkup);
        RecordArgument(document, name, isIn, recording::ArgumentKind::Variant, shownType,
                       [&](recording::ValueWriter& record) {
                           RecordVariant(record, value);
                           if (expected.type != kAnyType) record.Expected(expected.type, expected.allowEmpty);
                       });
    }
    ArgWriter::Write(document, name, isIn, type, [&](ArgWriter& arg) {
        AppendVariantValue(arg, value, expected.type, 1);
        if (expected.type == kAnyType || value.vt == expected.type) return;
        const bool leftOut = value.vt == VT_EMPTY && (expected.type & VT_ARRAY) && expected.allowEmpty;
        if (!leftOut) {
            arg.Say(Sentence::WrongType, {name, VariantTypeName(expected.type)});
        }
    });
}

}  // namespace zelt
