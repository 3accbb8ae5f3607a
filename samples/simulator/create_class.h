// Creation of components by their registered names.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace zelt::sample {

// The class of a ProgID, or of a class identity's text. Throws CapeFailure when there is none.
CLSID ClassOf(const std::wstring& name);

// `what` is what fails when it fails. In process: the server is loaded into this one; otherwise wherever it runs.
Microsoft::WRL::ComPtr<IDispatch> CreateClass(const CLSID& clsid, bool inProcess, const wchar_t* what);

}  // namespace zelt::sample
