// Creation of other people's components, which COM loads into this process or starts in another one.
#pragma once

#include <windows.h>
#include <unknwn.h>

namespace zelt {

// Creates an object of the class in any of the contexts (CLSCTX_ flags) and returns its interface `iid`, which the caller owns.
// A success without an object becomes E_NOINTERFACE; what escapes from the component becomes E_UNEXPECTED.
[[nodiscard]] HRESULT CreateForeign(REFCLSID clsid, DWORD contexts, REFIID iid, void** result) noexcept;

}  // namespace zelt
