#include "ctl/log/call_text.h"

#include "ctl/visible_text.h"

namespace zelt::ctl {
namespace {

constexpr std::size_t kLongestValues = 60, kLongestName = 80;

void AddValue(ArgumentText& argument, std::string_view text)
{
    ++argument.values;
    // What comes after a value that did not fit is left out, too.
    if (argument.shownValues + 1 != argument.values) return;
    if (argument.shownValues && argument.shown.size() + text.size() > kLongestValues) return;
    ++argument.shownValues;
    if (argument.shownValues > 1) argument.shown += ", ";
    argument.shown += Shortened(text, kLongestValues);
}

}  // namespace

std::string Shortened(std::string_view text, std::size_t length)
{
    if (text.size() <= length) return std::string(text);
    // Do not cut within a character.
    std::size_t end = 0;
    while (end < text.size()) {
        const std::size_t next = end + FirstCharacter(text.substr(end)).length;
        if (next + 3 > length) break;
        end = next;
    }
    return std::string(text.substr(0, end)) + "...";
}

std::string ArgumentText::Text() const
{
    if (values == 0) return "(empty)";
    if (shownValues == values) return shown;
    return shown + ", ... (" + std::to_string(values) + " values)";
}

bool ArgumentText::IsPointer() const
{
    return shown.starts_with("interface pointer ") || shown.starts_with("interface to object ");
}

std::string_view CallText::Interface() const
{
    const std::size_t colons = name.rfind("::");
    return std::string_view(name).substr(0, colons == std::string::npos ? 0 : colons);
}

std::string_view CallText::Method() const
{
    const std::size_t colons = name.rfind("::");
    return std::string_view(name).substr(colons == std::string::npos ? 0 : colons + 2);
}

const ArgumentText* CallText::Find(std::string_view argument) const
{
    for (const ArgumentText& candidate : arguments) {
        if (candidate.name == argument) return &candidate;
    }
    return nullptr;
}

std::string CallText::List(bool wanted) const
{
    std::string text;
    for (const ArgumentText& argument : arguments) {
        if (argument.inward != wanted || argument.values == 0 || argument.IsPointer()) continue;
        text.append(text.empty() ? "" : ", ").append(argument.name).append(" = ").append(argument.Text());
    }
    return text;
}

void CallTexts::Begin(const LogEvent& event)
{
    if (event.kind == EventKind::Call) {
        open.push_back({Shortened(event.name, kLongestName),
                        Shortened(event.text, kLongestName),
                        event.inward,
                        event.line,
                        event.depth,
                        {},
                        {}});
        return;
    }
    if (open.empty()) return;
    CallText& call = open.back();
    if (event.kind == EventKind::Argument) {
        if (call.arguments.size() == kMostArguments) return;
        call.arguments.emplace_back();
        call.arguments.back().name = Shortened(event.name, kLongestName);
        call.arguments.back().inward = event.inward;
        call.arguments.back().line = event.line;
    } else if (event.kind == EventKind::Value) {
        // In a log, a VARIANT is a value with the type, which contains another value with the content: only the content is
        // taken.
        if (!call.arguments.empty() && !event.hasChildren) AddValue(call.arguments.back(), event.text);
    } else {
        call.result.Take(KindOfMessage(event));
    }
}

std::string Headline(const CallText& call)
{
    std::string text(call.inward ? "> " : "< ");
    return text.append(call.name).append("  ").append(call.object);
}

}  // namespace zelt::ctl
