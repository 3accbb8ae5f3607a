// CThermoSystem: the CAPE-OPEN 1.0 Thermo System that the server exports.
#pragma once

#include <windows.h>

namespace zelt {

extern const CLSID kThermoSystemClass;

// Makes one and returns its interface `iid`.
[[nodiscard]] HRESULT CreateThermoSystem(REFIID iid, void** result);

}  // namespace zelt
