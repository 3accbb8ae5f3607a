// What doctor examines, one function for each area. Each appends its findings, and fixes nothing.
#pragma once

#include "ctl/doctor/finding.h"
#include "ctl/doctor/installation.h"

namespace zelt::ctl {

// The program, its application, and its classes in every registry view, against the scripts that register them.
void CheckRegistration(const Installation& installation, Findings& findings);
// The type libraries with which COM carries calls between processes, their files, and each of their interfaces.
void CheckLibraries(const Installation& installation, Findings& findings);
// The list of the packages that the edition exports, whether the edition can create each one, and whether the manager that a
// package comes from still lists it. Starts these managers.
void CheckPackages(const Edition& edition, Findings& findings);
// Whether the automatic folder of logs can be written to, and whether PRAVIK can create the unit operation that it is set to.
void CheckLogging(Findings& findings);

}  // namespace zelt::ctl
