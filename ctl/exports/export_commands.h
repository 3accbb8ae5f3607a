// The commands for what ZELT exports and how it logs: what its main window does, without windows. They use the program's own
// store, search and options. Only for Windows; they change the list only while no ZELT holds it.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> ExportCommands();

int ListExports(const Arguments& arguments, Streams& streams);
int DiscoverComponents(const Arguments& arguments, Streams& streams);
int AddExport(const Arguments& arguments, Streams& streams);
int RemoveExport(const Arguments& arguments, Streams& streams);
int SwitchLogOn(const Arguments& arguments, Streams& streams);
int SwitchLogOff(const Arguments& arguments, Streams& streams);
int ChangeOptions(const Arguments& arguments, Streams& streams);

}  // namespace zelt::ctl
