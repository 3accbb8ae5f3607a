// The table for SetPartsOnDemand: the interfaces of the standard that have rows, whichever proxy class they belong to.
#pragma once

#include <span>

#include "core/part_on_demand.h"

namespace zelt {

std::span<const PartRow> InterfaceRows();

}  // namespace zelt
