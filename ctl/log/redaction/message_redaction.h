// Messages without what they reveal about the user's models: the log's own sentences stay, what they name is replaced. An unknown
// sentence is replaced as a whole.
#pragma once

#include <string>
#include <string_view>

#include "ctl/log/log_aliases.h"
#include "ctl/log/log_events.h"

namespace zelt::ctl {

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases);

}  // namespace zelt::ctl
