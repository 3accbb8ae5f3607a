#include "tests/system/unit_operation/unit_server.h"

namespace zelt::test {

using Microsoft::WRL::ComPtr;

STDMETHODIMP UnitPart::get_ports(IDispatch** ports)
{
    return com::Create<Collection>(IID_IDispatch, reinterpret_cast<void**>(ports), true, 1);
}

STDMETHODIMP UnitPart::Calculate()
{
    ComPtr<ICapeCollection> collection;
    if (!unitState.connected) return E_FAIL;
    HRESULT result = unitState.connected.As(&collection);
    long count = 0;
    if (SUCCEEDED(result)) result = collection->Count(&count);
    if (SUCCEEDED(result)) unitState.state = "calculated with " + std::to_string(count);
    return result;
}

STDMETHODIMP PersistencePart::Save(IStream* stream, BOOL)
{
    const std::string& state = unitState.state;
    ULONG written = 0;
    const HRESULT result = stream->Write(state.data(), static_cast<ULONG>(state.size()), &written);
    return FAILED(result) || written == state.size() ? result : E_FAIL;
}

STDMETHODIMP PersistencePart::Load(IStream* stream)
{
    char buffer[256];
    ULONG read = 0;
    const HRESULT result = stream->Read(buffer, sizeof buffer, &read);
    if (SUCCEEDED(result)) unitState.state.assign(buffer, read);
    return result;
}

}  // namespace zelt::test
