// Checks the file that serves a component's class, and whether an edition of ZELT can use it. Reads the registry and the file;
// starts nothing.
#pragma once

#include <windows.h>

#include "ctl/doctor/finding.h"
#include "system/edition.h"

namespace zelt::ctl {

// Returns false and adds a finding when the edition cannot use the class, for example because its file is missing or is a
// library of the other width. `owner` begins the finding's `wrong`, for example "The exported package \"X\""; `effect` begins
// its `effect`.
bool CheckServer(const Edition& edition, REFCLSID classId, const std::string& owner, const std::string& effect,
                 Findings& findings);

}  // namespace zelt::ctl
