#include "ctl/log/comparison/log_sequence.h"

#include <algorithm>
#include <string_view>

#include "ctl/log/call_results.h"

namespace zelt::ctl {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Replaces the numbers at the ends of texts in quotes by #.
std::string WithoutQuotedNumbers(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        while (end < text.size() && IsDigit(text[end])) ++end;
        if (end > i && end < text.size() && text[end] == '"' && i > 0 && text[i - 1] != '"') {
            out += '#';
            i = end;
        } else {
            end = std::max(end, i + 1);
            out += text.substr(i, end - i);
            i = end;
        }
    }
    return out;
}

std::string ComparableValue(std::string_view text)
{
    if (text.starts_with("interface pointer ")) return "interface pointer";
    const std::size_t address = text.rfind(" (address ");
    if (text.starts_with("interface to object \"") && address != std::string_view::npos && address > 21) {
        const std::string_view name = text.substr(21, address - 22);
        return "interface to object \"" + WithoutNumber(name) + '"';
    }
    return std::string(text);
}

class SequenceReader final : public LogSink {
public:
    void Begin(const LogEvent& event) override
    {
        switch (event.kind) {
            case EventKind::Call:
                open.push_back(steps.size());
                steps.push_back({std::string(event.name) + " (" + std::string(event.text) + ')',
                                 (event.inward ? "> " : "< ") + std::to_string(event.depth) + ' ' +
                                     std::string(event.name) + ' ' + WithoutNumber(event.text),
                                 event.line,
                                 {}});
                break;
            case EventKind::Argument:
                argument = (event.inward ? "in " : "out ") + std::string(event.name);
                index = 0;
                Add(event, argument, "of type " + std::string(event.text));
                break;
            case EventKind::Value:
            case EventKind::Other:
                Add(event, argument + '[' + std::to_string(++index) + ']', ComparableValue(event.text));
                break;
            default: AddMessage(event);
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind == EventKind::Call) open.pop_back();
    }

    std::vector<SequenceStep> steps;

private:
    void Add(const LogEvent& event, const std::string& key, std::string text)
    {
        if (!open.empty()) steps[open.back()].values.push_back({key, std::move(text), event.line});
    }
    void AddMessage(const LogEvent& event)
    {
        if (IsBound(event) || KindOfMessage(event) == MessageKind::Query) return;
        const char* kind = event.kind == EventKind::Error     ? "error"
                           : event.kind == EventKind::Warning ? "warning"
                                                              : "info";
        std::string text = ComparableMessage(event.text);
        if (!open.empty()) {
            Add(event, kind, std::move(text));
        } else {
            steps.push_back({std::string(kind) + ": " + std::string(event.text), kind + (' ' + text), event.line, {}});
        }
    }

    std::vector<std::size_t> open;
    std::string argument;
    long long index = 0;
};

}  // namespace

std::string WithoutNumber(std::string_view name)
{
    const bool bracket = name.ends_with(')');
    std::size_t end = name.size() - bracket;
    std::size_t start = end;
    while (start > 0 && IsDigit(name[start - 1])) --start;
    if (start == end || start == 0 || (bracket && name[start - 1] != '(')) return std::string(name);
    return std::string(name.substr(0, start)) + '#' + std::string(name.substr(end));
}

std::string ComparableMessage(std::string_view text)
{
    constexpr std::string_view kStart = "ZELT Logging started at ";
    if (text.starts_with(kStart)) return std::string(kStart);
    return WithoutQuotedNumbers(text);
}

Sequence ReadSequence(const std::string& path, Output& messages)
{
    SequenceReader reader;
    const bool complete = ReadEvents(path, reader, messages);
    return {std::move(reader.steps), complete};
}

}  // namespace zelt::ctl
