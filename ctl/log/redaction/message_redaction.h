// Messages without what they reveal about the user's models: the log's own sentences stay, what they name is replaced. An unknown
// sentence is replaced as a whole.
#pragma once

#include <string>
#include <string_view>

#include "ctl/log/log_aliases.h"
#include "ctl/log/log_events.h"
#include "log/vocabulary/sentences.h"

namespace zelt::ctl {

// What fills a hole of this kind. `mayBeName`: so does one of words.
std::string RedactHole(char kind, bool mayBeName, std::string_view text, const LogAliases& aliases);
// Whether the words that a sentence fills its holes with may be names: another sentence could be the same text.
bool MayHaveNames(const SentenceRow& row, std::string_view text);

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases);

}  // namespace zelt::ctl
