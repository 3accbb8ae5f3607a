// The commands for logs. They read logs with ReadEvents and do not depend on Windows: the native zeltctl has them too.
#pragma once

#include <span>
#include <string>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> LogCommands();

int ShowLog(const Arguments& arguments, const std::string& log, Streams& streams);
int ListErrors(const Arguments& arguments, const std::string& log, Streams& streams);
int ExplainFailures(const Arguments& arguments, const std::string& log, Streams& streams);
int CountCalls(const Arguments& arguments, const std::string& log, Streams& streams);
int CheckLog(const Arguments& arguments, const std::string& log, Streams& streams);
std::string EndingOfExport(const Arguments& arguments);
int ListLogs(const Arguments& arguments, Streams& streams);
int CompareLogs(const Arguments& arguments, Streams& streams);
int ExportLog(const Arguments& arguments, const std::string& log, Streams& streams);
int RedactLog(const Arguments& arguments, const std::string& log, Streams& streams);
int FollowLog(const Arguments& arguments, Streams& streams);

}  // namespace zelt::ctl
