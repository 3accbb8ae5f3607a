#include "ctl/log/call_summary.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zelt::ctl {
namespace {

constexpr std::size_t kLongestText = 200;

void SummariseValue(ArgumentSummary& argument, const LogEvent& event)
{
    if (argument.count++ == 0) {
        argument.first = Unquoted(event.text).substr(0, kLongestText);
        argument.least = HUGE_VAL;
        argument.most = -HUGE_VAL;
    }
    double number = 0;
    const char* end = event.text.data() + event.text.size();
    const auto read = std::from_chars(event.text.data(), end, number);
    const bool isNumber = read.ec == std::errc() && read.ptr == end;
    if (event.text == "N/A" || (isNumber && !std::isfinite(number))) {
        if (!argument.notANumber) argument.notANumber = event.line;
    } else if (isNumber) {
        argument.sum += number;
        argument.least = std::min(argument.least, number);
        argument.most = std::max(argument.most, number);
    } else {
        argument.numbers = false;
    }
}

}  // namespace

const ArgumentSummary* CallSummary::Find(std::string_view argument) const
{
    for (const ArgumentSummary& candidate : arguments) {
        if (candidate.name == argument) return &candidate;
    }
    return nullptr;
}

std::string_view CallSummary::First(std::string_view argument) const
{
    const ArgumentSummary* found = Find(argument);
    return found ? std::string_view(found->first) : std::string_view();
}

void CallSummarizer::Begin(const LogEvent& event)
{
    if (event.kind == EventKind::Call) {
        CallSummary& call = open.Push();
        call.name = event.name;
        call.object = event.text;
        call.inward = event.inward;
        call.line = event.line;
        call.result = {};
        call.arguments.ShrinkTo(0);
        call.interfaceLength = event.Interface().size();
        return;
    }
    if (open.IsEmpty()) return;
    CallSummary& call = open.Top();
    if (event.kind == EventKind::Argument) {
        if (call.arguments.Size() == kMostArguments) return;
        ArgumentSummary& argument = call.arguments.Push();
        argument.name = event.name.substr(0, kLongestText);
        argument.first.clear();
        argument.line = event.line;
        argument.count = argument.notANumber = 0;
        argument.sum = argument.least = argument.most = 0;
        argument.numbers = true;
        argument.areWhole =
            event.text == "long" || event.text == "short" || event.text == "VT_I4" || event.text == "VT_I2";
    } else if (event.kind == EventKind::Value) {
        if (!call.arguments.IsEmpty() && !event.hasChildren) SummariseValue(call.arguments.Top(), event);
    } else {
        call.result.Take(KindOfMessage(event));
    }
}

const CallSummary& CallSummarizer::Close()
{
    const CallSummary& call = open.Top();
    open.Pop();
    return call;
}

}  // namespace zelt::ctl
