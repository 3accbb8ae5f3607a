// A wrapper that makes all calls to a material late-bound: by member name through IDispatch, never through an interface of
// the standard. The wrapper itself is a CAPE-OPEN 1.0 material object.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

namespace zelt::sample {

// Null for a null material.
Microsoft::WRL::ComPtr<IDispatch> ReachByName(IDispatch* material);

}  // namespace zelt::sample
