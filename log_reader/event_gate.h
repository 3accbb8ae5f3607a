// Passes the parser's events on to a sink, except those that the scanner has already delivered and those of arguments that the
// sink does not want.
#pragma once

#include <cstdint>
#include <vector>

#include "log_reader/log_event.h"
#include "log_reader/resume_point.h"

namespace zelt {

class EventGate final : public LogSink {
public:
    EventGate(LogSink& sink, const ResumePoint& start);

    void Begin(const LogEvent& event) override;
    void End(EventKind kind, int depth) override;
    void ParseError(int line) override { sink.ParseError(line); }
    void LeftOpen(int line) override { sink.LeftOpen(line); }
    bool Continue() override { return !latestPassed || sink.Continue(); }
    bool WantsLines() const override { return sink.WantsLines(); }

private:
    LogSink& sink;
    std::int64_t toSkip;
    std::vector<char> leftOut;  // for the latest element and those around it, by depth
    bool latestPassed = false;  // whether the sink got the latest end
};

}  // namespace zelt
