// CPropertyPackageManager: the CAPE-OPEN 1.1 Property Package Manager that the server exports.
#pragma once

#include "system/edition.h"

namespace zelt {

inline constexpr const CLSID& kPropertyPackageManagerClass = kThisEdition[OwnClass::PropertyPackageManager].classId;

// Makes one and returns its interface `iid`.
[[nodiscard]] HRESULT CreatePropertyPackageManager(REFIID iid, void** result);

}  // namespace zelt
