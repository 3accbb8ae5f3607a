// path add and path remove: this program's folder among those in which Windows looks for programs. Only for Windows.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> PathCommands();

}  // namespace zelt::ctl
