// What --fix does.
#pragma once

#include "ctl/doctor/finding.h"
#include "ctl/doctor/installation.h"
#include "ctl/output.h"

namespace zelt::ctl {

// Does what the findings call for, each thing once. Reports failures in `messages`; examining the installation again shows
// whether the fixes helped.
void FixFindings(const Findings& findings, const Installation& installation, Output& messages);

}  // namespace zelt::ctl
