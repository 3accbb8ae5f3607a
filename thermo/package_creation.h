// Creation of an exported package: the real package made in this process, renamed, given its log, and wrapped in the proxy
// that the simulator gets.
#pragma once

#include "core/log_options.h"
#include "thermo/manager_row.h"

namespace zelt {

// Returns the proxy's IDispatch, which the caller owns. Throws PackageFailure. May show message boxes or the save dialog,
// which let calls in: `package` is taken by value because the list may change meanwhile.
IDispatch* CreateExportedPackage(const ManagerRow& row, ExportedPackage package, LogOptions& options);

}  // namespace zelt
