// Creation of components by ProgID or CLSID.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace zelt::sample {

// The CLSID for a ProgID, or for the text of a CLSID. Throws CapeFailure if the name is neither.
CLSID ClassOf(const std::wstring& name);

// With `inProcess`, loads the server into this process; otherwise COM chooses where the server runs. `what` names this step
// in the description of a failure.
Microsoft::WRL::ComPtr<IDispatch> CreateClass(const CLSID& clsid, bool inProcess, const wchar_t* what);

}  // namespace zelt::sample
