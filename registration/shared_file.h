// The folder of files that outlive the program: a type library that other programs have come to rely on stays there.
#pragma once

#include <string>

#include "registration/registry_mirror.h"

namespace zelt {

// CAPE-OPEN\<fileName> below the 32-bit common program files or, for the user's scope, below the user's local application data.
// Throws com::Failure.
std::wstring SharedFilePath(Scope scope, const std::wstring& fileName);

// Writes resource TYPELIB `number` there, and returns the path. Does not write a file that already has these bytes. Throws
// com::Failure.
std::wstring WriteSharedFile(Scope scope, int number, const std::wstring& fileName);

}  // namespace zelt
