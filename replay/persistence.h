// Calls of a component's persistence: its interfaces are not dual, so no type information describes them.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <string_view>

namespace zelt::replay {

bool IsPersistence(std::string_view member);

// Makes the call, with a stream in memory where the recorded one had the simulator's. Throws Unplayable for Load: a recording does
// not have the data.
HRESULT CallPersistence(std::string_view member, IUnknown* object);

}  // namespace zelt::replay
