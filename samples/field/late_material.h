// A material that is reached by name alone, through its IDispatch: never asked for an interface of the standard. Looks like a
// CAPE-OPEN 1.0 material object to the code around it.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

namespace zelt::sample {

// Null for a null material.
Microsoft::WRL::ComPtr<IDispatch> ReachByName(IDispatch* material);

}  // namespace zelt::sample
