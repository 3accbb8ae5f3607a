// What the simulator does with a component's parameters: shows each with its specification, sets it to a legal value,
// validates it, does the same with an illegal value, if there is one, and resets it to its default, so a new component has the
// same values as before. Throws CapeFailure when a call fails unexpectedly, or when a parameter does not do what was asked.
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
