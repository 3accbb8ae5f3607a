// The table for SetPartsOnDemand: the interfaces of the standard whose rows any proxy can use.
#pragma once

#include <span>

#include "core/part_on_demand.h"

namespace zelt {

std::span<const PartRow> InterfaceRows();

}  // namespace zelt
