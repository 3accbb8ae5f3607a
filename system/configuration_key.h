// The registry key that holds the user's settings and the exported packages. One routine opens it for all of them, and one
// reports what could not be stored in it, so that the user always reads the same messages.
#pragma once

#include "system/outcome.h"
#include "system/registry.h"

namespace zelt {

// Creates or opens Software\ZELT below `root` with full access.
Outcome OpenConfigurationKey(const RegistryRoot& root, RegistryKey& key);

// The failure to store a value in the opened key. `what` names what the user has lost.
Outcome NotStored(const std::wstring& what, LSTATUS error);

}  // namespace zelt
