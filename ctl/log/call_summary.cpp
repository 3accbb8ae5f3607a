#include "ctl/log/call_summary.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zelt::ctl {
namespace {

constexpr std::size_t kLongestText = 200;
// More than any method has; a forged log may have more than this.
constexpr std::size_t kMostArguments = 32;

void AddValue(ArgumentSummary& argument, const LogEvent& event)
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

std::string_view CallSummary::Interface() const
{
    const std::size_t colons = name.rfind("::");
    return std::string_view(name).substr(0, colons == std::string::npos ? 0 : colons);
}

std::string_view CallSummary::Method() const
{
    const std::size_t colons = name.rfind("::");
    return std::string_view(name).substr(colons == std::string::npos ? 0 : colons + 2);
}

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
        open.push_back({std::string(event.name), std::string(event.text), event.inward, event.line, {}, {}});
        return;
    }
    if (open.empty()) return;
    CallSummary& call = open.back();
    if (event.kind == EventKind::Argument) {
        if (call.arguments.size() == kMostArguments) return;
        call.arguments.emplace_back();
        call.arguments.back().name = event.name.substr(0, kLongestText);
        call.arguments.back().line = event.line;
        call.arguments.back().areWhole =
            event.text == "long" || event.text == "short" || event.text == "VT_I4" || event.text == "VT_I2";
    } else if (event.kind == EventKind::Value) {
        if (!call.arguments.empty() && !event.hasChildren) AddValue(call.arguments.back(), event);
    } else {
        call.result.Take(KindOfMessage(event));
    }
}

CallSummary CallSummarizer::Close()
{
    CallSummary call = std::move(open.back());
    open.pop_back();
    return call;
}

}  // namespace zelt::ctl
