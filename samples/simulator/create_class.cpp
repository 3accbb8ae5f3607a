#include "samples/simulator/create_class.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"

namespace zelt::sample {

CLSID ClassOf(const std::wstring& name)
{
    CLSID clsid;
    if (FAILED(CLSIDFromString(name.c_str(), &clsid))) {
        const HRESULT found = CLSIDFromProgID(name.c_str(), &clsid);
        if (FAILED(found)) throw CapeFailure(found, L"There is no class " + Quoted(name));
    }
    return clsid;
}

Microsoft::WRL::ComPtr<IDispatch> CreateClass(const CLSID& clsid, bool inProcess, const wchar_t* what)
{
    Microsoft::WRL::ComPtr<IDispatch> object;
    const DWORD context = inProcess ? CLSCTX_INPROC_SERVER : CLSCTX_LOCAL_SERVER | CLSCTX_INPROC_SERVER;
    CheckCall(CoCreateInstance(clsid, nullptr, context, IID_PPV_ARGS(&object)), nullptr, what);
    return object;
}

}  // namespace zelt::sample
