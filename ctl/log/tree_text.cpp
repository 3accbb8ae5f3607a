#include "ctl/log/tree_text.h"

#include "ctl/log/call_results.h"

namespace zelt::ctl {

void TreeText::BeginLine(const LogEvent& event)
{
    EndLine();
    out.Number(event.line, 8).Fill(2 + static_cast<std::size_t>(event.depth) * 2);
}

void TreeText::Line(int depth, std::string_view text)
{
    EndLine();
    out.Fill(12 + static_cast<std::size_t>(depth) * 2) << text << '\n';
}

void TreeText::EndLine()
{
    if (line != Line::None) out << '\n';
    line = Line::None;
    nesting = 0;
}

void TreeText::BeginValue(const LogEvent& event)
{
    if (line == Line::None) {
        // There was a message between the values, or the value is outside of an argument.
        BeginLine(event);
        line = Line::Name;
        out << '=';
    }
    if (line == Line::Name) {
        out << ' ';
    } else if (line == Line::Values) {
        out << ", ";
    }
    line = Line::Values;
    out << event.text;
    if (event.hasChildren) {
        out << '(';
        ++nesting;
        line = Line::Bracket;
    }
}

void TreeText::Begin(const LogEvent& event)
{
    if (silent) return;
    switch (event.kind) {
        case EventKind::Call:
            BeginLine(event);
            out << (event.inward ? Style::Inward : Style::Outward) << (event.inward ? "> " : "< ") << event.name
                << Style::Plain << "  " << event.text << '\n';
            return;
        case EventKind::Argument:
            if (onlyCalls) return;
            BeginLine(event);
            out << (event.inward ? "in " : "out ") << event.name << " (" << event.text << ") =";
            line = Line::Name;
            argumentDepth = event.depth;
            return;
        case EventKind::Value:
        case EventKind::Other:
            if (!onlyCalls) BeginValue(event);
            return;
        case EventKind::Info:
            if (onlyCalls || (line != Line::None && IsBound(event))) return;
            BeginLine(event);
            out << Style::Faint << "info: ";
            break;
        case EventKind::Warning:
            BeginLine(event);
            out << Style::Warning << "warning: ";
            break;
        case EventKind::Error:
            BeginLine(event);
            out << Style::Bad << "error: ";
            break;
    }
    out << event.text << Style::Plain << '\n';
}

void TreeText::End(EventKind kind, int depth)
{
    if (line == Line::None) return;
    if (kind == EventKind::Argument && depth == argumentDepth) EndLine();
    const bool isValue = kind == EventKind::Value || kind == EventKind::Other;
    if (isValue && nesting > 0 && depth > argumentDepth) {
        // The innermost bracket closes at the end of the value that opened it, not of the values inside.
        if (depth - argumentDepth <= nesting) {
            out << ')';
            --nesting;
            line = Line::Values;
        }
    }
}

}  // namespace zelt::ctl
