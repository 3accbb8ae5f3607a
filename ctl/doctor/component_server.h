// The file that serves a component's class, and whether an edition of ZELT can use it. Reads the registry and the file; starts
// nothing.
#pragma once

#include <windows.h>

#include "ctl/doctor/finding.h"
#include "system/edition.h"

namespace zelt::ctl {

// Returns false and adds a finding when the class or its file is missing, or the library is for programs of another width than
// the edition. `owner` begins the finding's first clause, for example "The exported package \"X\""; `effect` is its effect.
bool CheckServer(const Edition& edition, REFCLSID classId, const std::string& owner, const std::string& effect,
                 Findings& findings);

}  // namespace zelt::ctl
