// A part for a dual interface without rows, driven by the interface's type information: it forwards each member's arguments bit for
// bit under the fault guard, and logs them as rows would, with the names, directions and types that the information gives.
// Interface pointers are not wrapped.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <memory>

#include "core/part_on_demand.h"

namespace zelt {

// Null when no type information describes the interface in full.
std::unique_ptr<PartOnDemand> MakeDescribedPart(REFIID iid, CapeOpenBase& proxy);

}  // namespace zelt
