// The CAPE-OPEN 1.1 Property Package Manager that the server exports. A stand-in without interfaces of its own.
#pragma once

#include <windows.h>

namespace zelt {

extern const CLSID kPropertyPackageManagerClass;

HRESULT CreatePropertyPackageManager(REFIID iid, void** result);

}  // namespace zelt
