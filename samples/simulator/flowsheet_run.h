// A flowsheet of one unit operation, step by step: the property package, the unit, its streams, a calculation with its
// balances and reports, and saving. The flowsheet is new or comes from a file; if from a file, the unit loads its saved state.
#pragma once

#include "samples/simulator/options.h"
#include "samples/simulator/report.h"

namespace zelt::sample {

// Throws CapeFailure when a step fails.
void RunFlowsheet(const Options& options, Report& report);

}  // namespace zelt::sample
