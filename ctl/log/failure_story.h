// What the command `log why` knows about a call that failed or never returned, and how it shows this on one screen.
#pragma once

#include <string>
#include <vector>

#include "ctl/log/call_text.h"
#include "ctl/log/material_states.h"

namespace zelt::ctl {

// A line of the log, and the text that the story has for it.
struct LineText {
    int line;
    std::string text;
};

// Keeps the latest of many lines, and in addition the first important ones. Each of the two groups has a limit.
class Latest {
public:
    Latest(std::size_t most, std::size_t mostImportant) : most(most), mostImportant(mostImportant) {}

    void Add(LineText text, bool isImportant);
    // Adds the lines that `other` has kept, and counts those that it has left out.
    void Append(const Latest& other);
    // In the order of their lines.
    std::vector<LineText> Lines() const;
    long long Total() const { return total; }
    long long LeftOut() const { return total - static_cast<long long>(lines.size() + important.size()); }

private:
    std::size_t most, mostImportant;
    std::vector<LineText> lines, important;
    long long total = 0;
};

// A call that succeeded, and how it went.
struct Success {
    CallText call;
    std::vector<LineText> asked;  // the latest of the calls inside it; askedTotal counts them all
    long long askedTotal = 0;
};

struct FailureStory {
    CallText call;
    std::vector<LineText> around;    // the calls that contain it
    std::vector<LineText> messages;  // the failure, and what else the callee said
    std::vector<LineText> broken;    // broken rules that the log reports, or that `log check` finds
    std::vector<LineText> asked;  // the latest of the calls inside it, and the first that failed; askedTotal counts all
    long long askedTotal = 0;
    std::string material;
    std::vector<KnownProperty> state;
    bool hadSuccess = false;
    Success success;
    bool isUnfinished = false;

    std::vector<int> again;  // the lines of the first failures that repeat this one
    long long times = 1;
};

// "< Feed: GetOverallProp temperature = 353.2": a nested call in one line.
std::string InOneLine(const CallText& call, bool isUnfinished);

void Tell(const FailureStory& story, long long number, long long count, Output& out);

}  // namespace zelt::ctl
