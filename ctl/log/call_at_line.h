// Finds the call that a line of a log is in, without keeping the log: the innermost call whose element contains the line, its
// opening and closing lines included.
#pragma once

#include <vector>

#include "ctl/log/log_events.h"

namespace zelt::ctl {

class CallAtLine final : public LogSink {
public:
    explicit CallAtLine(int line) : wanted(line) {}

    void Begin(const LogEvent& event) override;
    void End(EventKind kind, int depth) override;

    // The opening lines of the call and of those around it, the outermost first; empty for a line outside of calls.
    const std::vector<int>& Calls() const { return calls; }
    // The line that the search has reached; less than the wanted line if the log is shorter.
    int LastLine() const { return settled && current < wanted ? wanted : current; }

private:
    const int wanted;
    bool settled = false;
    bool hasEnded = false;         // the count of closing tags has reached the wanted line
    int current = 0;               // the line that the reading has reached
    std::vector<int> open, calls;  // the opening lines of the calls
    std::vector<bool> closings;    // which of the open elements have a closing line
};

}  // namespace zelt::ctl
