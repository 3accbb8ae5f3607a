// Whether tests may register components for all users: an administrator may, and under Wine everybody.
#pragma once

#include "system/elevation.h"
#include "tests/system/harness/under_wine.h"

namespace zelt::test {

inline bool MayRegisterForAll() { return UnderWine() || IsElevated(); }

}  // namespace zelt::test
