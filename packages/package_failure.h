// Why a package could not be created, or a foreign manager's dialog failed. Our managers raise it to their caller as a
// CAPE-OPEN error.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "system/narrow.h"

namespace zelt {

struct PackageFailure : std::runtime_error {
    PackageFailure(HRESULT code, std::wstring text)
        : runtime_error(Narrow(text, CP_UTF8)), code(code), description(std::move(text))
    {}

    HRESULT code;
    std::wstring description;
};

}  // namespace zelt
