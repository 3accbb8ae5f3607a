// Registration of this edition of the server: its application, its classes, the file class of logs if it opens them, and the
// type libraries, in every registry view, for the machine or for the current user. Removal takes away what registration added,
// except the standard's type libraries, which belong to everybody, and, while the other edition is registered, the program's
// own type library. Shows nothing to the user: the status code says what went wrong.
#pragma once

#include <windows.h>

#include <string>

#include "system/registry.h"
#include "registration/registry_mirror.h"

namespace zelt {

// Adds everything, and checks what it wrote: SELFREG_E_CLASS or SELFREG_E_TYPELIB when an entry is missing or wrong.
[[nodiscard]] HRESULT RegisterServer(Scope scope, const std::string& version);

// Removes as much as can be removed and returns the first failure. What is already missing does not count as a failure.
[[nodiscard]] HRESULT UnregisterServer(Scope scope, const std::string& version);

// True when the value CurrentUser of Software\BRIX below `root` is "1": the products of this family were installed for the
// current user alone, and a plain registration is to do the same.
bool PerUserRegistrationPreferred(const RegistryRoot& root);

}  // namespace zelt
