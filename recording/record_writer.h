// Builds the records of recording.proto, and collects them until Flush, which hands all of them over at once, so that a file
// gets only whole records. If handing over fails, the recording ends there: a reader could not follow what comes after. Not
// thread safe.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <protozero/pbf_builder.hpp>

#include "recording/format.h"
#include "recording/pending_records.h"
#include "recording/text_rows.h"

namespace zelt::recording {

struct Header {
    std::uint32_t version = kFormatVersion;
    std::string_view program;
    std::uint32_t width = 0;
    std::string_view objectName, objectType, startText;
    std::uint64_t started = 0, frequency = 0;
    std::uint32_t codePage = 0, locale = 0, thread = 0;
    std::string_view settings;
};

// What the recording is of; see recording.proto.
struct Component {
    std::string_view classId;
    std::uint32_t kind = 0;
    std::string_view name;
    std::uint64_t pointer = 0;
    std::string_view library, libraryVersion, libraryHash, exportedName;
};

// A sentence of the log: its pattern, and what fills the holes.
struct SentenceParts {
    std::string_view pattern;
    std::span<const std::string_view> holes;
};

struct Failure {
    std::string_view name, description;
    const SentenceParts* detail;  // may be null
};

class RecordWriter;

// One value under construction. Each value is written once, or not at all.
class ValueWriter {
public:
    ValueWriter(RecordWriter& records, std::string& message) : records(records), fields(message) {}
    // For a value inside another: written directly into the outer one.
    template <class Tag>
    ValueWriter(RecordWriter& records, protozero::pbf_writer& outer, Tag tag) : records(records), fields(outer, tag)
    {}

    void Integer(std::int64_t value) { fields.add_sint64(ValueTag::Integer, value); }
    void Real(double value) { fields.add_double(ValueTag::Real, value); }
    // Takes the bytes that AppendUtf8 makes.
    void Text(std::string_view utf8);
    void RawText(std::string_view bytes) { fields.add_bytes(ValueTag::RawText, bytes.data(), bytes.size()); }
    void Pointer(std::uint64_t address);
    void Raw(std::string_view bytes) { fields.add_bytes(ValueTag::Raw, bytes.data(), bytes.size()); }

    // What an argument has besides its value.
    void Type(std::string_view type);
    void Shown(std::string_view name);
    void Expected(std::uint16_t type, bool mayBeEmpty);

    // A VARIANT, whose value `body(ValueWriter&)` writes.
    template <class Body>
    void Variant(std::uint16_t type, Body&& body)
    {
        ValueWriter variant(records, fields, ValueTag::Nested);
        variant.fields.add_uint32(ValueTag::VarType, type);
        body(variant);
    }
    // The VARIANT that a VARIANT points to.
    template <class Body>
    void Inner(std::uint16_t type, Body&& body)
    {
        ValueWriter variant(records, fields, ValueTag::Inner);
        variant.fields.add_uint32(ValueTag::VarType, type);
        body(variant);
    }
    using ArrayFields = protozero::pbf_builder<ArrayTag>;
    // The array in a VARIANT, which `body(ArrayFields&)` writes.
    template <class Body>
    void Array(Body&& body)
    {
        ArrayFields array(fields, ValueTag::Nested);
        body(array);
    }
    // An element of an array, written as a VARIANT.
    template <class Body>
    void Element(ArrayFields& array, std::uint16_t type, Body&& body)
    {
        ValueWriter element(records, array, ArrayTag::Elements);
        element.fields.add_uint32(ValueTag::VarType, type);
        body(element);
    }

private:
    friend class RecordWriter;

    RecordWriter& records;
    protozero::pbf_builder<ValueTag> fields;
};

class RecordWriter {
public:
    // Takes whole records; false when it could not.
    using Output = std::function<bool(std::string_view)>;

    explicit RecordWriter(Output output) : output(std::move(output)) {}
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    void Begin(const Header& header);
    void Say(const Component& component);
    // Records the next object and returns its number. `pointer` is 0 for an object that is made later; `proxy` is the pointer
    // of the proxy that takes its place.
    std::uint32_t NewObject(std::uint64_t pointer, std::uint64_t proxy);
    void Query(std::uint32_t object, std::string_view interfaceId, bool isGranted);
    // Times are ticks of one clock, whose frequency the header gives. `number` is the number of the object, 0 for none.
    void BeginCall(std::string_view member, std::string_view object, std::uint32_t number, bool isOutward,
                   std::uint64_t now);
    // `stream` is what the call read from its stream, or wrote to it.
    void EndCall(std::uint32_t status, std::uint64_t now, std::uint64_t inside, const Failure* failure,
                 std::optional<std::string_view> stream = {});
    // A fault can remove the stack frame of code that has begun a call but not yet counted it. Settle removes such calls: those
    // that were begun but are not among the `depth` calls in progress. One that has been handed over, or that other records
    // follow, gets a result instead.
    void Settle(std::size_t depth);
    void Say(const SentenceParts& sentence);
    // `body(ValueWriter&)` writes the value. When it throws, nothing of the argument is recorded.
    template <class Body>
    void Argument(std::string_view name, bool isOut, ArgumentKind kind, Body&& body)
    {
        message.clear();
        ValueWriter value(*this, message);
        value.fields.add_uint32(ValueTag::Name, RowOf(name));
        value.fields.add_uint32(ValueTag::What, static_cast<std::uint32_t>(kind) * 2 + (isOut ? 1 : 0));
        body(value);
        pending.Append(RecordTag::Argument, message);
    }
    void End();

    // Hands over the collected records.
    void Flush();
    // False once something could not be handed over.
    bool IsWhole() const { return isWhole; }

private:
    friend class ValueWriter;

    // The text of a value or a hole gets a row when it first occurs, unless it is longer than kLongestRow or the table has
    // kMostRows rows. Names always get one.
    static constexpr std::size_t kLongestRow = 255;
    static constexpr std::size_t kMostRows = 100'000;
    static constexpr std::uint32_t kNoRow = UINT32_MAX;

    // The row of the text, which gets one if it is new. TryRowOf returns kNoRow for a text that gets none.
    std::uint32_t RowOf(std::string_view text);
    std::uint32_t TryRowOf(std::string_view text);
    std::uint32_t RowOf(std::uint64_t address);
    std::uint32_t NewRow(std::string_view text);
    // A row plus one, 0 for a null pointer.
    std::uint32_t RowPlusOne(std::uint64_t address) { return address == 0 ? 0 : RowOf(address) + 1; }
    void AppendTo(std::string& record, const SentenceParts& sentence);

    Output output;
    PendingRecords pending;
    std::string message;
    // The latest call's record in `pending`, its object, and the time before it.
    struct {
        std::size_t begin = 0, end = 0;
        std::uint32_t number = 0;
        std::uint64_t lastTime = 0;
    } latest;
    // How many of each are in the file. The tables below lack those for which there was not enough memory.
    std::uint32_t textRows = 0, pointerRows = 0, objects = 0;
    TextRows texts;
    std::unordered_map<std::uint64_t, std::uint32_t> pointers;
    std::uint64_t lastTime = 0;
    std::vector<std::uint32_t> objectNames;  // the row of each object's latest name, by number, from 1
    std::vector<std::uint64_t> open;         // the start of each call that has no result
    bool isWhole = true;
};

}  // namespace zelt::recording
