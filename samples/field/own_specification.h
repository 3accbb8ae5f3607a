// Parameters that are their own specifications: the parameter object also has ICapeParameterSpec and the typed interface,
// and get_Specification returns the parameter object itself.
#pragma once

#include "samples/component/parameter.h"

namespace zelt::sample {

Microsoft::WRL::ComPtr<IDispatch> CreateSelfSpecifiedParameter(const std::shared_ptr<ParameterState>& state);

}  // namespace zelt::sample
