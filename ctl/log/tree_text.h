// A log as an indented text: one line for each call, argument and message. Each line begins with the number of its line in the
// log, and the values of an argument follow the argument's name. Keeps nothing but how far the current line has come.
#pragma once

#include <vector>

#include "ctl/log/log_events.h"

namespace zelt::ctl {

class TreeText {
public:
    explicit TreeText(Output& out, bool onlyCalls = false) : out(out), onlyCalls(onlyCalls) {}

    void Begin(const LogEvent& event);
    void End(EventKind kind, int depth);
    // Call it after the last event: values outside of an argument leave their line open for more.
    void Finish() { EndLine(); }

    void SetOnlyCalls(bool now) { onlyCalls = now; }
    // Adds a line with this text, indented like the content of an element of this depth.
    void Line(int depth, std::string_view text);

    bool WantsArguments() const { return !onlyCalls; }

    // Events that begin while it is silent are not shown.
    void SetSilent(bool now) { silent = now; }
    bool IsSilent() const { return silent; }

private:
    void BeginLine(const LogEvent& event);
    void EndLine();
    void BeginValue(const LogEvent& event);

    Output& out;
    bool onlyCalls;
    bool silent = false;
    enum class Line { None, Name, Bracket, Values } line = Line::None;  // how far the argument's line has come
    int argumentDepth = 0;
    int nesting = 0;  // how many brackets are open around values inside values
};

}  // namespace zelt::ctl
