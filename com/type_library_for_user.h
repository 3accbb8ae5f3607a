// Registration of type libraries for the current user: exported by the system and its import library, but not declared in the
// headers of this toolchain.
#pragma once

#include <windows.h>
#include <oleauto.h>

extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID libid, WORD major, WORD minor, LCID lcid, SYSKIND kind);
}
