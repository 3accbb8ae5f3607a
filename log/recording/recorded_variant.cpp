#include "log/recording/recorded_variant.h"

#include <oleauto.h>

#include <cstring>
#include <stdexcept>

#include "recording/text_form.h"

namespace zelt {
namespace {

using recording::ArrayValue;
using recording::Value;

constexpr std::size_t kMostBytes = std::size_t{1} << 30;

[[noreturn]] void Contradicts() { throw std::length_error("the recorded value contradicts itself"); }

std::size_t CountElements(const ArrayValue& array)
{
    std::size_t count = 1;
    for (const recording::Bound& bound : array.bounds) {
        const auto elements = static_cast<std::uint32_t>(bound.count);
        if (elements != 0 && count > kMostBytes / elements) Contradicts();
        count *= elements;
    }
    return count;
}

std::size_t SizeOf(VARTYPE type)
{
    switch (type) {
        case VT_I1:
        case VT_UI1: return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL: return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_ERROR:
        case VT_R4: return 4;
        default: return 8;
    }
}

// Whether a value of the type is recorded in this form. A value in another form could be taken for a pointer to memory that is
// not there.
bool IsRecordedAs(VARTYPE type, Value::Form form)
{
    switch (type) {
        case VT_I1:
        case VT_UI1:
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_ERROR:
        case VT_I8:
        case VT_UI8:
        case VT_CY: return form == Value::Form::Integer;
        case VT_R8:
        case VT_DATE: return form == Value::Form::Real;
        case VT_R4:
        case VT_DECIMAL: return form == Value::Form::Raw;
        case VT_BSTR: return form == Value::Form::Text || form == Value::Form::RawText;
        case VT_UNKNOWN:
        case VT_DISPATCH: return form == Value::Form::Pointer;
        default: return false;
    }
}

// The feature that says what the elements of an array are; 0 for numbers.
USHORT FeatureOf(VARTYPE type)
{
    switch (type) {
        case VT_BSTR: return FADF_BSTR;
        case VT_UNKNOWN: return FADF_UNKNOWN;
        case VT_DISPATCH: return FADF_DISPATCH;
        case VT_VARIANT: return FADF_VARIANT;
        default: return 0;
    }
}

}  // namespace

BSTR NewRecordedText(const Value& value)
{
    if (value.form == Value::Form::RawText) {
        return SysAllocStringByteLen(value.bytes.data(), static_cast<UINT>(value.bytes.size()));
    }
    if (value.form != Value::Form::Text) return nullptr;
    const std::optional<std::u16string> text = recording::Utf16(value.bytes);
    if (!text) Contradicts();
    return SysAllocStringLen(reinterpret_cast<const wchar_t*>(text->data()), static_cast<UINT>(text->size()));
}

RecordedVariant::RecordedVariant(const Value& value, ObjectFor place)
    : objectFor(std::move(place)), variant(Make(value))
{}

void* RecordedVariant::PointerFor(std::uint64_t address) const
{
    return objectFor ? objectFor(address) : reinterpret_cast<void*>(static_cast<std::uintptr_t>(address));
}

RecordedVariant::~RecordedVariant()
{
    for (BSTR text : texts) SysFreeString(text);
    for (SAFEARRAY* array : arrays) {
        array->pvData = nullptr;
        SafeArrayDestroyDescriptor(array);
    }
}

void* RecordedVariant::Room(std::size_t bytes)
{
    if (bytes > kMostBytes) Contradicts();
    return rooms.emplace_back(bytes).data();
}

VARIANT RecordedVariant::Make(const Value& value)
{
    VARIANT made = {};
    made.vt = value.type;
    if (value.form == Value::Form::None) return made;
    if ((value.form == Value::Form::Array) != ((value.type & VT_ARRAY) != 0)) Contradicts();
    if (value.form == Value::Form::Array) {
        SAFEARRAY* const array = MakeArray(value.array.at(0), value.type & VT_TYPEMASK);
        if (value.type & VT_BYREF) {
            auto** place = static_cast<SAFEARRAY**>(Room(sizeof array));
            *place = array;
            made.pparray = place;
        } else {
            made.parray = array;
        }
        return made;
    }
    if (value.form == Value::Form::Variant) {
        if (value.type != (VT_BYREF | VT_VARIANT)) Contradicts();
        const VARIANT inner = Make(value.inner.at(0));
        made.byref = Room(sizeof inner);
        std::memcpy(made.byref, &inner, sizeof inner);
        return made;
    }
    if (!(value.type & VT_BYREF)) {
        SetScalar(made, value);
        return made;
    }
    // By reference: the value lies in memory of its own, in the form that it has inside a VARIANT.
    VARIANT held = {};
    SetScalar(held, value);
    void* const place = Room(sizeof held);
    std::memcpy(place, (value.type & VT_TYPEMASK) == VT_DECIMAL ? static_cast<const void*>(&held) : &held.llVal,
                (value.type & VT_TYPEMASK) == VT_DECIMAL ? sizeof(DECIMAL) : sizeof held.llVal);
    made.byref = place;
    return made;
}

void RecordedVariant::SetScalar(VARIANT& made, const Value& value)
{
    const VARTYPE vt = made.vt;
    if (!IsRecordedAs(value.type & VT_TYPEMASK, value.form)) Contradicts();
    switch (value.form) {
        case Value::Form::Integer: std::memcpy(&made.llVal, &value.integer, SizeOf(value.type & VT_TYPEMASK)); break;
        case Value::Form::Real: made.dblVal = value.real; break;
        case Value::Form::Text:
        case Value::Form::RawText:
            made.bstrVal = NewRecordedText(value);
            texts.push_back(made.bstrVal);
            break;
        case Value::Form::Pointer: made.byref = PointerFor(value.address); break;
        case Value::Form::Raw:
            if ((value.type & VT_TYPEMASK) == VT_DECIMAL) {
                if (value.bytes.size() != sizeof(DECIMAL)) Contradicts();
                std::memcpy(&made, value.bytes.data(), sizeof(DECIMAL));
                made.vt = vt;
            } else {
                if (value.bytes.size() != SizeOf(value.type & VT_TYPEMASK)) Contradicts();
                std::memcpy(&made.llVal, value.bytes.data(), value.bytes.size());
            }
            break;
        case Value::Form::None:
        case Value::Form::Array:
        case Value::Form::Variant: break;
    }
}

SAFEARRAY* RecordedVariant::MakeArray(const ArrayValue& recorded, VARTYPE declared)
{
    if (recorded.bounds.empty()) return nullptr;
    if (recorded.bounds.size() > 0xFFFF) Contradicts();
    const auto dimensions = static_cast<UINT>(recorded.bounds.size());
    SAFEARRAY* array = nullptr;
    const HRESULT made = recorded.elementType ? SafeArrayAllocDescriptorEx(*recorded.elementType, dimensions, &array)
                                              : SafeArrayAllocDescriptor(dimensions, &array);
    if (FAILED(made)) Contradicts();
    arrays.push_back(array);
    const VARTYPE type = recorded.elementType.value_or(declared);
    const USHORT feature = FeatureOf(type);
    // Only the flag that says what the elements are: the flags about their memory do not apply.
    array->fFeatures |= recorded.features & feature;
    array->cbElements = recorded.elementSize;
    for (UINT dimension = 0; dimension < dimensions; ++dimension) {
        // The descriptor has the rightmost dimension first.
        const recording::Bound& bound = recorded.bounds[dimensions - 1 - dimension];
        array->rgsabound[dimension] = {static_cast<ULONG>(bound.count), bound.lower};
    }
    const std::size_t count = CountElements(recorded);
    const std::size_t size = type == VT_VARIANT ? sizeof(VARIANT) : sizeof(void*);
    if (!recorded.elements.empty() || type == VT_VARIANT) {
        const bool fits = recorded.elements.size() == count && feature != 0 && recorded.elementSize == size;
        if (!recorded.elements.empty() && !fits) Contradicts();
        auto* bytes = static_cast<char*>(Room(count * size));
        for (std::size_t i = 0; i < recorded.elements.size(); ++i) {
            if (type != VT_VARIANT && recorded.elements[i].type != type) Contradicts();
            const VARIANT element = Make(recorded.elements[i]);
            if (size == sizeof(VARIANT)) {
                std::memcpy(bytes + i * size, &element, size);
            } else {
                std::memcpy(bytes + i * size, &element.byref, size);
            }
        }
        array->pvData = bytes;
    } else if (!recorded.numbers.empty()) {
        // Texts and objects are recorded as numbers only where the component gave the array a wrong element size.
        if (feature != 0 && recorded.elementSize == size) Contradicts();
        if (feature != 0) isCopyable = false;
        if (recorded.elementSize == 0 || recorded.numbers.size() / recorded.elementSize < count) Contradicts();
        void* const bytes = Room(recorded.numbers.size());
        std::memcpy(bytes, recorded.numbers.data(), recorded.numbers.size());
        array->pvData = bytes;
    } else if (count != 0) {
        isCopyable = false;
    }
    return array;
}

}  // namespace zelt
