// Identifiers as the registry and the user read them.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

// In braces, with upper-case digits.
std::wstring GuidText(const GUID& guid);

}  // namespace zelt
