// Texts for other programs, made from the rows of the commands: completion for shells, and a page for man.
#pragma once

#include <span>
#include <string_view>

#include "ctl/command.h"

namespace zelt::ctl {

// `shell` is bash or powershell. Throws UsageError for any other.
void WriteCompletion(std::span<const Command> commands, std::string_view shell, Output& out);

void WriteManual(std::span<const Command> commands, Output& out);

}  // namespace zelt::ctl
