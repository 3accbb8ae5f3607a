// What doctor examines, one function for each area. Each appends its findings, and changes nothing.
#pragma once

#include "ctl/doctor/finding.h"
#include "ctl/doctor/installation.h"

namespace zelt::ctl {

// The program, its classes and its application in every view, against the scripts that register them.
void CheckRegistration(const Installation& installation, Findings& findings);
// The type libraries with which COM carries calls between processes, their files, and each of their interfaces.
void CheckLibraries(const Installation& installation, Findings& findings);
// The packages that the edition exports: whether it can create each of them, and whether its manager still lists it. Starts the
// managers.
void CheckPackages(const Edition& edition, Findings& findings);
// Whether logs can be written, and whether PRAVIK can create its unit operation.
void CheckLogging(Findings& findings);

}  // namespace zelt::ctl
