// The commands that need Windows, for the programs that lack them: they say so instead of not knowing them.
#pragma once

#include <string_view>

namespace zelt::ctl {

inline constexpr std::string_view kWindowsCommands[] = {
    "list",   "discover", "add",      "remove",      "log on",           "log off",         "options",
    "doctor", "report",   "path add", "path remove", "recording render", "recording replay"};

}  // namespace zelt::ctl
