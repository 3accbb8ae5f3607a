// Type information of interfaces. The type libraries in this module's own resources (TYPELIB 1, 2, …) describe the interfaces
// that it implements, so that their IDispatch does not depend on the registry; for others, the registry names a library.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

namespace com {

// The module that holds this code: the executable, or the DLL that was linked with it.
HMODULE ThisModule();

// Full path of a module. Throws Failure.
std::wstring ModulePath(HMODULE module);

// Full path of a file of that name in this module's folder, whether it exists or not. Throws Failure.
std::wstring BesideThisModule(const std::wstring& name);

// The number of type libraries in this module's resources, numbered from 1 without gaps.
int CountTypeLibraries();

// Loads this module's type library `number`, without registering it. The caller releases it.
[[nodiscard]] HRESULT LoadModuleTypeLibrary(int number, ITypeLib** library);

// The type information of an interface, from this module's libraries.
// The pointer is borrowed, and valid until ReleaseTypeInfo. TYPE_E_ELEMENTNOTFOUND for an unknown interface.
[[nodiscard]] HRESULT TypeInfoOf(REFIID iid, ITypeInfo** info);

// The dual interfaces of this module's libraries, in their order there. Throws Failure.
const std::vector<IID>& ModuleInterfaces();

// The type information of an interface, from the library that the registry names for it in this process's own view. The caller
// releases it.
[[nodiscard]] HRESULT RegisteredTypeInfo(REFIID iid, ITypeInfo** info);

// Releases what TypeInfoOf and DualInterfaceOf keep; call it when the module is about to end, before COM is uninitialised.
void ReleaseTypeInfo();

}  // namespace com
