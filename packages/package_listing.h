// Asks a manager component for the names of its packages. The component is foreign code: every call runs under the fault guard,
// and the component is released before the function returns. Failures are reported through the callback, one text each.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "packages/exported_package.h"

namespace zelt {

using ListingFailure = std::function<void(const std::wstring& text)>;

// Nothing when the list is not available. A manager that fails to initialize is still asked.
std::optional<std::vector<std::wstring>> ListPackages(PackageKind kind, REFCLSID manager, const ListingFailure& failed);

}  // namespace zelt
