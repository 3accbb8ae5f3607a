// A package's state: loaded from a file before the package is initialised, changed, shown, and saved to a file, as far as the
// options ask for it. Nothing is calculated.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include "samples/simulator/options.h"
#include "samples/simulator/report.h"

namespace zelt::sample {

// Throws CapeFailure when a step fails.
void UsePackageState(Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report);

}  // namespace zelt::sample
