#include "recording/record_reader.h"

#include <algorithm>
#include <stdexcept>

#include <protozero/pbf_reader.hpp>

namespace zelt::recording {
namespace {

using protozero::data_view;
using protozero::pbf_reader;

constexpr int kMostNesting = 64;

struct Tables {
    const std::deque<std::string>& texts;
    const std::vector<std::uint64_t>& pointers;

    std::string_view Text(std::uint32_t row) const { return texts.at(row); }
    std::uint64_t Pointer(std::uint32_t row) const { return pointers.at(row); }
};

std::string_view View(data_view bytes) { return {bytes.data(), bytes.size()}; }

// The tag of a field: its number and its wire type. A field of another wire type is not one of ours, and is skipped.
template <class Tag>
constexpr std::uint32_t Field(Tag tag, protozero::pbf_wire_type type)
{
    return protozero::tag_and_type(static_cast<protozero::pbf_tag_type>(tag), type);
}
template <class Tag>
constexpr std::uint32_t Number(Tag tag)
{
    return Field(tag, protozero::pbf_wire_type::varint);
}
template <class Tag>
constexpr std::uint32_t Bytes(Tag tag)
{
    return Field(tag, protozero::pbf_wire_type::length_delimited);
}
template <class Tag>
constexpr std::uint32_t Four(Tag tag)
{
    return Field(tag, protozero::pbf_wire_type::fixed32);
}
template <class Tag>
constexpr std::uint32_t Eight(Tag tag)
{
    return Field(tag, protozero::pbf_wire_type::fixed64);
}

Value ReadVariant(pbf_reader fields, const Tables& tables, int depth);

Bound BoundAt(const std::vector<std::int32_t>& numbers, std::size_t dimension)
{
    return {numbers.at(2 * dimension), numbers.at(2 * dimension + 1)};
}

ArrayValue ReadArray(pbf_reader fields, const Tables& tables, int depth)
{
    ArrayValue array;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(ArrayTag::Features): array.features = fields.get_uint32(); break;
            case Number(ArrayTag::ElementSize): array.elementSize = fields.get_uint32(); break;
            case Number(ArrayTag::ElementType):
                array.elementType = static_cast<std::uint16_t>(fields.get_uint32() - 1);
                break;
            case Bytes(ArrayTag::Bounds): {
                std::vector<std::int32_t> numbers;
                for (const std::int32_t number : fields.get_packed_sint32()) numbers.push_back(number);
                for (std::size_t i = 0; i < (numbers.size() + 1) / 2; ++i) array.bounds.push_back(BoundAt(numbers, i));
                break;
            }
            case Bytes(ArrayTag::Numbers): array.numbers = View(fields.get_view()); break;
            case Bytes(ArrayTag::Elements):
                array.elements.push_back(ReadVariant(fields.get_message(), tables, depth + 1));
                break;
            default: fields.skip();
        }
    }
    return array;
}

// False for a field that is not a value's.
bool ReadValueField(pbf_reader& fields, Value& value, const Tables& tables)
{
    switch (fields.tag_and_type()) {
        case Number(ValueTag::Integer):
            value.form = Value::Form::Integer;
            value.integer = fields.get_sint64();
            return true;
        case Eight(ValueTag::Real):
            value.form = Value::Form::Real;
            value.real = fields.get_double();
            return true;
        case Number(ValueTag::Text):
            value.form = Value::Form::Text;
            value.bytes = tables.Text(fields.get_uint32());
            return true;
        case Bytes(ValueTag::LongText):
            value.form = Value::Form::Text;
            value.bytes = View(fields.get_view());
            return true;
        case Bytes(ValueTag::RawText):
            value.form = Value::Form::RawText;
            value.bytes = View(fields.get_view());
            return true;
        case Number(ValueTag::Pointer):
            value.form = Value::Form::Pointer;
            value.address = tables.Pointer(fields.get_uint32());
            return true;
        case Bytes(ValueTag::Raw):
            value.form = Value::Form::Raw;
            value.bytes = View(fields.get_view());
            return true;
        default: return false;
    }
}

Value ReadVariant(pbf_reader fields, const Tables& tables, int depth)
{
    if (depth > kMostNesting) throw std::length_error("values are nested too deep");
    Value value;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(ValueTag::VarType): value.type = static_cast<std::uint16_t>(fields.get_uint32()); break;
            case Bytes(ValueTag::Nested):
                value.form = Value::Form::Array;
                value.array.clear();
                value.array.push_back(ReadArray(fields.get_message(), tables, depth + 1));
                break;
            case Bytes(ValueTag::Inner):
                value.form = Value::Form::Variant;
                value.inner.clear();
                value.inner.push_back(ReadVariant(fields.get_message(), tables, depth + 1));
                break;
            default:
                if (!ReadValueField(fields, value, tables)) fields.skip();
        }
    }
    return value;
}

ArgumentRecord ReadArgument(pbf_reader fields, const Tables& tables)
{
    ArgumentRecord argument;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(ValueTag::Name): argument.name = tables.Text(fields.get_uint32()); break;
            case Number(ValueTag::What): {
                const std::uint32_t what = fields.get_uint32();
                argument.kind = static_cast<ArgumentKind>(what / 2);
                argument.isOut = what % 2 != 0;
                break;
            }
            case Bytes(ValueTag::Nested): argument.value = ReadVariant(fields.get_message(), tables, 0); break;
            case Number(ValueTag::Type): argument.type = tables.Text(fields.get_uint32()); break;
            case Number(ValueTag::Shown): argument.shown = tables.Text(fields.get_uint32()); break;
            case Number(ValueTag::Expected):
                argument.expected = static_cast<std::uint16_t>(fields.get_uint32() - 1);
                break;
            case Number(ValueTag::MayBeEmpty): argument.mayBeEmpty = fields.get_bool(); break;
            default:
                if (!ReadValueField(fields, argument.value, tables)) fields.skip();
        }
    }
    return argument;
}

SentenceRecord ReadSentence(pbf_reader fields, const Tables& tables)
{
    SentenceRecord sentence;
    std::vector<std::uint32_t> rows;
    std::deque<std::string_view> longHoles;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(SentenceTag::Pattern): sentence.pattern = tables.Text(fields.get_uint32()); break;
            case Bytes(SentenceTag::LongHole): longHoles.push_back(View(fields.get_view())); break;
            case Number(SentenceTag::Hole): rows.push_back(fields.get_uint32()); break;
            default: fields.skip();
        }
    }
    for (const std::uint32_t row : rows) {
        if (row != 0) {
            sentence.holes.push_back(tables.Text(row - 1));
        } else {
            if (longHoles.empty()) throw std::length_error("a long hole is missing");
            sentence.holes.push_back(longHoles.front());
            longHoles.pop_front();
        }
    }
    return sentence;
}

CallRecord ReadCall(pbf_reader fields, const Tables& tables)
{
    CallRecord call;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(CallTag::Member): call.member = tables.Text(fields.get_uint32()); break;
            case Number(CallTag::Object): call.object = tables.Text(fields.get_uint32()); break;
            case Number(CallTag::Outward): call.isOutward = fields.get_bool(); break;
            case Number(CallTag::Start): call.start = fields.get_uint64(); break;
            case Number(CallTag::Number): call.number = fields.get_uint32(); break;
            default: fields.skip();
        }
    }
    return call;
}

// Reads a row plus one, and returns the pointer in that row; 0 for none.
std::uint64_t ReadPointer(pbf_reader& fields, const Tables& tables)
{
    const std::uint32_t row = fields.get_uint32();
    return row == 0 ? 0 : tables.Pointer(row - 1);
}

ObjectRecord ReadObject(pbf_reader fields, const Tables& tables)
{
    ObjectRecord object;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(ObjectTag::Pointer): object.pointer = ReadPointer(fields, tables); break;
            case Number(ObjectTag::Proxy): object.proxy = ReadPointer(fields, tables); break;
            default: fields.skip();
        }
    }
    return object;
}

QueryRecord ReadQuery(pbf_reader fields, const Tables& tables)
{
    QueryRecord query;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(QueryTag::Object): {
                const std::uint32_t object = fields.get_uint32();
                query.object = object / 2;
                query.isGranted = object % 2 != 0;
                break;
            }
            case Number(QueryTag::Interface): query.interfaceId = tables.Text(fields.get_uint32()); break;
            default: fields.skip();
        }
    }
    return query;
}

ComponentRecord ReadComponent(pbf_reader fields, const Tables& tables)
{
    ComponentRecord component;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Bytes(ComponentTag::ClassId): component.classId = View(fields.get_view()); break;
            case Number(ComponentTag::Kind): component.kind = fields.get_uint32(); break;
            case Bytes(ComponentTag::Name): component.name = View(fields.get_view()); break;
            case Number(ComponentTag::Pointer): component.pointer = ReadPointer(fields, tables); break;
            case Bytes(ComponentTag::Library): component.library = View(fields.get_view()); break;
            case Bytes(ComponentTag::LibraryVersion): component.libraryVersion = View(fields.get_view()); break;
            case Bytes(ComponentTag::LibraryHash): component.libraryHash = View(fields.get_view()); break;
            case Bytes(ComponentTag::ExportedName): component.exportedName = View(fields.get_view()); break;
            default: fields.skip();
        }
    }
    return component;
}

ResultRecord ReadResult(pbf_reader fields, const Tables& tables)
{
    ResultRecord result;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Four(ResultTag::Status): result.status = fields.get_fixed32(); break;
            case Number(ResultTag::Duration): result.duration = fields.get_uint64(); break;
            case Number(ResultTag::Inside): result.inside = fields.get_uint64(); break;
            case Bytes(ResultTag::Name):
                result.isExplained = true;
                result.name = View(fields.get_view());
                break;
            case Bytes(ResultTag::Description): result.description = View(fields.get_view()); break;
            case Bytes(ResultTag::Detail): result.detail = ReadSentence(fields.get_message(), tables); break;
            case Bytes(ResultTag::Stream): result.stream = View(fields.get_view()); break;
            default: fields.skip();
        }
    }
    return result;
}

HeaderRecord ReadHeader(pbf_reader fields)
{
    HeaderRecord header;
    while (fields.next()) {
        switch (fields.tag_and_type()) {
            case Number(HeaderTag::Version): header.version = fields.get_uint32(); break;
            case Bytes(HeaderTag::Program): header.program = View(fields.get_view()); break;
            case Number(HeaderTag::Width): header.width = fields.get_uint32(); break;
            case Bytes(HeaderTag::ObjectName): header.objectName = View(fields.get_view()); break;
            case Bytes(HeaderTag::ObjectType): header.objectType = View(fields.get_view()); break;
            case Bytes(HeaderTag::StartText): header.startText = View(fields.get_view()); break;
            case Eight(HeaderTag::Started): header.started = fields.get_fixed64(); break;
            case Number(HeaderTag::CodePage): header.codePage = fields.get_uint32(); break;
            case Number(HeaderTag::Locale): header.locale = fields.get_uint32(); break;
            case Number(HeaderTag::Thread): header.thread = fields.get_uint32(); break;
            case Bytes(HeaderTag::Settings): header.settings = View(fields.get_view()); break;
            case Number(HeaderTag::Frequency): header.frequency = fields.get_uint64(); break;
            default: fields.skip();
        }
    }
    return header;
}

}  // namespace

const Record* RecordReader::Next()
{
    while (end == ReadEnd::None) {
        begin += static_cast<std::size_t>(nextOffset - offset);
        offset = nextOffset;
        std::size_t length = 0;
        if (!Load(length)) break;
        nextOffset = offset + length;
        try {
            const std::size_t head = length - recordLength;
            if (Decode(std::string_view(buffer).substr(begin + head, recordLength))) return &record;
        } catch (const std::exception&) {
            // Thrown for fields that do not fit their types, for rows that no table has, and when a damaged length asks for too
            // much memory.
            end = ReadEnd::Damaged;
        }
    }
    return nullptr;
}

// Sets recordLength to the length of the record, and `length` to that plus the number of bytes in which the length is written.
bool RecordReader::Load(std::size_t& length)
{
    std::uint64_t size = 0;
    std::size_t head = 0;
    for (;; ++head) {
        if (!Fill(head + 1)) {
            end = head == 0 ? ReadEnd::Complete : ReadEnd::CutOff;
            return false;
        }
        const auto byte = static_cast<unsigned char>(buffer[begin + head]);
        if (byte == 0 && head == 0) {
            end = ReadEnd::Complete;
            return false;
        }
        size |= static_cast<std::uint64_t>(byte & 0x7F) << (7 * head);
        if (!(byte & 0x80)) break;
        if (head == 4) {
            end = ReadEnd::Damaged;
            return false;
        }
    }
    ++head;
    if (size == 0 || size > kLongestRecord) {
        end = ReadEnd::Damaged;
        return false;
    }
    recordLength = static_cast<std::size_t>(size);
    length = head + recordLength;
    if (Fill(length)) return true;
    end = ReadEnd::CutOff;
    return false;
}

// Makes sure that the buffer has `count` unread bytes; false if the file ends earlier. Reads in portions, so that memory is
// used only for bytes that exist, even if a length is damaged.
bool RecordReader::Fill(std::size_t count)
{
    constexpr std::size_t kPortion = 64 << 10;
    while (buffer.size() - begin < count && !isAtEndOfFile) {
        if (begin >= kPortion) {
            buffer.erase(0, begin);
            begin = 0;
        }
        const std::size_t kept = buffer.size();
        buffer.resize(kept + kPortion);
        const std::size_t read = input(buffer.data() + kept, kPortion);
        buffer.resize(kept + read);
        isAtEndOfFile = read == 0;
    }
    return buffer.size() - begin >= count;
}

std::uint64_t RecordReader::Nanoseconds(std::uint64_t ticks) const
{
    if (kSecond % frequency == 0) return ticks * (kSecond / frequency);
    const double time = static_cast<double>(ticks) * static_cast<double>(kSecond) / static_cast<double>(frequency);
    // Damage may give times that are too large for the type.
    constexpr double kMost = 9e18;
    return static_cast<std::uint64_t>(std::min(time, kMost));
}

// The call with its start in nanoseconds and with the name of its object. If the record has no name, the object's previous call
// has it.
CallRecord RecordReader::WithName(CallRecord call)
{
    call.start = Nanoseconds(call.start);
    if (call.number == 0 || call.number > objectNames.size()) return call;
    std::string_view& last = objectNames[call.number - 1];
    if (call.object.data()) {
        last = call.object;
    } else {
        call.object = last;
    }
    return call;
}

bool RecordReader::Decode(std::string_view bytes)
{
    const Tables tables{texts, pointers};
    pbf_reader fields(bytes.data(), bytes.size());
    bool isRecord = false;
    while (fields.next()) {
        isRecord = true;
        switch (fields.tag_and_type()) {
            case Bytes(RecordTag::Header): {
                HeaderRecord header = ReadHeader(fields.get_message());
                if (header.frequency != 0) frequency = header.frequency;
                record = header;
                break;
            }
            case Bytes(RecordTag::Call): record = WithName(ReadCall(fields.get_message(), tables)); break;
            case Bytes(RecordTag::Argument): record = ReadArgument(fields.get_message(), tables); break;
            case Bytes(RecordTag::Sentence): record = ReadSentence(fields.get_message(), tables); break;
            case Bytes(RecordTag::Result): {
                ResultRecord result = ReadResult(fields.get_message(), tables);
                result.duration = Nanoseconds(result.duration);
                result.inside = Nanoseconds(result.inside);
                record = std::move(result);
                break;
            }
            case Bytes(RecordTag::Object):
                record = ReadObject(fields.get_message(), tables);
                objectNames.emplace_back();
                break;
            case Bytes(RecordTag::Query): record = ReadQuery(fields.get_message(), tables); break;
            case Bytes(RecordTag::Component): record = ReadComponent(fields.get_message(), tables); break;
            case Bytes(RecordTag::End):
                fields.skip();
                record = EndRecord{};
                break;
            case Bytes(RecordTag::Text):
                texts.emplace_back(View(fields.get_view()));
                isRecord = false;
                break;
            case Number(RecordTag::Pointer):
                pointers.push_back(fields.get_uint64());
                isRecord = false;
                break;
            default: fields.skip(); isRecord = false;
        }
    }
    return isRecord;
}

}  // namespace zelt::recording
