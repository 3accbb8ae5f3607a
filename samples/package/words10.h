// Words of CAPE-OPEN 1.0 in the arguments of a material object.
#pragma once

#include <string>

namespace zelt::sample {

inline constexpr const wchar_t* kMixture = L"Mixture";
inline const std::wstring kWhole = L"Overall";

}  // namespace zelt::sample
