// Numbers that the simulator's runs share.
#pragma once

#include <limits>

namespace zelt::sample {

inline constexpr double kNormalPressure = 101325;  // Pa
inline constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

}  // namespace zelt::sample
