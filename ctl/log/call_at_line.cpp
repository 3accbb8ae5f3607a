#include "ctl/log/call_at_line.h"

namespace zelt::ctl {

void CallAtLine::Begin(const LogEvent& event)
{
    if (event.line > wanted) settled = true;
    if (event.kind == EventKind::Call) open.push_back(event.line);
    closings.push_back(!event.isEmpty);
    if (settled) return;
    current = event.line;
    hasEnded = false;
    if (current == wanted) {
        settled = true;
        calls = open;
    } else if (event.kind == EventKind::Call) {
        calls = open;
    }
}

void CallAtLine::End(EventKind kind, int)
{
    // The reader does not say in which line an element ends. In logs that ZELT writes, each closing tag has its own line, so
    // counting the tags gives the line. In other logs the count may be wrong; the line of the next element corrects it.
    if (!settled && !hasEnded && closings.back() && ++current >= wanted) {
        hasEnded = true;
        calls = open;
    }
    closings.pop_back();
    if (kind != EventKind::Call) return;
    open.pop_back();
    if (!settled && !hasEnded) calls = open;
}

}  // namespace zelt::ctl
