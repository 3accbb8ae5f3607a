#include "recording/record_writer.h"

namespace zelt::recording {

void ValueWriter::Text(std::string_view utf8)
{
    const std::uint32_t row = records.TryRowOf(utf8);
    if (row != RecordWriter::kNoRow) return fields.add_uint32(ValueTag::Text, row);
    fields.add_bytes(ValueTag::LongText, utf8.data(), utf8.size());
}

void ValueWriter::Pointer(std::uint64_t address) { fields.add_uint32(ValueTag::Pointer, records.RowOf(address)); }

void ValueWriter::Type(std::string_view type) { fields.add_uint32(ValueTag::Type, records.RowOf(type)); }

void ValueWriter::Shown(std::string_view name) { fields.add_uint32(ValueTag::Shown, records.RowOf(name)); }

void ValueWriter::Expected(std::uint16_t type, bool mayBeEmpty)
{
    fields.add_uint32(ValueTag::Expected, type + 1u);
    if (mayBeEmpty) fields.add_bool(ValueTag::MayBeEmpty, true);
}

void RecordWriter::Begin(const Header& header)
{
    message.clear();
    protozero::pbf_builder<HeaderTag> fields(message);
    const auto text = [&](HeaderTag tag, std::string_view value) { fields.add_bytes(tag, value.data(), value.size()); };
    fields.add_uint32(HeaderTag::Version, header.version);
    text(HeaderTag::Program, header.program);
    fields.add_uint32(HeaderTag::Width, header.width);
    text(HeaderTag::ObjectName, header.objectName);
    text(HeaderTag::ObjectType, header.objectType);
    text(HeaderTag::StartText, header.startText);
    fields.add_fixed64(HeaderTag::Started, header.started);
    fields.add_uint32(HeaderTag::CodePage, header.codePage);
    fields.add_uint32(HeaderTag::Locale, header.locale);
    fields.add_uint32(HeaderTag::Thread, header.thread);
    text(HeaderTag::Settings, header.settings);
    fields.add_uint64(HeaderTag::Frequency, header.frequency);
    pending.Append(RecordTag::Header, message);
}

void RecordWriter::Say(const Component& component)
{
    const std::uint32_t pointer = RowPlusOne(component.pointer);
    message.clear();
    protozero::pbf_builder<ComponentTag> fields(message);
    const auto text = [&](ComponentTag tag, std::string_view value) {
        if (!value.empty()) fields.add_bytes(tag, value.data(), value.size());
    };
    text(ComponentTag::ClassId, component.classId);
    fields.add_uint32(ComponentTag::Kind, component.kind);
    text(ComponentTag::Name, component.name);
    if (pointer != 0) fields.add_uint32(ComponentTag::Pointer, pointer);
    text(ComponentTag::Library, component.library);
    text(ComponentTag::LibraryVersion, component.libraryVersion);
    text(ComponentTag::LibraryHash, component.libraryHash);
    text(ComponentTag::ExportedName, component.exportedName);
    pending.Append(RecordTag::Component, message);
}

std::uint32_t RecordWriter::NewObject(std::uint64_t pointer, std::uint64_t proxy)
{
    const std::uint32_t row = RowPlusOne(pointer), proxyRow = RowPlusOne(proxy);
    message.clear();
    protozero::pbf_builder<ObjectTag> fields(message);
    if (row != 0) fields.add_uint32(ObjectTag::Pointer, row);
    if (proxyRow != 0) fields.add_uint32(ObjectTag::Proxy, proxyRow);
    pending.Append(RecordTag::Object, message);
    return ++objects;
}

void RecordWriter::Query(std::uint32_t object, std::string_view interfaceId, bool isGranted)
{
    const std::uint32_t row = RowOf(interfaceId);
    message.clear();
    protozero::pbf_builder<QueryTag> fields(message);
    fields.add_uint32(QueryTag::Object, object * 2 + (isGranted ? 1 : 0));
    fields.add_uint32(QueryTag::Interface, row);
    pending.Append(RecordTag::Query, message);
}

void RecordWriter::BeginCall(std::string_view member, std::string_view object, std::uint32_t number, bool isOutward,
                             std::uint64_t now)
{
    message.clear();
    protozero::pbf_builder<CallTag> fields(message);
    fields.add_uint32(CallTag::Member, RowOf(member));
    const std::uint32_t name = RowOf(object);
    if (number > objectNames.size()) objectNames.resize(number, kNoRow);
    if (number == 0 || objectNames[number - 1] != name) fields.add_uint32(CallTag::Object, name);
    if (isOutward) fields.add_bool(CallTag::Outward, true);
    fields.add_uint64(CallTag::Start, now - lastTime);
    if (number != 0) fields.add_uint32(CallTag::Number, number);
    open.reserve(open.size() + 1);
    latest = {pending.Size(), 0, number, lastTime};
    pending.Append(RecordTag::Call, message);
    latest.end = pending.Size();
    if (number != 0) objectNames[number - 1] = name;
    lastTime = now;
    open.push_back(now);
}

void RecordWriter::Settle(std::size_t depth)
{
    while (open.size() > depth) {
        if (latest.end != pending.Size() || pending.Size() == 0) {
            EndCall(0, lastTime, 0, nullptr);
            continue;
        }
        pending.CutTo(latest.begin);
        lastTime = latest.lastTime;
        // The removed record may have named the object, so the object's next call names it again.
        if (latest.number != 0) objectNames[latest.number - 1] = kNoRow;
        latest = {};
        open.pop_back();
    }
}

void RecordWriter::EndCall(std::uint32_t status, std::uint64_t now, std::uint64_t inside, const Failure* failure,
                           std::optional<std::string_view> stream)
{
    message.clear();
    protozero::pbf_builder<ResultTag> fields(message);
    if (status != 0) fields.add_fixed32(ResultTag::Status, status);
    if (!open.empty()) {
        fields.add_uint64(ResultTag::Duration, now - open.back());
        open.pop_back();
    }
    if (inside != 0) fields.add_uint64(ResultTag::Inside, inside);
    if (failure) {
        fields.add_bytes(ResultTag::Name, failure->name.data(), failure->name.size());
        fields.add_bytes(ResultTag::Description, failure->description.data(), failure->description.size());
        if (failure->detail) {
            std::string detail;
            AppendTo(detail, *failure->detail);
            fields.add_message(ResultTag::Detail, detail);
        }
    }
    if (stream) fields.add_bytes(ResultTag::Stream, stream->data(), stream->size());
    pending.Append(RecordTag::Result, message);
    lastTime = now;
}

void RecordWriter::Say(const SentenceParts& sentence)
{
    message.clear();
    AppendTo(message, sentence);
    pending.Append(RecordTag::Sentence, message);
}

void RecordWriter::AppendTo(std::string& record, const SentenceParts& sentence)
{
    protozero::pbf_builder<SentenceTag> fields(record);
    fields.add_uint32(SentenceTag::Pattern, RowOf(sentence.pattern));
    for (const std::string_view hole : sentence.holes) {
        const std::uint32_t row = TryRowOf(hole);
        fields.add_uint32(SentenceTag::Hole, row == kNoRow ? 0 : row + 1);
        if (row == kNoRow) fields.add_bytes(SentenceTag::LongHole, hole.data(), hole.size());
    }
}

void RecordWriter::End()
{
    message.clear();
    pending.Append(RecordTag::End, message);
}

void RecordWriter::Flush()
{
    if (pending.Size() == 0) return;
    if (isWhole) isWhole = output(pending.All());
    pending.CutTo(0);
}

std::uint32_t RecordWriter::RowOf(std::string_view text)
{
    const std::optional<std::uint32_t> row = texts.Find(text);
    return row ? *row : NewRow(text);
}

std::uint32_t RecordWriter::TryRowOf(std::string_view text)
{
    if (const std::optional<std::uint32_t> row = texts.Find(text)) return *row;
    return text.size() > kLongestRow || textRows >= kMostRows ? kNoRow : NewRow(text);
}

std::uint32_t RecordWriter::NewRow(std::string_view text)
{
    pending.Append(RecordTag::Text, text);
    const std::uint32_t row = textRows++;
    texts.Add(text, row);
    return row;
}

std::uint32_t RecordWriter::RowOf(std::uint64_t address)
{
    const auto found = pointers.find(address);
    if (found != pointers.end()) return found->second;
    pending.Append(RecordTag::Pointer, address);
    const std::uint32_t row = pointerRows++;
    pointers.emplace(address, row);
    return row;
}

}  // namespace zelt::recording
