// A call in brief, for the rules of log check: its arguments, and of their values only what the rules need. The size of a
// summary does not grow with the number of values.
#pragma once

#include <string>

#include "ctl/log/call_results.h"
#include "ctl/log/reused_stack.h"

namespace zelt::ctl {

struct ArgumentSummary {
    std::string name;
    std::string first;  // the first value, without quotes; only its beginning if it is long
    int line = 0;
    int count = 0;       // of the values
    int notANumber = 0;  // the line of the first N/A, NaN or infinity among them; 0 when there is none
    double sum = 0;      // of the values that are finite numbers
    double least = 0, most = 0;
    bool numbers = true;    // all values are numbers or N/A
    bool areWhole = false;  // the type is an integer type
};

struct CallSummary {
    std::string name, object;
    bool inward = false;
    int line = 0;
    CallResult result;
    ReusedStack<ArgumentSummary> arguments;
    std::size_t interfaceLength = 0;

    // The two parts of the name.
    std::string_view Interface() const { return std::string_view(name).substr(0, interfaceLength); }
    std::string_view Method() const
    {
        return std::string_view(name).substr(interfaceLength ? interfaceLength + 2 : name.starts_with("::") ? 2 : 0);
    }
    const ArgumentSummary* Find(std::string_view argument) const;
    // The first value of an argument; empty when there is none.
    std::string_view First(std::string_view argument) const;
};

// Builds the summaries of the calls that are open.
class CallSummarizer {
public:
    // Events other than calls add to the innermost call.
    void Begin(const LogEvent& event);
    // Removes the innermost call, at its end. The summary is valid until the next event.
    const CallSummary& Close();

    bool InCall() const { return !open.IsEmpty(); }
    const CallSummary& Innermost() const { return open.Top(); }
    std::size_t Depth() const { return open.Size(); }

private:
    ReusedStack<CallSummary> open;
};

}  // namespace zelt::ctl
