// Class registration in every registry view. 64-bit Windows shows CLSID and Interface below Software\Classes in two views, and
// a simulator of the other width looks in the other one. The registrar and the system's type library registration write only
// the view of their own process; this code copies the result to the other views. Each call here that opens a key names the
// view: otherwise Windows would redirect it to the view of the process. Paths are relative to Software\Classes. Failures are
// thrown as com::Failure.
#pragma once

#include <string>

#include "system/registry_view.h"

namespace zelt {

// Whom a registration serves: everybody on the machine, or the current user.
enum class Scope { Machine, User };

RegistryRoot ClassesHive(Scope scope, REGSAM view);
std::wstring ClassesPath(const std::wstring& path);

bool KeyExists(Scope scope, REGSAM view, const std::wstring& path);
// The default value of a key; empty when it is missing.
std::wstring DefaultValue(Scope scope, REGSAM view, const std::wstring& path);

// Makes the key in every other view equal to that of the process's own view.
void MirrorKey(Scope scope, const std::wstring& path);
// Removes the key and everything below it in every view.
void RemoveKey(Scope scope, const std::wstring& path);
// Removes the key from each view in which it is empty.
void RemoveEmptyKey(Scope scope, const std::wstring& path);

// Throws when `result`, a Windows error code, is not ERROR_SUCCESS.
void CheckWin32(LSTATUS result);

}  // namespace zelt
