// Messages without what they say about the user's models: the log's own sentences stay, what they name is replaced.
// A sentence that is not known is replaced whole.
#pragma once

#include <string>
#include <string_view>

#include "ctl/log/log_aliases.h"
#include "ctl/log/log_events.h"

namespace zelt::ctl {

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases);

}  // namespace zelt::ctl
