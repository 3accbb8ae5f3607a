// doctor: examines the installation, reports what it finds, and fixes what is safe to fix. Only for Windows.
#pragma once

#include <span>

#include "ctl/command.h"

namespace zelt::ctl {

std::span<const Command> DoctorCommands();

int ExamineInstallation(const Arguments& arguments, Streams& streams);

}  // namespace zelt::ctl
