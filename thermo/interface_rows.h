// The interfaces of the standard that have rows, whatever class of proxy has them as its own.
#pragma once

#include <span>

#include "core/part_on_demand.h"

namespace zelt {

std::span<const PartRow> InterfaceRows();

}  // namespace zelt
