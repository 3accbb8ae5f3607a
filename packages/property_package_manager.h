// CPropertyPackageManager: the CAPE-OPEN 1.1 Property Package Manager that the server exports.
#pragma once

#include <windows.h>

namespace zelt {

extern const CLSID kPropertyPackageManagerClass;

// Makes one and answers with its interface `iid`.
[[nodiscard]] HRESULT CreatePropertyPackageManager(REFIID iid, void** result);

}  // namespace zelt
