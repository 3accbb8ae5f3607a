// Wraps a material that is reached by name alone, through its IDispatch, and never asked for an interface of the standard. To
// the code around it, the wrapper looks like a CAPE-OPEN 1.0 material object.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

namespace zelt::sample {

// Null for a null material.
Microsoft::WRL::ComPtr<IDispatch> ReachByName(IDispatch* material);

}  // namespace zelt::sample
