// Registration of the type libraries in the executable's resources, with which COM marshals calls between processes. The
// program's own library points to the executable and is removed with it; both editions have it, so an edition that is removed
// leaves it to the other edition. A library of the standard belongs to everybody: it is registered only where it is missing,
// from a file in a shared folder that outlives the program, and stays. Failures are thrown as com::Failure.
#pragma once

#include <span>
#include <string>

#include "registration/registry_mirror.h"

namespace zelt {

// A library of the standard: the number of its resource, and the name of its file in the shared folder.
struct SharedLibrary {
    int number;
    const wchar_t* fileName;
};

std::span<const SharedLibrary> SharedLibraries();

void RegisterOwnLibrary(Scope scope, const std::wstring& modulePath);
void UnregisterOwnLibrary(Scope scope);

// Registers, in each view, what that view lacks of the library in resource TYPELIB `number`: the library, and each of its
// interfaces. `fileName` is the name of the file in the shared folder.
void RegisterMissingLibrary(Scope scope, int number, const std::wstring& fileName);

}  // namespace zelt
