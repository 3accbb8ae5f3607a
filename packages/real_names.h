// The exact names of an exported package. The package's entry in the registry is written in a code page, as other versions of
// the program write it; where a code page could lack a character, a second value holds the names in Unicode.
#pragma once

#include <cstddef>

#include "packages/exported_package.h"
#include "system/registry.h"

namespace zelt {

// Replaces the names of a package that was read from the entry of that number, counted from 1. A value that was made for an
// earlier entry of this number changes nothing.
void ReadRealNames(const RegistryKey& key, std::size_t number, ExportedPackage& package);

// Call it when the entry has been written. Writes the second value, or removes it if the package needs none.
[[nodiscard]] LSTATUS WriteRealNames(RegistryKey& key, std::size_t number, const ExportedPackage& package);

}  // namespace zelt
