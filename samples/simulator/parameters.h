// What the simulator does with a component's parameters: shows each with its specification, sets it to a legal value and
// then, if there is one, to an illegal value, and validates it both times. Finally it resets the parameter to its default,
// so the values of a new component do not change. Throws CapeFailure when a call fails unexpectedly, or for a wrong verdict.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <vector>

#include "samples/simulator/report.h"

namespace zelt::sample {

// `object` is a collection of parameters.
void WalkParameters(IDispatch* object, Report& report);

// The collection's first parameter and its specification, or nothing.
std::vector<Microsoft::WRL::ComPtr<IDispatch>> FirstParameter(IDispatch* object);

}  // namespace zelt::sample
