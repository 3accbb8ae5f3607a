// path add and path remove: put this program's folder on the search path of Windows, or take it off. Only for Windows.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> PathCommands();

}  // namespace zelt::ctl
