// The registry key that holds the user's settings and the exported packages. One routine opens it for all of them, and one
// says what could not be stored in it, so that the user reads the same messages whatever it was.
#pragma once

#include "system/outcome.h"
#include "system/registry.h"

namespace zelt {

// Creates or opens Software\ZELT below `root` with full access.
Outcome OpenConfigurationKey(const RegistryRoot& root, RegistryKey& key);

// Of a value that the key, which was opened, has not taken. `what` says what the user has lost.
Outcome NotStored(const std::wstring& what, LSTATUS error);

}  // namespace zelt
