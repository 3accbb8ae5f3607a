// The exact names of an exported package. The package's entry in the registry is written in a code page, as other versions of
// the program write it; where a code page could lack a character, a second value holds the names in Unicode.
#pragma once

#include <cstddef>

#include "packages/exported_package.h"
#include "system/registry.h"

namespace zelt {

// Gives a package its exact names. `number` is that of the entry from which the package was read, from 1. A second value that
// was written for an earlier entry of this number is ignored.
void ReadRealNames(const RegistryKey& key, std::size_t number, ExportedPackage& package);

// Call it when the entry has been written. Writes the second value, or removes it if the package needs none.
[[nodiscard]] LSTATUS WriteRealNames(RegistryKey& key, std::size_t number, const ExportedPackage& package);

}  // namespace zelt
