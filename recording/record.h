// The records of a recording as a reader gets them. Texts are views that are valid until the next record is read.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "recording/format.h"

namespace zelt::recording {

struct ArrayValue;

// A value inside an argument or a VARIANT.
struct Value {
    enum class Form : std::uint8_t { None, Integer, Real, Text, RawText, Pointer, Raw, Array, Variant };

    std::uint16_t type = 0;  // VARTYPE
    Form form = Form::None;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view bytes;         // of a text (UTF-8, see text_form.h), a raw text (UTF-16), or raw bytes
    std::uint64_t address = 0;      // of a pointer
    std::vector<ArrayValue> array;  // one element, for an array
    std::vector<Value> inner;       // one element, for a VARIANT that points to another

    Value();
    ~Value();
    Value(Value&&) noexcept;
    Value& operator=(Value&&) noexcept;
};

struct Bound {
    std::int32_t lower, count;
};

struct ArrayValue {
    std::uint32_t features = 0, elementSize = 0;
    std::optional<std::uint16_t> elementType;  // if the array itself stores it
    std::vector<Bound> bounds;                 // empty for a null array
    std::string_view numbers;
    std::vector<Value> elements;
};

struct HeaderRecord {
    std::uint32_t version = 0, width = 0, codePage = 0, locale = 0, thread = 0;
    std::uint64_t started = 0, frequency = 0;
    std::string_view program, objectName, objectType, startText, settings;
};

struct CallRecord {
    std::string_view member, object;
    bool isOutward = false;
    std::uint64_t start = 0;   // in nanoseconds since the latest start or end of a call
    std::uint32_t number = 0;  // of the object, from 1; 0 when it is not known
};

// Objects are numbered from 1, in the order of these records.
struct ObjectRecord {
    std::uint64_t pointer = 0;  // 0 for an object that is made later
    std::uint64_t proxy = 0;    // of the proxy that takes its place
};

struct QueryRecord {
    std::uint32_t object = 0;
    std::string_view interfaceId;  // 16 bytes
    bool isGranted = false;
};

struct ComponentRecord {
    std::string_view classId;  // 16 bytes
    std::uint32_t kind = 0;    // a kind of package, or kUnitOperation
    std::string_view name;     // in its manager
    std::uint64_t pointer = 0;
    std::string_view library, libraryVersion, libraryHash, exportedName;
};

struct ArgumentRecord {
    std::string_view name;
    ArgumentKind kind = ArgumentKind::Unreadable;
    bool isOut = false;
    Value value;  // with its type if it is a VARIANT
    std::string_view type, shown;
    std::optional<std::uint16_t> expected;
    bool mayBeEmpty = false;
};

struct SentenceRecord {
    std::string_view pattern;
    std::vector<std::string_view> holes;
};

struct ResultRecord {
    std::uint32_t status = 0;
    std::uint64_t duration = 0, inside = 0;
    bool isExplained = false;  // name and description are those of a failure
    std::string_view name, description;
    std::optional<SentenceRecord> detail;
    std::optional<std::string_view> stream;  // what the call read from its stream, or wrote to it
};

struct EndRecord {};

using Record = std::variant<HeaderRecord, CallRecord, ArgumentRecord, SentenceRecord, ResultRecord, EndRecord,
                            ObjectRecord, QueryRecord, ComponentRecord>;

}  // namespace zelt::recording
