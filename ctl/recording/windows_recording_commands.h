// The commands for recordings that need Windows: those that write logs as ZELT does, or make components.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> WindowsRecordingCommands();

int RenderAsLog(const Arguments& arguments, Streams& streams);
int ReplayRecording(const Arguments& arguments, Streams& streams);

}  // namespace zelt::ctl
