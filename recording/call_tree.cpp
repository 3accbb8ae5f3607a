#include "recording/call_tree.h"

#include <stdexcept>

namespace zelt::recording {
namespace {

// No stack holds more calls. The destruction of a tree of calls nests as deep as the calls do.
constexpr std::size_t kDeepestCall = 2000;

std::string_view Keep(std::string_view text, std::deque<std::string>& texts)
{
    return text.empty() ? std::string_view() : texts.emplace_back(text);
}

ArrayValue Keep(const ArrayValue& array, std::deque<std::string>& texts)
{
    ArrayValue kept;
    kept.features = array.features;
    kept.elementSize = array.elementSize;
    kept.elementType = array.elementType;
    kept.bounds = array.bounds;
    kept.numbers = Keep(array.numbers, texts);
    for (const Value& element : array.elements) kept.elements.push_back(Keep(element, texts));
    return kept;
}

KeptComponent Keep(const ComponentRecord& component)
{
    KeptComponent kept;
    kept.classId = component.classId;
    kept.name = component.name;
    kept.exportedName = component.exportedName;
    kept.library = component.library;
    kept.libraryVersion = component.libraryVersion;
    kept.libraryHash = component.libraryHash;
    kept.kind = component.kind;
    kept.pointer = component.pointer;
    return kept;
}

}  // namespace

Value Keep(const Value& value, std::deque<std::string>& texts)
{
    Value kept;
    kept.type = value.type;
    kept.form = value.form;
    kept.integer = value.integer;
    kept.real = value.real;
    kept.bytes = Keep(value.bytes, texts);
    kept.address = value.address;
    for (const ArrayValue& array : value.array) kept.array.push_back(Keep(array, texts));
    for (const Value& inner : value.inner) kept.inner.push_back(Keep(inner, texts));
    return kept;
}

ArgumentRecord Keep(const ArgumentRecord& argument, std::deque<std::string>& texts)
{
    ArgumentRecord kept;
    kept.name = Keep(argument.name, texts);
    kept.kind = argument.kind;
    kept.isOut = argument.isOut;
    kept.value = Keep(argument.value, texts);
    kept.type = Keep(argument.type, texts);
    kept.shown = Keep(argument.shown, texts);
    kept.expected = argument.expected;
    kept.mayBeEmpty = argument.mayBeEmpty;
    return kept;
}

void KeptQueries::Add(std::uint64_t pointer, std::string_view interfaceId, bool isGranted)
{
    answers[pointer].insert_or_assign(std::string(interfaceId), isGranted);
}

std::optional<bool> KeptQueries::Answer(std::uint64_t pointer, std::string_view interfaceId) const
{
    const auto object = answers.find(pointer);
    if (object == answers.end()) return {};
    const auto answer = object->second.find(interfaceId);
    if (answer == object->second.end()) return {};
    return answer->second;
}

std::vector<std::string> KeptQueries::Granted(std::uint64_t pointer) const
{
    std::vector<std::string> granted;
    const auto object = answers.find(pointer);
    if (object == answers.end()) return granted;
    for (const auto& [interfaceId, isGranted] : object->second) {
        if (isGranted) granted.push_back(interfaceId);
    }
    return granted;
}

std::unique_ptr<KeptCall> CallTreeReader::Next()
{
    while (!isClosed) {
        const Record* const record = records.Next();
        // If the recording ends within a call, the incomplete call is returned.
        if (!record) break;
        Take(*record);
        if (outermost && open.empty()) break;
    }
    open.clear();
    return std::move(outermost);
}

ObjectRecord CallTreeReader::ObjectWith(std::uint32_t number) const
{
    return number == 0 || number > objects.size() ? ObjectRecord() : objects[number - 1];
}

void CallTreeReader::Take(const Record& record)
{
    if (std::holds_alternative<EndRecord>(record)) {
        isClosed = true;
    } else if (const auto* object = std::get_if<ObjectRecord>(&record)) {
        objects.push_back(*object);
    } else if (const auto* query = std::get_if<QueryRecord>(&record)) {
        const ObjectRecord asked = ObjectWith(query->object);
        queries.Add(asked.pointer, query->interfaceId, query->isGranted);
        queries.Add(asked.proxy, query->interfaceId, query->isGranted);
    } else if (const auto* made = std::get_if<ComponentRecord>(&record)) {
        (open.empty() ? component : open.back()->component) = Keep(*made);
    } else if (const auto* call = std::get_if<CallRecord>(&record)) {
        if (open.size() >= kDeepestCall) throw std::runtime_error("the recording has calls that are nested too deep");
        auto kept = std::make_unique<KeptCall>();
        kept->number = ++calls;
        kept->call = *call;
        kept->call.member = Keep(call->member, kept->texts);
        kept->call.object = Keep(call->object, kept->texts);
        kept->object = ObjectWith(call->number);
        KeptCall* const opened = kept.get();
        if (open.empty()) {
            outermost = std::move(kept);
        } else {
            open.back()->nested.push_back(std::move(kept));
        }
        open.push_back(opened);
    } else if (open.empty()) {
        return;
    } else if (const auto* argument = std::get_if<ArgumentRecord>(&record)) {
        KeptCall& owner = *open.back();
        owner.arguments.push_back(Keep(*argument, owner.texts));
    } else if (const auto* result = std::get_if<ResultRecord>(&record)) {
        KeptCall& owner = *open.back();
        owner.hasEnded = true;
        owner.result.status = result->status;
        owner.result.duration = result->duration;
        owner.result.inside = result->inside;
        owner.result.isExplained = result->isExplained;
        owner.result.name = Keep(result->name, owner.texts);
        owner.result.description = Keep(result->description, owner.texts);
        if (result->stream) owner.result.stream = Keep(*result->stream, owner.texts);
        open.pop_back();
    }
}

}  // namespace zelt::recording
