// The submenu that chooses the unit operation of the logged unit operation: "Ask user", then an item for each installed
// one. Owns nothing; the choice is a field of the log options.
#pragma once

#include <windows.h>

#include <optional>
#include <span>

#include "system/component_scan.h"

namespace zelt {

// Fills the menu anew behind its first item, and checks the item of `chosen`.
void PrepareUnitOperationMenu(HMENU menu, std::span<const ComponentInfo> installed, REFCLSID chosen);

// The unit operation that a command stands for; nothing for a command of another meaning.
std::optional<CLSID> UnitOperationOf(int command, std::span<const ComponentInfo> installed);

}  // namespace zelt
