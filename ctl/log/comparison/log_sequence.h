// A log in memory, as log diff compares it: the calls in the order in which they begin, and the messages outside of calls. What
// differs even between two runs of the same conversation is not compared: addresses, times, the numbers at the ends of objects'
// names, and the queries of the system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/log_events.h"

namespace zelt::ctl {

struct SequenceValue {
    std::string key;  // "out results[2]", "error"
    std::string text;
    int line;
};

struct SequenceStep {
    std::string what;   // the call and its object, or the message
    std::string alike;  // the same in two steps that can be counterparts
    int line;
    std::vector<SequenceValue> values;
};

struct Sequence {
    std::vector<SequenceStep> steps;
    bool complete;  // false for a log that is cut off or damaged, as with ReadEvents
};

// The name with # in place of its number: "Stream #" for "Stream 12", "Stream (#)" for "Stream (12)".
std::string WithoutNumber(std::string_view name);
// A message with # in place of the numbers at the ends of names in quotes, and without the time at which a log was started.
std::string ComparableMessage(std::string_view text);

// Throws InputError.
Sequence ReadSequence(const std::string& path, Output& messages);

}  // namespace zelt::ctl
