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

void RowBuilder::Begin(const LogEvent& event)
{
    std::string_view shown = event.text;
    if (HasName(event)) {
        label.clear();
        AppendLabel(label, event);
        shown = label;
    }
    rows.Row({event.depth, ImageOf(event), event.hasChildren, IsError(event), shown});
}

}  // namespace zelt
