// Creation of other people's components, which are loaded into this process or started.
#pragma once

#include <windows.h>
#include <unknwn.h>

namespace zelt {

// Creates an object of the class in any of the contexts (CLSCTX_ flags) and answers with its interface `iid`, which the
// caller owns. A success without an object is a refusal; whatever escapes from the component is E_UNEXPECTED.
[[nodiscard]] HRESULT CreateForeign(REFCLSID clsid, DWORD contexts, REFIID iid, void** result) noexcept;

}  // namespace zelt
