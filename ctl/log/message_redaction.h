// Messages without what they say about the user's models: the log's own sentences stay, what they name is replaced.
// A sentence that is not known is replaced whole.
#pragma once

#include <string>
#include <string_view>

#include "ctl/log/log_aliases.h"

namespace zelt::ctl {

std::string RedactMessage(std::string_view text, const LogAliases& aliases);

}  // namespace zelt::ctl
