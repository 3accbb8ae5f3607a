// A flowsheet of one unit operation, step by step: the property package, the unit, its streams, a calculation with its
// balances and reports, and saving, if asked for. The flowsheet is new, or loaded from a file with the unit's saved state.
#pragma once

#include "samples/simulator/options.h"
#include "samples/simulator/report.h"

namespace zelt::sample {

// Throws CapeFailure when a step fails.
void RunFlowsheet(const Options& options, Report& report);

}  // namespace zelt::sample
