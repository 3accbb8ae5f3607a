// Descriptors of values: strings, numbers, enumerations, VARIANTs, and interface pointers that pass as they are.
#pragma once

#include "core/descriptor_steps.h"
#include "log/enumeration_writers.h"
#include "log/value_writers.h"
#include "log/variant_writer.h"

namespace zelt {

// How a value is written, chosen by its C++ type unless the row says otherwise.

struct ByType {
    template <class T>
    static void Write(LogDocument& document, std::string_view name, bool isIn, const T& value)
    {
        if constexpr (std::is_pointer_v<T> && std::is_convertible_v<T, IUnknown*>) {
            WriteArg(document, name, isIn, static_cast<IUnknown*>(value));
        } else {
            WriteArg(document, name, isIn, value);
        }
    }
};

struct AsShape {
    Shape shape;
    void Write(LogDocument& document, std::string_view name, bool isIn, const VARIANT& value) const
    {
        WriteArg(document, name, isIn, value, shape);
    }
};

struct AsVariantBool {
    static void Write(LogDocument& document, std::string_view name, bool isIn, VARIANT_BOOL value)
    {
        WriteVariantBoolArg(document, name, isIn, value);
    }
};

struct AsWindowsBool {
    static void Write(LogDocument& document, std::string_view name, bool isIn, BOOL value)
    {
        WriteBoolArg(document, name, isIn, value);
    }
};

struct AsFlags {
    static void Write(LogDocument& document, std::string_view name, bool isIn, int value)
    {
        WriteFlagsArg(document, name, isIn, value);
    }
};

template <class T, class Format>
struct InArgument : NoSteps {
    using Parameter = T;
    std::string_view name;
    const T& value;
    Format format;

    InArgument(std::string_view name, const T& value, Format format) : name(name), value(value), format(format) {}
    void Describe(LoggedCall& call) const
    {
        if (LogDocument* log = call.Document()) format.Write(*log, name, true, value);
    }
    const T& Value() const { return value; }
};

// A value that goes in: string, number, enumeration, interface pointer or VARIANT.
template <class T>
auto In(std::string_view name, const T& value)
{
    return InArgument<T, ByType>(name, value, {});
}
inline auto In(std::string_view name, const VARIANT& value, Shape shape)
{
    return InArgument<VARIANT, AsShape>(name, value, {shape});
}
inline auto InBool(std::string_view name, const VARIANT_BOOL& value)
{
    return InArgument<VARIANT_BOOL, AsVariantBool>(name, value, {});
}
inline auto InWindowsBool(std::string_view name, const BOOL& value)
{
    return InArgument<BOOL, AsWindowsBool>(name, value, {});
}
inline auto InFlags(std::string_view name, const int& value) { return InArgument<int, AsFlags>(name, value, {}); }

// An input that is logged as an output, before the call is forwarded: readers of existing logs rely on it.
struct InShownAsOut : InArgument<VARIANT, AsShape> {
    InShownAsOut(std::string_view name, const VARIANT& value, Shape shape) : InArgument(name, value, {shape}) {}
    void Describe(LoggedCall& call) const
    {
        if (LogDocument* log = call.Document()) format.Write(*log, name, false, value);
    }
};

void WarnNullOutput(LogDocument& document, std::string_view name);

template <class T, class Format>
struct OutArgument : NoSteps {
    using Parameter = T*;
    using FinishOnlyLogs = void;
    std::string_view name;
    T* value;
    Format format;

    OutArgument(std::string_view name, T* value, Format format) : name(name), value(value), format(format) {}
    T* Value() const { return value; }
    void Finish(LoggedCall& call, HRESULT& result) const
    {
        LogDocument* log = call.Document();
        if (!log || FAILED(result)) return;
        value ? format.Write(*log, name, false, *value) : WarnNullOutput(*log, name);
    }
};

// A value that comes back; logged only when the call succeeded.
template <class T>
auto Out(std::string_view name, T* value)
{
    return OutArgument<T, ByType>(name, value, {});
}
// A list of names may come back as VT_EMPTY, because the standard returns a list without elements that way. Other lists may do
// so only if their shape allows it, because the caller need not have asked for them.
inline auto Out(std::string_view name, VARIANT* value, Shape shape)
{
    shape.allowEmpty |= shape.type == kStrings.type;
    return OutArgument<VARIANT, AsShape>(name, value, {shape});
}
inline auto OutBool(std::string_view name, VARIANT_BOOL* value)
{
    return OutArgument<VARIANT_BOOL, AsVariantBool>(name, value, {});
}

}  // namespace zelt
