// What the messages of a log mean: how a call went, and which texts are not messages but parts of a value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctl/log/log_events.h"
#include "log/vocabulary/found_sentence.h"

namespace zelt::ctl {

// How many arguments of a call are kept; further ones are left out. No method has so many, but a call in a forged log may.
inline constexpr std::size_t kMostArguments = 32;

// A failure is an error that the caller got, from the callee or from the proxy in its place. A violation is a broken rule of
// the standard; the call itself may still succeed. A query is a warning about an interface that the system asked for, not the
// simulator or the component: see log/vocabulary/system_interfaces.h.
enum class MessageKind { None, Info, Query, Warning, Violation, Failure };

MessageKind KindOfMessage(const LogEvent& event);

// The sentence of a message; nothing if the event is not a message, or if its text is not one that ZELT writes.
std::optional<FoundSentence> SentenceOf(const LogEvent& event);

// How a call went. Several of these may be true; the first is the worst.
struct CallResult {
    bool failed = false, violated = false, warned = false;

    void Take(MessageKind kind);
};

// Whether the event is a bound, such as "Lower bound: 0", which is part of the value of an array.
bool IsBound(const LogEvent& event);

// Whether the event is what the callee said about the failure that comes next. Between the two there may be a warning that the
// log left out some characters of this event (IsSuppression).
bool SaysMore(const LogEvent& event);
bool IsSuppression(const LogEvent& event);

// The text of a string value, without the quotes that the log puts around it.
std::string_view Unquoted(std::string_view value);

// For example, "42 system queries hidden"; empty for none.
std::string HiddenQueries(long long count);

}  // namespace zelt::ctl
