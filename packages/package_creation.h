// Creation of an exported package: makes the real package, or one that answers from a recording, renames it, opens a log or
// recording if one is wanted, and wraps it in the proxy that the simulator gets.
#pragma once

#include <wrl/client.h>

#include <memory>

#include "guard/foreign_call.h"
#include "log/log_options.h"
#include "packages/exported_package.h"
#include "packages/package_family.h"

namespace zelt {

// A package itself, without a proxy, and what may have to live as long as it does.
struct BarePackage {
    ForeignPtr<IDispatch> package;
    std::shared_ptr<void> manager;    // null for a stand-alone package
    std::shared_ptr<void> recording;  // answers for the package; null for a real package
};

// Makes a package and gives it its exported name. Throws PackageFailure.
BarePackage CreateBarePackage(const PackageFamily& family, const ExportedPackage& package);

// Returns the proxy's IDispatch. Throws PackageFailure. May show message boxes or the save dialog, which let calls in: `package`
// is taken by value because the list may change during the call.
Microsoft::WRL::ComPtr<IDispatch> CreateExportedPackage(const PackageFamily& family, ExportedPackage package,
                                                        LogOptions& options);

// Opens the dialog of a foreign manager: creates the manager, and calls Edit between Initialize and Terminate. E_NOTIMPL for a
// manager without ICapeUtilities or without a dialog. Throws PackageFailure when the manager cannot be created or initialized,
// or when Edit fails in another way.
[[nodiscard]] HRESULT EditForeignManager(const PackageFamily& family, REFCLSID classId);

}  // namespace zelt
