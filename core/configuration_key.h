// The registry key that holds the user's settings and the exported packages. One routine opens it for all of them, so
// that a user who cannot reach it reads one and the same message.
#pragma once

#include "core/registry.h"

namespace zelt {

// Creates or opens Software\ZELT below `root` with full access. On failure the user has been told when this returns.
bool OpenConfigurationKey(const RegistryRoot& root, RegistryKey& key);

}  // namespace zelt
