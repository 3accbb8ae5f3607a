#include "ctl/recording/trimming/call_outline.h"

#include <algorithm>

namespace zelt::ctl {

using namespace recording;

namespace {

// Sorts the elements and removes repetitions.
template <class T>
void Tidy(std::vector<T>& all)
{
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    all.shrink_to_fit();
}

void AddPointers(const Value& value, std::vector<std::uint64_t>& pointers)
{
    if (value.form == Value::Form::Pointer && value.address != 0) pointers.push_back(value.address);
    for (const Value& inner : value.inner) AddPointers(inner, pointers);
    for (const ArrayValue& array : value.array) {
        for (const Value& element : array.elements) AddPointers(element, pointers);
    }
}

}  // namespace

void CallOutline::Take(const Record& record)
{
    if (const auto* call = std::get_if<CallRecord>(&record)) {
        Take(*call);
    } else if (const auto* argument = std::get_if<ArgumentRecord>(&record)) {
        Take(*argument);
    } else if (const auto* result = std::get_if<ResultRecord>(&record)) {
        Take(*result);
    } else if (const auto* object = std::get_if<ObjectRecord>(&record)) {
        objects.push_back(*object);
    } else if (std::holds_alternative<ComponentRecord>(record) && !open.empty()) {
        calls.back().makesComponent = true;
    }
}

void CallOutline::Take(const CallRecord& call)
{
    ++count;
    if (open.empty()) {
        OutlinedCall outlined;
        outlined.first = count;
        const MemberEffect effect = EffectOf(call.member);
        outlined.effect = effect.effect;
        if (!effect.group.empty()) {
            std::string group = std::to_string(call.number);
            group.append(1, ' ').append(effect.group);
            outlined.group = groups.emplace(group, static_cast<std::uint32_t>(groups.size() + 1)).first->second;
        }
        calls.push_back(std::move(outlined));
    }
    OutlinedCall& outermost = calls.back();
    outermost.last = count;
    if (call.number != 0) {
        outermost.objects.push_back(call.number);
        if (!call.isOutward) outermost.called.push_back(call.number);
    }
    if (call.isOutward && IsQuestionToRemember(call.member)) {
        std::string question = std::to_string(call.number);
        question.append(1, ' ').append(call.member);
        outermost.asksAnew |= asked.insert(std::move(question)).second;
    }
    open.push_back({count, call.isOutward});
}

void CallOutline::Take(const ArgumentRecord& argument)
{
    if (open.empty()) return;
    OutlinedCall& outermost = calls.back();
    AddPointers(argument.value, outermost.mentioned);
    // The component gives the outputs of the calls that it answers, and the inputs of the calls that it makes.
    if (argument.isOut != open.back().isOutward) AddPointers(argument.value, outermost.given);
}

void CallOutline::Take(const ResultRecord& result)
{
    if (open.empty()) return;
    const bool hasFailed = (result.status & 0x80000000u) != 0;
    if (hasFailed) failures.push_back(open.back().number);
    open.pop_back();
    if (!open.empty()) return;
    OutlinedCall& ended = calls.back();
    ended.hasEnded = true;
    ended.hasFailed = hasFailed;
    Tidy(ended.objects);
    Tidy(ended.called);
    Tidy(ended.given);
    Tidy(ended.mentioned);
}

std::vector<std::uint64_t> CallOutline::Failures() const
{
    std::vector<std::uint64_t> inOrder = failures;
    std::sort(inOrder.begin(), inOrder.end());
    return inOrder;
}

}  // namespace zelt::ctl
