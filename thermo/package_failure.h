// Why a package could not be had: thrown inside the managers, raised to the caller as their CAPE-OPEN error.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

struct PackageFailure {
    HRESULT code;
    std::wstring description;
};

}  // namespace zelt
