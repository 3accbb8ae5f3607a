#include "ctl/log/call_in_place.h"

namespace zelt::ctl {

void CallInPlace::Begin(const LogEvent& event)
{
    if (isDone) return;
    if (event.kind == EventKind::Call) {
        if (inside > 0) {
            ++inside;
        } else if (event.line == calls[around] && event.depth == static_cast<int>(around)) {
            if (++around == calls.size()) inside = 1;
        } else {
            return;
        }
        tree.SetOnlyCalls(inside > 1 && !nested);
        tree.Begin(event);
        return;
    }
    if (inside == 0) return;
    if (inside == 1) result.Take(KindOfMessage(event));
    tree.SetOnlyCalls(inside > 1 && !nested);
    tree.Begin(event);
}

void CallInPlace::End(EventKind kind, int depth)
{
    if (isDone || inside == 0) return;
    tree.End(kind, depth);
    if (kind == EventKind::Call && --inside == 0) isDone = true;
}

}  // namespace zelt::ctl
