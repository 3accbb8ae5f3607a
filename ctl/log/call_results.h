// What the messages of a log mean: how a call went, and which texts are no messages but parts of a value.
#pragma once

#include <string_view>

#include "ctl/log/log_events.h"

namespace zelt::ctl {

// A failure is what the callee, or the proxy in its place, answered to the caller; a violation a rule of the standard
// that somebody broke while the call went on.
enum class MessageKind { None, Info, Warning, Violation, Failure };

MessageKind KindOfMessage(const LogEvent& event);

// A status code as errors begin with it, "ECapeUnknownHR: ", or without a name, "0x80041234: ": its length without the
// colon, 0 when there is none.
std::size_t LengthOfCode(std::string_view text);

// How a call went, worst first in doubt.
struct CallResult {
    bool failed = false, violated = false, warned = false;

    void Take(MessageKind kind);
};

// "Lower bound: 0": a part of an array's value.
bool IsBound(const LogEvent& event);

// The text of a string value, without the quotes that the log puts around it.
std::string_view Unquoted(std::string_view value);

}  // namespace zelt::ctl
