// What --fix does.
#pragma once

#include "ctl/doctor/finding.h"
#include "ctl/doctor/installation.h"
#include "ctl/output.h"

namespace zelt::ctl {

// Does what the findings call for, each thing once. What fails is said in `messages`; whether it helped shows when the
// installation is looked at again.
void MendFindings(const Findings& findings, const Installation& installation, Output& messages);

}  // namespace zelt::ctl
