#include "replay/values.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>

#include "guard/foreign_call.h"
#include "log/recording/recorded_variant.h"
#include "log/recording/value_recorders.h"
#include "recording/call_tree.h"
#include "recording/record_reader.h"

namespace zelt::replay {
namespace {

using com::DualParameter;
using recording::ArgumentRecord;
using recording::Value;
using recording::ValueWriter;

template <class T>
T Read(const void* place)
{
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

bool IsInterface(VARTYPE type) { return type == VT_UNKNOWN || type == VT_DISPATCH; }

// Whether a recording holds a value of this type as an integer.
bool IsInteger(VARTYPE type)
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
        case VT_HRESULT:
        case VT_I8:
        case VT_UI8:
        case VT_CY: return true;
        default: return false;
    }
}

std::int64_t ReadInteger(VARTYPE type, const void* place)
{
    switch (type) {
        case VT_I1: return Read<signed char>(place);
        case VT_UI1: return Read<unsigned char>(place);
        case VT_UI2: return Read<unsigned short>(place);
        case VT_I2:
        case VT_BOOL: return Read<short>(place);
        case VT_UI4:
        case VT_UINT: return Read<std::uint32_t>(place);
        case VT_I8:
        case VT_UI8:
        case VT_CY: return Read<std::int64_t>(place);
        default: return Read<std::int32_t>(place);
    }
}

void Record(ValueWriter& writer, const DualParameter& parameter, const void* place)
{
    if (IsInteger(parameter.type)) return writer.Integer(ReadInteger(parameter.type, place));
    switch (parameter.type) {
        case VT_R8:
        case VT_DATE: return writer.Real(Read<double>(place));
        case VT_BSTR: return RecordText(writer, Read<BSTR>(place));
        case VT_DISPATCH:
        case VT_UNKNOWN: return RecordPointer(writer, Read<const void*>(place));
        case VT_VARIANT: return RecordVariant(writer, *static_cast<const VARIANT*>(place));
        default: return;
    }
}

[[noreturn]] void HasAnotherType(const DualParameter& parameter)
{
    throw Unplayable("the argument \"" + parameter.name + "\" was recorded with another type");
}

void GiveInteger(const DualParameter& parameter, const Value& value, void* place)
{
    if (value.form != Value::Form::Integer) HasAnotherType(parameter);
    std::memcpy(place, &value.integer, std::min(parameter.size, sizeof value.integer));
}

void GiveText(const DualParameter& parameter, const Value& value, void* place)
{
    if (value.form != Value::Form::None && value.form != Value::Form::Text && value.form != Value::Form::RawText) {
        HasAnotherType(parameter);
    }
    BSTR text = NewRecordedText(value);
    std::memcpy(place, &text, sizeof text);
}

void GivePointer(const DualParameter& parameter, const Value& value, Objects& objects, void* place)
{
    if (value.form != Value::Form::None && value.form != Value::Form::Pointer) HasAnotherType(parameter);
    IUnknown* face = nullptr;
    if (value.form == Value::Form::Pointer && value.address != 0) {
        face = objects.StandIn(value.address, parameter.iid).Detach();
    }
    std::memcpy(place, &face, sizeof face);
}

void GiveVariant(const Value& value, Objects& objects, void* place)
{
    // Objects in the VARIANT are handed over as IDispatch, as scripts use them; the copy holds its own references.
    std::vector<ForeignPtr<IUnknown>> held;
    const RecordedVariant recorded(value, [&](std::uint64_t address) -> void* {
        held.push_back(objects.StandIn(address, IID_IDispatch));
        return held.back().Get();
    });
    if (!recorded.IsCopyable()) throw Unplayable("a recorded array has no elements that can be made again");
    auto* const variant = static_cast<VARIANT*>(place);
    VariantInit(variant);
    VARIANT source = recorded.Get();
    // A copy of a VARIANT that points to its value would point into `recorded`, which does not live as long, so the copy
    // contains the value itself.
    const HRESULT copied = source.vt & VT_BYREF ? VariantCopyInd(variant, &source) : VariantCopy(variant, &source);
    if (FAILED(copied)) throw Unplayable("a recorded VARIANT cannot be made again");
}

void GiveValue(const DualParameter& parameter, const Value& value, Objects& objects, void* place)
{
    if (IsInteger(parameter.type)) return GiveInteger(parameter, value, place);
    switch (parameter.type) {
        case VT_R8:
        case VT_DATE:
            if (value.form != Value::Form::Real) HasAnotherType(parameter);
            std::memcpy(place, &value.real, sizeof value.real);
            return;
        case VT_BSTR: return GiveText(parameter, value, place);
        case VT_DISPATCH:
        case VT_UNKNOWN: return GivePointer(parameter, value, objects, place);
        case VT_VARIANT: return GiveVariant(value, objects, place);
        default: throw Unplayable("the argument \"" + parameter.name + "\" has a type that cannot be replayed");
    }
}

void LearnInArray(const recording::ArrayValue& recorded, SAFEARRAY* array, Objects& objects);

void LearnInVariant(const Value& recorded, const VARIANT& actual, Objects& objects)
{
    if (recorded.form == Value::Form::Pointer && (actual.vt == VT_UNKNOWN || actual.vt == VT_DISPATCH)) {
        if (actual.punkVal) objects.Learn(recorded.address, actual.punkVal);
    } else if (recorded.form == Value::Form::Array && (actual.vt & VT_ARRAY) && !(actual.vt & VT_BYREF)) {
        LearnInArray(recorded.array.front(), actual.parray, objects);
    }
}

void LearnInArray(const recording::ArrayValue& recorded, SAFEARRAY* array, Objects& objects)
{
    if (!array || SafeArrayGetDim(array) != 1 || array->rgsabound[0].cElements != recorded.elements.size()) return;
    for (std::size_t i = 0; i < recorded.elements.size(); ++i) {
        const Value& element = recorded.elements[i];
        if (array->fFeatures & FADF_VARIANT) {
            LearnInVariant(element, static_cast<const VARIANT*>(array->pvData)[i], objects);
        } else if (element.form == Value::Form::Pointer && (array->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH))) {
            IUnknown* const object = static_cast<IUnknown* const*>(array->pvData)[i];
            if (object) objects.Learn(element.address, object);
        }
    }
}

}  // namespace

std::vector<const ArgumentRecord*> MatchArguments(const com::DualMethod& method,
                                                  const std::vector<ArgumentRecord>& recorded)
{
    std::vector<const ArgumentRecord*> matched(method.parameters.size(), nullptr);
    std::vector<bool> isTaken(recorded.size(), false);
    const auto match = [&](auto&& fits) {
        std::size_t next = 0;
        for (std::size_t i = 0; i < matched.size(); ++i) {
            if (matched[i]) continue;
            std::size_t found = next;
            while (found < recorded.size() && (isTaken[found] || !fits(method.parameters[i], recorded[found]))) ++found;
            if (found == recorded.size()) continue;
            matched[i] = &recorded[found];
            isTaken[found] = true;
            next = found + 1;
        }
    };
    match([](const DualParameter& parameter, const ArgumentRecord& argument) {
        return !parameter.isOut && !argument.isOut;
    });
    match([](const DualParameter& parameter, const ArgumentRecord& argument) {
        return parameter.isOut && argument.isOut;
    });
    match([](const DualParameter&, const ArgumentRecord&) { return true; });
    return matched;
}

Value Capture(const DualParameter& parameter, const void* place, std::deque<std::string>& texts)
{
    std::string bytes;
    recording::RecordWriter writer([&bytes](std::string_view more) {
        bytes += more;
        return true;
    });
    const HRESULT read = CallForeign([&] {
        writer.Argument({}, false, recording::ArgumentKind::Unreadable,
                        [&](ValueWriter& value) { Record(value, parameter, place); });
        return S_OK;
    });
    if (FAILED(read)) return {};
    writer.Flush();
    std::size_t at = 0;
    recording::RecordReader reader([&](char* out, std::size_t count) {
        count = std::min(count, bytes.size() - at);
        std::memcpy(out, bytes.data() + at, count);
        at += count;
        return count;
    });
    const recording::Record* const record = reader.Next();
    const auto* argument = record ? std::get_if<ArgumentRecord>(record) : nullptr;
    return argument ? recording::Keep(argument->value, texts) : Value();
}

void Give(const DualParameter& parameter, const Value& value, Objects& objects, void* place)
{
    try {
        GiveValue(parameter, value, objects, place);
    } catch (const std::length_error& damage) {
        throw Unplayable(damage.what());
    }
}

void Free(const DualParameter& parameter, void* place) noexcept
{
    AttemptForeign([&] {
        if (parameter.type == VT_BSTR) {
            SysFreeString(Read<BSTR>(place));
        } else if (parameter.type == VT_VARIANT) {
            VariantClear(static_cast<VARIANT*>(place));
        } else if (IsInterface(parameter.type)) {
            if (auto* object = Read<IUnknown*>(place)) object->Release();
        }
    });
}

void LearnObjects(const DualParameter& parameter, const Value& recorded, const void* place, Objects& objects)
{
    AttemptForeign([&] {
        if (IsInterface(parameter.type)) {
            IUnknown* const object = Read<IUnknown*>(place);
            if (object && recorded.form == Value::Form::Pointer) objects.Learn(recorded.address, object);
        } else if (parameter.type == VT_VARIANT) {
            LearnInVariant(recorded, *static_cast<const VARIANT*>(place), objects);
        }
    });
}

}  // namespace zelt::replay
