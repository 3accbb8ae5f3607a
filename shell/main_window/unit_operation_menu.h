// The submenu that chooses the unit operation that PRAVIK creates: "Ask user", then an item for each installed one.
// Owns nothing; the choice is a field of the log options.
#pragma once

#include <windows.h>

#include <optional>
#include <span>

#include "system/component_scan.h"

namespace zelt {

// Refills the menu after its first item, and checks the item of `chosen`.
void PrepareUnitOperationMenu(HMENU menu, std::span<const ComponentInfo> installed, REFCLSID chosen);

// The unit operation that a command chooses; nothing for any other command.
std::optional<CLSID> UnitOperationOf(int command, std::span<const ComponentInfo> installed);

}  // namespace zelt
