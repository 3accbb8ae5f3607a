// The commands for recordings that do not depend on Windows: the native zeltctl has them too.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> RecordingCommands();

int DescribeRecording(const Arguments& arguments, Streams& streams);
int ProfileRecording(const Arguments& arguments, Streams& streams);
int CompareRecordings(const Arguments& arguments, Streams& streams);
int RedactRecording(const Arguments& arguments, Streams& streams);
int TrimRecording(const Arguments& arguments, Streams& streams);

}  // namespace zelt::ctl
