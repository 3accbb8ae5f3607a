// CThermoSystem: the CAPE-OPEN 1.0 Thermo System that the server exports.
#pragma once

#include "system/edition.h"

namespace zelt {

inline constexpr const CLSID& kThermoSystemClass = kThisEdition[OwnClass::ThermoSystem].classId;

// Makes one and returns its interface `iid`.
[[nodiscard]] HRESULT CreateThermoSystem(REFIID iid, void** result);

}  // namespace zelt
