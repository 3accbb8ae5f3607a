// report: the command, which adds what is known about ZELT on this computer. Only for Windows.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> ReportCommands();

}  // namespace zelt::ctl
