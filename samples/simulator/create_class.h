// Creation of components by their registered names.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace zelt::sample {

// The class of a ProgID or of a CLSID as text. Throws CapeFailure if there is none.
CLSID ClassOf(const std::wstring& name);

// `what` is the step that the text of a failure names. In process: loads the server into this process; otherwise the
// server runs wherever COM starts it.
Microsoft::WRL::ComPtr<IDispatch> CreateClass(const CLSID& clsid, bool inProcess, const wchar_t* what);

}  // namespace zelt::sample
