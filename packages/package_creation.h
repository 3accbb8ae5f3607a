// Creation of an exported package: makes the real package in this process, renames it, gives it its log, and wraps it in the
// proxy that the simulator gets.
#pragma once

#include <wrl/client.h>

#include "log/log_options.h"
#include "packages/exported_package.h"
#include "packages/package_family.h"

namespace zelt {

// Returns the proxy's IDispatch. Throws PackageFailure. May show message boxes or the save dialog, which let calls in: `package`
// is taken by value because the list may change meanwhile.
Microsoft::WRL::ComPtr<IDispatch> CreateExportedPackage(const PackageFamily& family, ExportedPackage package,
                                                        LogOptions& options);

}  // namespace zelt
