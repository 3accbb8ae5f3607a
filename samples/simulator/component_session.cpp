#include "samples/simulator/component_session.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/parameters.h"
#include "samples/material/simulation_context.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

std::wstring TextFrom(ICapeIdentification* identification,
                      HRESULT (STDMETHODCALLTYPE ICapeIdentification::*getter)(BSTR*))
{
    _bstr_t text;
    CheckCall((identification->*getter)(text.GetAddress()), identification, L"ICapeIdentification");
    return std::wstring(TextOf(text.GetBSTR()));
}

}  // namespace

std::shared_ptr<Flowsheet> MakeFlowsheet(Report& report)
{
    auto flowsheet = std::make_shared<Flowsheet>();
    flowsheet->onMessage = [&report](const wchar_t* kind, const std::wstring& text) {
        report.Line(std::wstring(kind) + L": " + text);
    };
    return flowsheet;
}

ComponentSession::ComponentSession(ComPtr<IDispatch> object, std::shared_ptr<Flowsheet> sheet)
    : package(std::move(object)),
      identification(Optional<ICapeIdentification>(package.Get())),
      utilities(Optional<ICapeUtilities>(package.Get())),
      flowsheet(std::move(sheet))
{
    if (!utilities) return;
    ComPtr<IDispatch> context;
    com::Check(com::Create<SimulationContext>(IID_PPV_ARGS(&context), flowsheet));
    // A component need not use the context, so the simulator continues if it refuses.
    utilities->put_simulationContext(context.Get());
    CheckCall(utilities->Initialize(), utilities.Get(), L"Initialising the component");
}

void ComponentSession::ShowIdentity(Report& report, const char* label) const
{
    if (!identification) return;
    report.Text(label, TextFrom(identification.Get(), &ICapeIdentification::get_ComponentName));
    report.Text("Description", TextFrom(identification.Get(), &ICapeIdentification::get_ComponentDescription));
}

void ComponentSession::ShowParameters(Report& report, bool hold)
{
    ComPtr<IDispatch> collection;
    if (!utilities || FAILED(utilities->get_parameters(&collection)) || !collection) return;
    report.Heading("Parameters");
    WalkParameters(collection.Get(), report);
    if (!hold) return;
    for (ComPtr<IDispatch>& object : FirstParameter(collection.Get())) held.push_back(std::move(object));
    held.push_back(std::move(collection));
}

void ComponentSession::Terminate()
{
    if (utilities) utilities->Terminate();
    utilities.Reset();
    identification.Reset();
    package.Reset();
}

}  // namespace zelt::sample
