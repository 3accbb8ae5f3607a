// Arguments for methods of the CAPE-OPEN 1.0 material object: a calculation type, and the phase that means the whole material.
#pragma once

#include <string>

namespace zelt::sample {

inline constexpr const wchar_t* kMixture = L"Mixture";
inline const std::wstring kWhole = L"Overall";

}  // namespace zelt::sample
