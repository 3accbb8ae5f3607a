// The registry keys that hold the user's settings and the exported packages, and the messages for the user when such a key
// cannot be opened or written, so that these are always the same.
#pragma once

#include "system/outcome.h"
#include "system/registry.h"

namespace zelt {

// The settings, and the list of packages of ZELT.EXE.
inline constexpr wchar_t kSettingsKey[] = L"Software\\ZELT";

// Creates or opens `path` below `root` with full access.
Outcome OpenConfigurationKey(const RegistryRoot& root, RegistryKey& key, const wchar_t* path = kSettingsKey);

// The failure to store a value in the opened key. `what` names what the user has lost.
Outcome NotStored(const std::wstring& what, LSTATUS error);

}  // namespace zelt
