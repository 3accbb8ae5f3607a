#include "log_reader/event_gate.h"

namespace zelt {

EventGate::EventGate(LogSink& sink, const ResumePoint& start)
    : sink(sink), toSkip(start.done + static_cast<std::int64_t>(start.open.size()))
{
    for (const OpenElement& element : start.openThen) leftOut.push_back(element.isLeftOut);
}

void EventGate::Begin(const LogEvent& event)
{
    if (toSkip > 0) {
        --toSkip;
        return;
    }
    const auto depth = static_cast<std::size_t>(event.depth);
    leftOut.resize(depth);
    const bool isOuterLeftOut = depth > 0 && leftOut.back();
    const bool isLeftOut = event.kind == EventKind::Argument ? isOuterLeftOut || !sink.WantsArguments()
                                                             : event.kind == EventKind::Value && isOuterLeftOut;
    leftOut.push_back(isLeftOut);
    if (!isLeftOut) sink.Begin(event);
}

void EventGate::End(EventKind kind, int depth)
{
    latestPassed = toSkip == 0 && !leftOut[static_cast<std::size_t>(depth)];
    if (toSkip > 0) --toSkip;
    if (latestPassed) sink.End(kind, depth);
}

}  // namespace zelt
