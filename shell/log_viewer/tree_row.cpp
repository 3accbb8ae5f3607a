#include "shell/log_viewer/tree_row.h"

#include "shell/log_viewer/tree_images.h"

namespace zelt {
namespace {

// An event without a name has its text as its label.
bool HasName(const LogEvent& event) { return event.kind == EventKind::Call || event.kind == EventKind::Argument; }

}  // namespace

bool IsError(const LogEvent& event)
{
    return event.isEmpty && (event.kind == EventKind::Error || event.kind == EventKind::Warning);
}

void AppendLabel(std::string& out, const LogEvent& event)
{
    if (!HasName(event)) {
        out += event.text;
        return;
    }
    out += event.name;
    out += event.kind == EventKind::Call ? " (" : " (type: ";
    out += event.text;
    out += ')';
}

CallLabel SplitCallLabel(std::string_view label)
{
    const auto gap = label.find(" (");
    if (gap == std::string_view::npos || label.back() != ')') return {label, {}};
    return {label.substr(0, gap), label.substr(gap + 2, label.size() - gap - 3)};
}

void RowBuilder::Begin(const LogEvent& event)
{
    std::string_view shown = event.text;
    if (HasName(event)) {
        label.clear();
        AppendLabel(label, event);
        shown = label;
    }
    rows.Row({event.depth, ImageOf(event), event.hasChildren, IsError(event), shown, event.line});
}

}  // namespace zelt
