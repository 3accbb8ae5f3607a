// Registration of the server: its application, the given classes, the log's file class and the type libraries, in every
// registry view, for the machine or for the current user. Removing takes away what adding brought, save the standard's
// type libraries, which belong to everybody. Nothing is shown to the user: the status code says what went wrong.
#pragma once

#include <windows.h>

#include <string>

#include "system/registry.h"
#include "registration/registry_views.h"
#include "registration/served_class.h"

namespace zelt {

// Adds everything and reads it back in every view. SELFREG_E_CLASS or SELFREG_E_TYPELIB when an entry is missing then.
[[nodiscard]] HRESULT RegisterServer(Scope scope, const std::string& version, ServedClassRows classes);

// Removes as much as can be removed; the first failure is the answer. What is not there is no failure.
[[nodiscard]] HRESULT UnregisterServer(Scope scope, const std::string& version, ServedClassRows classes);

// True when the value CurrentUser of Software\BRIX below `root` says "1": the products of this family were installed
// for the current user alone, and a plain registration is to do likewise.
bool PerUserRegistrationPreferred(const RegistryRoot& root);

}  // namespace zelt
