// The texts of --help, made from the rows of the commands, and of --version.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "ctl/command.h"

namespace zelt::ctl {

struct ExitCodeMeaning {
    int code;
    const char* meaning;
};
inline constexpr ExitCodeMeaning kExitCodes[] = {
    {kFine, "fine"},
    {kFinding, "a difference, a finding or a log that is cut off"},
    {kUsage, "usage, or a command that cannot be carried out now"},
    {kUnreadable, "input that cannot be read, or output that cannot be written"}};

void WriteHelp(std::span<const Command> commands, Output& out);
void WriteCommandHelp(const Command& command, Output& out);
// Writes the help for a group, "log" or "log --help": the commands that begin with this word. Returns false for anything else.
bool WriteGroupHelp(std::span<const Command> commands, const std::vector<std::string>& words, Output& out);
void WriteVersion(Output& out);

}  // namespace zelt::ctl
