// The names of an exported package as they are. Its entry in the registry holds them in a code page, so that other versions of the
// program read it; where a code page could lack a character, a second value holds the names in Unicode.
#pragma once

#include <cstddef>

#include "packages/exported_package.h"
#include "system/registry.h"

namespace zelt {

// Replaces the names of a package that was read from the entry of that number, counted from 1. A value that was made for another
// entry, which has taken this number since, changes nothing.
void ReadRealNames(const RegistryKey& key, std::size_t number, ExportedPackage& package);

// Call when the entry has been written. Removes the value of a package that needs none.
[[nodiscard]] LSTATUS WriteRealNames(RegistryKey& key, std::size_t number, const ExportedPackage& package);

}  // namespace zelt
