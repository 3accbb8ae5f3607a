// Whether windows can be shown: under Wine, only with a display.
#pragma once

#include <cstdlib>

namespace zelt::test {

inline bool HasDisplay() { return !std::getenv("WINEPREFIX") || std::getenv("DISPLAY"); }

}  // namespace zelt::test
