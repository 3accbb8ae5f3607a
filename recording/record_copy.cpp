#include "recording/record_copy.h"

namespace zelt::recording {
namespace {

constexpr std::uint64_t kNanoseconds = 1'000'000'000;  // in a second

void CopyValue(ValueWriter& writer, const Value& value);

void CopyArray(ValueWriter& writer, const ArrayValue& array)
{
    writer.Array([&](ValueWriter::ArrayFields& fields) {
        if (array.bounds.empty()) return;
        fields.add_uint32(ArrayTag::Features, array.features);
        fields.add_uint32(ArrayTag::ElementSize, array.elementSize);
        if (array.elementType) fields.add_uint32(ArrayTag::ElementType, *array.elementType + 1u);
        std::vector<std::int32_t> bounds;
        for (const Bound& bound : array.bounds) bounds.insert(bounds.end(), {bound.lower, bound.count});
        fields.add_packed_sint32(ArrayTag::Bounds, bounds.begin(), bounds.end());
        if (array.numbers.data()) fields.add_bytes(ArrayTag::Numbers, array.numbers.data(), array.numbers.size());
        for (const Value& element : array.elements) {
            writer.Element(fields, element.type, [&](ValueWriter& inner) { CopyValue(inner, element); });
        }
    });
}

void CopyValue(ValueWriter& writer, const Value& value)
{
    switch (value.form) {
        case Value::Form::None: break;
        case Value::Form::Integer: writer.Integer(value.integer); break;
        case Value::Form::Real: writer.Real(value.real); break;
        case Value::Form::Text: writer.Text(value.bytes); break;
        case Value::Form::RawText: writer.RawText(value.bytes); break;
        case Value::Form::Pointer: writer.Pointer(value.address); break;
        case Value::Form::Raw: writer.Raw(value.bytes); break;
        case Value::Form::Array: CopyArray(writer, value.array.front()); break;
        case Value::Form::Variant:
            writer.Inner(value.inner.front().type, [&](ValueWriter& inner) { CopyValue(inner, value.inner.front()); });
            break;
    }
}

}  // namespace

void RecordCopier::Take(const Record& record, bool isKept)
{
    std::visit([&](const auto& one) { Take(one, isKept); }, record);
}

void RecordCopier::Take(const HeaderRecord& header, bool isKept)
{
    if (!isKept) return;
    Header copy;
    copy.program = header.program;
    copy.width = header.width;
    copy.objectName = header.objectName;
    copy.objectType = header.objectType;
    copy.startText = header.startText;
    copy.started = header.started;
    copy.frequency = kNanoseconds;
    copy.codePage = header.codePage;
    copy.locale = header.locale;
    copy.thread = header.thread;
    copy.settings = header.settings;
    writer.Begin(copy);
}

void RecordCopier::Take(const ComponentRecord& component, bool isKept)
{
    if (!isKept) return;
    writer.Say(Component{component.classId, component.kind, component.name, component.pointer, component.library,
                         component.libraryVersion, component.libraryHash, component.exportedName});
}

void RecordCopier::Take(const ObjectRecord& object, bool isKept)
{
    numbers.push_back(isKept ? writer.NewObject(object.pointer, object.proxy) : 0);
}

void RecordCopier::Take(const QueryRecord& query, bool isKept)
{
    const std::uint32_t number = NumberOf(query.object);
    if (isKept && number != 0) writer.Query(number, query.interfaceId, query.isGranted);
}

void RecordCopier::Take(const CallRecord& call, bool isKept)
{
    now += call.start;
    starts.push_back(now);
    if (isKept) writer.BeginCall(call.member, call.object, NumberOf(call.number), call.isOutward, now);
}

void RecordCopier::Take(const ArgumentRecord& argument, bool isKept)
{
    if (!isKept) return;
    writer.Argument(argument.name, argument.isOut, argument.kind, [&](ValueWriter& value) {
        if (argument.kind == ArgumentKind::Variant || !argument.value.array.empty() || !argument.value.inner.empty()) {
            value.Variant(argument.value.type, [&](ValueWriter& variant) { CopyValue(variant, argument.value); });
        } else {
            CopyValue(value, argument.value);
        }
        if (argument.type.data()) value.Type(argument.type);
        if (argument.shown.data()) value.Shown(argument.shown);
        if (argument.expected) value.Expected(*argument.expected, argument.mayBeEmpty);
    });
}

void RecordCopier::Take(const SentenceRecord& sentence, bool isKept)
{
    if (isKept) writer.Say(SentenceParts{sentence.pattern, sentence.holes});
}

void RecordCopier::Take(const ResultRecord& result, bool isKept)
{
    // A damaged recording may contain a result without its call.
    if (!starts.empty()) {
        now = starts.back() + result.duration;
        starts.pop_back();
    }
    if (!isKept) return;
    SentenceParts detail = {};
    if (result.detail) detail = {result.detail->pattern, result.detail->holes};
    const Failure failure = {result.name, result.description, result.detail ? &detail : nullptr};
    writer.EndCall(result.status, now, result.inside, result.isExplained ? &failure : nullptr, result.stream);
}

void RecordCopier::Take(const EndRecord&, bool isKept)
{
    if (isKept) writer.End();
}

std::uint32_t RecordCopier::NumberOf(std::uint32_t object) const
{
    return object == 0 || object > numbers.size() ? 0 : numbers[object - 1];
}

}  // namespace zelt::recording
