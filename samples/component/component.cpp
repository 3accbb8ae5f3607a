#include "samples/component/component.h"

#include "samples/component/text.h"

namespace zelt::sample {

STDMETHODIMP IdentificationPart::get_ComponentName(BSTR* text)
{
    return Call(L"get_ComponentName", [&] { Return(text, name); });
}

STDMETHODIMP IdentificationPart::put_ComponentName(BSTR text)
{
    return Call(L"put_ComponentName", [&] { name = TextOf(text); });
}

STDMETHODIMP IdentificationPart::get_ComponentDescription(BSTR* text)
{
    return Call(L"get_ComponentDescription", [&] { Return(text, description); });
}

STDMETHODIMP IdentificationPart::put_ComponentDescription(BSTR text)
{
    return Call(L"put_ComponentDescription", [&] { description = TextOf(text); });
}

STDMETHODIMP UtilitiesPart::get_parameters(IDispatch** parameters)
{
    if (!parameters) return E_POINTER;
    *parameters = nullptr;
    return Call(L"get_parameters", [&] {
        if (host) *parameters = host->Collection().Detach();
    });
}

STDMETHODIMP UtilitiesPart::put_simulationContext(IDispatch* context)
{
    if (host)
        host->SetContext(context);
    else
        simulationContext = context;
    return S_OK;
}

STDMETHODIMP UtilitiesPart::Initialize()
{
    return Call(L"Initialize", [&] {
        if (onInitialize) onInitialize();
        if (host) host->Initialize();
    });
}

STDMETHODIMP UtilitiesPart::Terminate()
{
    return Call(L"Terminate", [&] {
        if (onTerminate) onTerminate();
        if (host) host->Terminate();
        simulationContext.Reset();
    });
}

STDMETHODIMP UtilitiesPart::Edit()
{
    return Call(L"Edit", [] { throw CapeFailure(ECapeNoImplHR, L"There is nothing to edit"); });
}

}  // namespace zelt::sample
