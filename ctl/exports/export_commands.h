// The commands for what ZELT exports and how it logs. They do what ZELT's main window does, and more, with the same code for
// the stored list of packages, the search and the options. They change the list only while no process of ZELT holds it. Only
// for Windows.
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
