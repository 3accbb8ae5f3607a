// Type information for the interfaces that this module implements, read from the type libraries in its own resources (TYPELIB 1,
// 2, …), so that IDispatch works whatever the registry contains.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace com {

// The module that holds this code: the executable, or the DLL that was linked with it.
HMODULE ThisModule();

// Full path of a module. Throws Failure.
std::wstring ModulePath(HMODULE module);

// The number of type libraries in this module's resources, numbered from 1 without gaps.
int CountTypeLibraries();

// Loads this module's type library `number`, without registering it. The caller releases it.
[[nodiscard]] HRESULT LoadModuleTypeLibrary(int number, ITypeLib** library);

// The type information of a dual interface, from this module's libraries.
// The pointer is borrowed and lives as long as the module. TYPE_E_ELEMENTNOTFOUND for an unknown interface.
[[nodiscard]] HRESULT TypeInfoOf(REFIID iid, ITypeInfo** info);

// Releases what TypeInfoOf keeps; call it when the module is about to end, before COM is uninitialised.
void ReleaseTypeInfo();

}  // namespace com
