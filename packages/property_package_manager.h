// CPropertyPackageManager: the CAPE-OPEN 1.1 Property Package Manager that the server exports.
#pragma once

#include <windows.h>

namespace zelt {

extern const CLSID kPropertyPackageManagerClass;

// Makes one and returns its interface `iid`.
[[nodiscard]] HRESULT CreatePropertyPackageManager(REFIID iid, void** result);

}  // namespace zelt
