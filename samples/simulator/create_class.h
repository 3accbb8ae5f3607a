// Creation of components by their registered names.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace zelt::sample {

// The class of a ProgID or of a CLSID as text. Throws CapeFailure if there is none.
CLSID ClassOf(const std::wstring& name);

// With `inProcess`, loads the server into this process; otherwise COM chooses where the server runs. `what` names this step
// in the description of a failure.
Microsoft::WRL::ComPtr<IDispatch> CreateClass(const CLSID& clsid, bool inProcess, const wchar_t* what);

}  // namespace zelt::sample
