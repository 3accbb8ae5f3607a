#include "samples/material/material_routines.h"

#include "samples/component/cape_failure.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

// Makes the material the package's active one while this exists.
class ActiveMaterial {
public:
    ActiveMaterial(const PackageLink* link, com::Object& material)
    {
        if (!link || !link->context) {
            throw CapeFailure(ECapeInvalidOperationHR, L"No property package calculates for this material object");
        }
        context = link->context;
        ComPtr<IDispatch> dispatch;
        com::Check(material.QueryInterface(IID_PPV_ARGS(&dispatch)));
        CheckCall(context->SetMaterial(dispatch.Get()), context.Get(), L"Property package, SetMaterial");
    }
    ~ActiveMaterial() { context->UnsetMaterial(); }
    ActiveMaterial(const ActiveMaterial&) = delete;
    ActiveMaterial& operator=(const ActiveMaterial&) = delete;

private:
    ComPtr<ICapeThermoMaterialContext> context;
};

constexpr const wchar_t* kPackage = L"Property package";

}  // namespace

// `body` gets the package's interface, which stays alive even if the link is cleared during the call.
template <class Body>
HRESULT MaterialPropertyPart::Ask(const wchar_t* operation, Body&& body)
{
    return Call(operation, [&] {
        const ActiveMaterial active(link.get(), object);
        const ComPtr<ICapeThermoPropertyRoutine> routine = link->properties;
        CheckCall(body(routine.Get()), routine.Get(), kPackage);
    });
}

template <class Body>
HRESULT MaterialEquilibriumPart::Ask(const wchar_t* operation, Body&& body)
{
    return Call(operation, [&] {
        const ActiveMaterial active(link.get(), object);
        const ComPtr<ICapeThermoEquilibriumRoutine> routine = link->equilibrium;
        CheckCall(body(routine.Get()), routine.Get(), kPackage);
    });
}

STDMETHODIMP MaterialPropertyPart::CalcAndGetLnPhi(BSTR phaseLabel, double temperature, double pressure,
                                                   VARIANT moleNumbers, int fFlags, VARIANT* lnPhi, VARIANT* lnPhiDT,
                                                   VARIANT* lnPhiDP, VARIANT* lnPhiDn)
{
    return Ask(L"CalcAndGetLnPhi", [&](auto* routine) {
        return routine->CalcAndGetLnPhi(phaseLabel, temperature, pressure, moleNumbers, fFlags, lnPhi, lnPhiDT, lnPhiDP,
                                        lnPhiDn);
    });
}

STDMETHODIMP MaterialPropertyPart::CalcSinglePhaseProp(VARIANT props, BSTR phaseLabel)
{
    return Ask(L"CalcSinglePhaseProp", [&](auto* routine) { return routine->CalcSinglePhaseProp(props, phaseLabel); });
}

STDMETHODIMP MaterialPropertyPart::CalcTwoPhaseProp(VARIANT props, VARIANT phaseLabels)
{
    return Ask(L"CalcTwoPhaseProp", [&](auto* routine) { return routine->CalcTwoPhaseProp(props, phaseLabels); });
}

STDMETHODIMP MaterialPropertyPart::CheckSinglePhasePropSpec(BSTR property, BSTR phaseLabel, VARIANT_BOOL* valid)
{
    return Ask(L"CheckSinglePhasePropSpec",
               [&](auto* routine) { return routine->CheckSinglePhasePropSpec(property, phaseLabel, valid); });
}

STDMETHODIMP MaterialPropertyPart::CheckTwoPhasePropSpec(BSTR property, VARIANT phaseLabels, VARIANT_BOOL* valid)
{
    return Ask(L"CheckTwoPhasePropSpec",
               [&](auto* routine) { return routine->CheckTwoPhasePropSpec(property, phaseLabels, valid); });
}

STDMETHODIMP MaterialPropertyPart::GetSinglePhasePropList(VARIANT* props)
{
    return Ask(L"GetSinglePhasePropList", [&](auto* routine) { return routine->GetSinglePhasePropList(props); });
}

STDMETHODIMP MaterialPropertyPart::GetTwoPhasePropList(VARIANT* props)
{
    return Ask(L"GetTwoPhasePropList", [&](auto* routine) { return routine->GetTwoPhasePropList(props); });
}

STDMETHODIMP MaterialEquilibriumPart::CalcEquilibrium(VARIANT specification1, VARIANT specification2, BSTR solutionType)
{
    return Ask(L"CalcEquilibrium",
               [&](auto* routine) { return routine->CalcEquilibrium(specification1, specification2, solutionType); });
}

STDMETHODIMP MaterialEquilibriumPart::CheckEquilibriumSpec(VARIANT specification1, VARIANT specification2,
                                                           BSTR solutionType, VARIANT_BOOL* isSupported)
{
    return Ask(L"CheckEquilibriumSpec", [&](auto* routine) {
        return routine->CheckEquilibriumSpec(specification1, specification2, solutionType, isSupported);
    });
}

}  // namespace zelt::sample
