// CReactionPackageManager: the CAPE-OPEN 1.0 Reaction Package Manager that the server exports.
#pragma once

#include <windows.h>

namespace zelt {

extern const CLSID kReactionPackageManagerClass;

// Makes one and returns its interface `iid`.
[[nodiscard]] HRESULT CreateReactionPackageManager(REFIID iid, void** result);

}  // namespace zelt
