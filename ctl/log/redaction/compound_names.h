// The names of compounds in a log that is given away: Compound-1, Compound-2 and so on, in the order in which the log names
// them.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "ctl/log/log_aliases.h"

namespace zelt::ctl {

class CompoundNames {
public:
    // The alias of a name. `quoted` is the name as a value in a log, in quotes; the alias is in quotes, too, but these are
    // escaped. Valid until the next call.
    const std::string& NameOf(std::string_view quoted, const LogAliases& aliases);

private:
    std::map<std::string, std::string, std::less<>> names;
    std::string surplus;
};

}  // namespace zelt::ctl
