// A part for a dual interface that has no class of its own (part_on_demand.h), driven by the interface's type information: it
// forwards each member's arguments bit for bit under the fault guard, and logs them with the names, directions and types that
// the information gives. Interface pointers are not wrapped; if the user wants originals handed back, a proxy that goes in is
// replaced by its object.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <memory>

#include "core/part_on_demand.h"

namespace zelt {

// Null when the interface has no usable description (com/dual_interface.h) or too many members (com/dual_face.h).
std::unique_ptr<PartOnDemand> MakeDescribedPart(REFIID iid, CapeOpenBase& proxy);

}  // namespace zelt
