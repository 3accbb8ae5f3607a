// The commands that need Windows. The native zeltctl lacks them; it says that they need Windows instead of calling them
// unknown.
#pragma once

#include <string_view>

namespace zelt::ctl {

inline constexpr std::string_view kWindowsCommands[] = {
    "list",   "discover", "add",      "remove",      "log on",           "log off",         "options",
    "doctor", "report",   "path add", "path remove", "recording render", "recording replay"};

}  // namespace zelt::ctl
