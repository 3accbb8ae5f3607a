// Packages that answer calls from a recording, without the package that was recorded. In the list of exported packages, their
// class is one that nobody registers, and `sourceName` is the recording's path instead of the name in a manager.
#pragma once

#include <windows.h>

#include <string>

#include "packages/exported_package.h"

namespace zelt {

inline constexpr CLSID kRecordedPackageClass = {
    0xB6A8EAFF, 0x8E55, 0x47EB, {0xB5, 0x6C, 0xE5, 0xDD, 0x4C, 0xB9, 0xCE, 0xAC}};

// A package like the recorded one, with the same exported name. Throws std::runtime_error, with a text for the user, when the
// file is not a recording of a package, or when this program cannot use it.
ExportedPackage ExportOfRecording(const std::wstring& path);

}  // namespace zelt
