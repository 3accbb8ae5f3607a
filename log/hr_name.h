// Symbolic names of status codes.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

// "E_FAIL", "ECapeUnknownHR", …; a code without a name is "0x%X". "<out of memory>" when the text cannot be allocated.
std::string HRName(HRESULT code) noexcept;

}  // namespace zelt
