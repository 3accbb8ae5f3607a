// What the messages of a log mean: how a call went, and which texts are not messages but parts of a value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctl/log/log_events.h"
#include "log/vocabulary/found_sentence.h"

namespace zelt::ctl {

// Any further arguments of a call are left out. No method has that many, but a call in a forged log may.
inline constexpr std::size_t kMostArguments = 32;

// A failure is the result that the caller got, from the callee or from the proxy in its place; a violation is a rule of the
// standard that somebody broke while the call continued.
// A query is a warning about an interface that the system asked for on its own account: see log/vocabulary/system_interfaces.h.
enum class MessageKind { None, Info, Query, Warning, Violation, Failure };

MessageKind KindOfMessage(const LogEvent& event);

// The sentence of a message; nothing if the event is not a message, or if its text is not one that ZELT writes.
std::optional<FoundSentence> SentenceOf(const LogEvent& event);

// How a call went. Several may be true: the first of them is the worst.
struct CallResult {
    bool failed = false, violated = false, warned = false;

    void Take(MessageKind kind);
};

// "Lower bound: 0": a part of an array's value.
bool IsBound(const LogEvent& event);

// Whether the event is something that the callee said about the failure that comes next. Between the two there may be a warning
// that characters of this message were dropped (IsSuppression).
bool SaysMore(const LogEvent& event);
bool IsSuppression(const LogEvent& event);

// The text of a string value, without the quotes that the log puts around it.
std::string_view Unquoted(std::string_view value);

// "42 system queries hidden"; nothing for none.
std::string HiddenQueries(long long count);

}  // namespace zelt::ctl
