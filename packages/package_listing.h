// Asking a manager component for the names of its packages. The component is foreign code: every call runs under the fault
// guard, and it is released before the function returns. What fails is told through the callback, a text each time.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "packages/exported_package.h"

namespace zelt {

using ListingFailure = std::function<void(const std::wstring& text)>;

// Nothing when the list could not be had. A manager that fails to initialise is asked all the same.
std::optional<std::vector<std::wstring>> ListPackages(PackageKind kind, REFCLSID manager, const ListingFailure& failed);

}  // namespace zelt
