#include "log/recording/value_recorders.h"

#include <oleauto.h>

#include <cstring>

#include <protozero/pbf_writer.hpp>

#include "recording/text_form.h"

namespace zelt {
namespace {

using recording::ArrayTag;
using recording::ValueWriter;

// Deeper values are left out, as in the log: a value that contains itself would have no end.
constexpr int kDeepestRecorded = 17;

void RecordContents(ValueWriter& value, const VARIANT& variant, int depth);

std::string_view BytesOf(const void* start, std::size_t size) { return {static_cast<const char*>(start), size}; }

// The type of the array's elements: the array's own if it stores one, otherwise the VARIANT's.
struct ElementType {
    VARTYPE type;
    bool isOwn;
};
ElementType ElementTypeOf(SAFEARRAY* array, VARTYPE declared)
{
    VARTYPE own = VT_EMPTY;
    if (SUCCEEDED(SafeArrayGetVartype(array, &own))) return {own, true};
    return {declared, false};
}

void RecordElements(ValueWriter& value, ValueWriter::ArrayFields& fields, const SAFEARRAY& array, VARTYPE type,
                    std::size_t count, int depth)
{
    const auto each = [&](auto* elements, auto&& record) {
        for (std::size_t i = 0; i < count; ++i) {
            value.Element(fields, type, [&](ValueWriter& element) { record(element, elements[i]); });
        }
    };
    const void* const data = array.pvData;
    if (type == VT_BSTR && array.cbElements == sizeof(BSTR)) {
        return each(static_cast<const BSTR*>(data), RecordText);
    }
    if ((type == VT_UNKNOWN || type == VT_DISPATCH) && array.cbElements == sizeof(void*)) {
        return each(static_cast<void* const*>(data),
                    [](ValueWriter& element, const void* pointer) { RecordPointer(element, pointer); });
    }
    if (type == VT_VARIANT && array.cbElements == sizeof(VARIANT)) {
        if (depth >= kDeepestRecorded) return;
        const auto* elements = static_cast<const VARIANT*>(data);
        for (std::size_t i = 0; i < count; ++i) {
            value.Element(fields, elements[i].vt,
                          [&](ValueWriter& element) { RecordContents(element, elements[i], depth + 1); });
        }
        return;
    }
    if (type == VT_RECORD) return;
    const std::string_view bytes = BytesOf(data, count * array.cbElements);
    fields.add_bytes(ArrayTag::Numbers, bytes.data(), bytes.size());
}

void RecordArray(ValueWriter& value, const VARIANT& variant, int depth)
{
    SAFEARRAY* array = nullptr;
    if (!(variant.vt & VT_BYREF)) {
        array = variant.parray;
    } else if (variant.pparray) {
        array = *variant.pparray;
    }
    value.Array([&](ValueWriter::ArrayFields& fields) {
        const UINT dimensions = array ? SafeArrayGetDim(array) : 0;
        if (dimensions == 0) return;
        const ElementType elements = ElementTypeOf(array, variant.vt & VT_TYPEMASK);
        fields.add_uint32(ArrayTag::Features, array->fFeatures);
        fields.add_uint32(ArrayTag::ElementSize, static_cast<std::uint32_t>(array->cbElements));
        if (elements.isOwn) fields.add_uint32(ArrayTag::ElementType, elements.type + 1u);
        std::size_t count = 1;
        {
            protozero::packed_field_sint32 bounds(fields, static_cast<protozero::pbf_tag_type>(ArrayTag::Bounds));
            // The descriptor has the rightmost dimension first.
            for (UINT dimension = dimensions; dimension-- > 0;) {
                const SAFEARRAYBOUND& bound = array->rgsabound[dimension];
                bounds.add_element(bound.lLbound);
                bounds.add_element(static_cast<std::int32_t>(bound.cElements));
                count *= bound.cElements;
            }
        }
        if (array->pvData) RecordElements(value, fields, *array, elements.type, count, depth);
    });
}

template <class T>
T Contents(const VARIANT& variant)
{
    T value;
    // The union begins at the same place for every type but DECIMAL.
    const void* const place = variant.vt & VT_BYREF ? variant.byref : &variant.llVal;
    std::memcpy(&value, place, sizeof value);
    return value;
}

void RecordContents(ValueWriter& value, const VARIANT& variant, int depth)
{
    if (variant.vt & VT_ARRAY) return RecordArray(value, variant, depth);
    if ((variant.vt & VT_BYREF) && !variant.byref) return;
    switch (variant.vt & ~VT_BYREF) {
        case VT_I1: return value.Integer(Contents<signed char>(variant));
        case VT_UI1: return value.Integer(Contents<unsigned char>(variant));
        case VT_I2:
        case VT_BOOL: return value.Integer(Contents<short>(variant));
        case VT_UI2: return value.Integer(Contents<unsigned short>(variant));
        case VT_I4:
        case VT_INT:
        case VT_ERROR: return value.Integer(Contents<std::int32_t>(variant));
        case VT_UI4:
        case VT_UINT: return value.Integer(Contents<std::uint32_t>(variant));
        case VT_I8:
        case VT_UI8:
        case VT_CY: return value.Integer(Contents<std::int64_t>(variant));
        case VT_R4: {
            const auto number = Contents<float>(variant);
            return value.Raw(BytesOf(&number, sizeof number));
        }
        case VT_R8:
        case VT_DATE: return value.Real(Contents<double>(variant));
        case VT_DECIMAL: return value.Raw(BytesOf(variant.vt & VT_BYREF ? variant.byref : &variant, sizeof(DECIMAL)));
        case VT_BSTR: return RecordText(value, Contents<BSTR>(variant));
        case VT_UNKNOWN:
        case VT_DISPATCH: return RecordPointer(value, Contents<const void*>(variant));
        case VT_VARIANT:
            if (depth >= kDeepestRecorded) return;
            return value.Inner(static_cast<const VARIANT*>(variant.byref)->vt, [&](ValueWriter& inner) {
                RecordContents(inner, *static_cast<const VARIANT*>(variant.byref), depth + 1);
            });
        default: return;
    }
}

}  // namespace

void RecordText(ValueWriter& value, BSTR text)
{
    if (!text) return;
    const UINT bytes = SysStringByteLen(text);
    if (bytes % sizeof(wchar_t) != 0) return value.RawText(BytesOf(text, bytes));
    std::string form;
    recording::AppendUtf8(form, {reinterpret_cast<const char16_t*>(text), bytes / sizeof(char16_t)});
    value.Text(form);
}

void RecordPointer(ValueWriter& value, const void* pointer)
{
    if (pointer) value.Pointer(reinterpret_cast<std::uintptr_t>(pointer));
}

void RecordVariant(ValueWriter& value, const VARIANT& variant)
{
    value.Variant(variant.vt, [&](ValueWriter& contents) { RecordContents(contents, variant, 0); });
}

}  // namespace zelt
