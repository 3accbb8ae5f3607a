#include "samples/units/unit_operation.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {

STDMETHODIMP UnitPart::get_ports(IDispatch** ports)
{
    if (!ports) return E_POINTER;
    *ports = model.PortCollection().Detach();
    return S_OK;
}

STDMETHODIMP UnitPart::get_ValStatus(eCapeValidationStatus* status)
{
    if (!status) return E_POINTER;
    return Call(L"get_ValStatus", [&] { *status = model.Status(); });
}

STDMETHODIMP UnitPart::Calculate()
{
    return Call(L"Calculate", [&] { model.Calculate(); });
}

STDMETHODIMP UnitPart::Validate(BSTR* message, VARIANT_BOOL* isValid)
{
    if (!isValid) return E_POINTER;
    return Call(L"Validate", [&] {
        const std::wstring objection = model.Validate();
        Replace(message, objection);
        *isValid = objection.empty() ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

STDMETHODIMP ReportPart::get_reports(VARIANT* reports)
{
    return Call(L"get_reports", [&] { Return(reports, MakeStrings(model.Reports())); });
}

STDMETHODIMP ReportPart::get_selectedReport(BSTR* report)
{
    return Call(L"get_selectedReport", [&] { Return(report, model.SelectedReport()); });
}

STDMETHODIMP ReportPart::put_selectedReport(BSTR report)
{
    return Call(L"put_selectedReport", [&] { model.SelectReport(TextOf(report)); });
}

STDMETHODIMP ReportPart::ProduceReport(BSTR* message)
{
    return Call(L"ProduceReport", [&] { Replace(message, model.ProduceReport()); });
}

STDMETHODIMP UnitUtilitiesPart::get_parameters(IDispatch** parameters)
{
    if (!parameters) return E_POINTER;
    *parameters = nullptr;
    return Call(L"get_parameters", [&] { *parameters = model.ParameterCollection().Detach(); });
}

STDMETHODIMP UnitUtilitiesPart::put_simulationContext(IDispatch* context)
{
    model.SetContext(context);
    return S_OK;
}

}  // namespace zelt::sample
