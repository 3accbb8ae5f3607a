// What doctor examines, one function for each area. Each appends its findings, and fixes nothing.
#pragma once

#include "ctl/doctor/finding.h"
#include "ctl/doctor/installation.h"

namespace zelt::ctl {

// Compares the program, its application and its classes in every registry view with the scripts that register them.
void CheckRegistration(const Installation& installation, Findings& findings);
// Checks the type libraries that COM uses to marshal calls between processes, their files, and each of their interfaces.
void CheckLibraries(const Installation& installation, Findings& findings);
// Checks the list of the packages that the edition exports, whether the edition can create each package, and whether the
// manager of a package still lists it. Starts these managers.
void CheckPackages(const Edition& edition, Findings& findings);
// Checks whether logs can be written to the folder on the desktop, if they go there, and whether PRAVIK can create the unit
// operation that was chosen for it.
void CheckLogging(Findings& findings);

}  // namespace zelt::ctl
