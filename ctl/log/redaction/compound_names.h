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
    // The alias of a name. `quoted` is the name in quotes, as the reader delivers it. The alias is also in quotes, but these
    // are escaped for the log. Valid until the next call.
    const std::string& NameOf(std::string_view quoted, const LogAliases& aliases);

private:
    std::map<std::string, std::string, std::less<>> names;
    std::string surplus;
};

}  // namespace zelt::ctl
