// doctor: examines the installation, tells what it finds, and mends what is safe to mend. Only for Windows.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> DoctorCommands();

int ExamineInstallation(const Arguments& arguments, Streams& streams);

}  // namespace zelt::ctl
