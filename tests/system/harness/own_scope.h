// For whom tests register: for all users where they may, and otherwise for the current user.
#pragma once

#include <windows.h>

#include <string>

#include "registration/registry_mirror.h"

namespace zelt::test {

Scope OwnScope();

// The arguments of the server for that scope.
std::wstring RegisterArgument();
std::wstring UnregisterArgument();

// Calls an export of an in-process library of this program's width, DllRegisterServer or DllUnregisterServer, so that the library
// registers itself for that scope. Returns its result, or a failure when the library cannot be loaded or lacks the export.
[[nodiscard]] HRESULT CallRegistration(const std::string& library, const char* name);

}  // namespace zelt::test
