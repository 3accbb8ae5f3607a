// What the simulator does with a property package of CAPE-OPEN 1.1, step by step, in a fixed order: two runs with the same
// options make the same calls with the same numbers. Each step prints its results, and throws CapeFailure when a call fails
// unexpectedly.
#pragma once

#include "samples/simulator/options.h"
#include "samples/simulator/report.h"
#include "samples/simulator/session.h"

namespace zelt::sample {

// Compounds with their constants and temperature functions, the molecular weights that the options add, phases, universal
// constants.
void ShowLists(const PackageSession& session, Report& report, const Options& options);
// Flashes of an equimolar feed: at given temperature and pressure, from the lowest to the highest boiling point of its
// compounds; at its bubble point, at half vapour and at its dew point; and at given pressure and enthalpy, which should
// give the state at half vapour again.
void ShowEquilibria(const PackageSession& session, Report& report);
// The phases' properties and the K-values at the last equilibrium, logarithms of fugacity coefficients at 350 K and 2 bar, and
// the properties that the options add.
void ShowProperties(const PackageSession& session, Report& report, const Options& options);
// A call that must fail: prints the package's description of the failure. Throws CapeFailure if the call succeeds.
void ShowFailure(const PackageSession& session, Report& report);

}  // namespace zelt::sample
