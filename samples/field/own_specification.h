// Parameters that are their own specifications: ICapeParameterSpec and the typed interface are the parameter's, and
// get_Specification returns the same object.
#pragma once

#include "samples/component/parameter.h"

namespace zelt::sample {

Microsoft::WRL::ComPtr<IDispatch> CreateSelfSpecifiedParameter(const std::shared_ptr<ParameterState>& state);

}  // namespace zelt::sample
