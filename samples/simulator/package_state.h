// A run that only handles a package's state. As the options request, the package loads its state from a file before it is
// initialised, its parameters are set, and it saves its state to a file. The parameters are always shown.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include "samples/simulator/options.h"
#include "samples/simulator/report.h"

namespace zelt::sample {

// Throws CapeFailure when a step fails.
void UsePackageState(Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report);

}  // namespace zelt::sample
