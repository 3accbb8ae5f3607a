#include "samples/simulator/session.h"

#include "samples/component/cape_failure.h"

namespace zelt::sample {

using Microsoft::WRL::ComPtr;

PackageSession::PackageSession(ComPtr<IDispatch> object, std::shared_ptr<Flowsheet> sheet)
    : ComponentSession(std::move(object), std::move(sheet))
{
    properties = Optional<ICapeThermoPropertyRoutine>(package.Get());
    equilibrium = Optional<ICapeThermoEquilibriumRoutine>(package.Get());
    universalConstants = Optional<ICapeThermoUniversalConstant>(package.Get());
    materialContext = Optional<ICapeThermoMaterialContext>(package.Get());
    CheckCall(package.As(&compounds), nullptr, L"The property package has no ICapeThermoCompounds");
    CheckCall(package.As(&phases), nullptr, L"The property package has no ICapeThermoPhases");
    slate = std::make_shared<const Slate>(ReadSlate(compounds.Get(), phases.Get()));
    flowsheet->slate = slate;
}

PackageSession::~PackageSession()
{
    // Releases what is still held, even after a failure.
    if (package) Close(false);
}

void PackageSession::SetMaterial(ReadHook hook)
{
    CheckCall(com::Create<Material>(IID_PPV_ARGS(&material), slate, std::wstring(L"Feed"), std::move(hook)), nullptr,
              L"Material object");
    ComPtr<IDispatch> dispatch;
    CheckCall(material.As(&dispatch), nullptr, L"Material object");
    CheckCall(materialContext->SetMaterial(dispatch.Get()), materialContext.Get(), L"SetMaterial");
}

void PackageSession::ServeMaterials()
{
    if (!materialContext || !properties || !equilibrium) {
        throw CapeFailure(E_NOINTERFACE, L"The property package does not calculate properties and equilibria");
    }
    *flowsheet->link = PackageLink{nullptr, materialContext, properties, equilibrium};
}

void PackageSession::Close(bool hold)
{
    *flowsheet->link = PackageLink();
    if (materialContext && material && !hold) materialContext->UnsetMaterial();
    if (!hold) material.Reset();
    phases.Reset();
    compounds.Reset();
    materialContext.Reset();
    universalConstants.Reset();
    equilibrium.Reset();
    properties.Reset();
    Terminate();
    material.Reset();
    ReleaseHeld();
}

}  // namespace zelt::sample
