// GUIDs as text, in the form that the registry has and users see.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

// In braces, with upper-case digits.
std::wstring GuidText(const GUID& guid);

}  // namespace zelt
