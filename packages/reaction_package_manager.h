// CReactionPackageManager: the CAPE-OPEN 1.0 Reaction Package Manager that the server exports.
#pragma once

#include "system/edition.h"

namespace zelt {

inline constexpr const CLSID& kReactionPackageManagerClass = kThisEdition[OwnClass::ReactionPackageManager].classId;

// Makes one and returns its interface `iid`.
[[nodiscard]] HRESULT CreateReactionPackageManager(REFIID iid, void** result);

}  // namespace zelt
