// Messages without what they reveal about the user's models: the log's own sentences stay, and the names and foreign texts in
// them are replaced. An unknown sentence is replaced completely.
#pragma once

#include <string>
#include <string_view>

#include "ctl/log/log_aliases.h"
#include "ctl/log/log_events.h"
#include "log/vocabulary/sentences.h"

namespace zelt::ctl {

// What replaces the text in a hole of this kind (see SentenceRow). `mayBeName`: the text may be a name even in a hole for
// words.
std::string RedactHole(char kind, bool mayBeName, std::string_view text, const LogAliases& aliases);
// Whether the texts in the holes for words may be names, because the whole text could also be another sentence.
bool MayHaveNames(const SentenceRow& row, std::string_view text);

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases);

}  // namespace zelt::ctl
