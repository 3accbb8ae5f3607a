// The interfaces through which a material object calculates its properties and equilibrium. The CAPE-OPEN 1.1 package in its
// PackageLink does the calculations: each call sets the material in the package, forwards the call and unsets the material.
// A material made without such a package does not offer these interfaces.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/material/material_store.h"

namespace zelt::sample {

class MaterialPropertyPart final : public CapePart<ICapeThermoPropertyRoutine> {
public:
    MaterialPropertyPart(com::Object& object, CapeErrors& errors, std::shared_ptr<PackageLink> link)
        : CapePart(object, errors, L"ICapeThermoPropertyRoutine"), link(std::move(link))
    {}
    STDMETHOD(CalcAndGetLnPhi)(BSTR phaseLabel, double temperature, double pressure, VARIANT moleNumbers, int fFlags,
                               VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP, VARIANT* lnPhiDn) override;
    STDMETHOD(CalcSinglePhaseProp)(VARIANT props, BSTR phaseLabel) override;
    STDMETHOD(CalcTwoPhaseProp)(VARIANT props, VARIANT phaseLabels) override;
    STDMETHOD(CheckSinglePhasePropSpec)(BSTR property, BSTR phaseLabel, VARIANT_BOOL* valid) override;
    STDMETHOD(CheckTwoPhasePropSpec)(BSTR property, VARIANT phaseLabels, VARIANT_BOOL* valid) override;
    STDMETHOD(GetSinglePhasePropList)(VARIANT* props) override;
    STDMETHOD(GetTwoPhasePropList)(VARIANT* props) override;

private:
    template <class Body>
    HRESULT Ask(const wchar_t* operation, Body&& body);

    std::shared_ptr<PackageLink> link;
};

class MaterialEquilibriumPart final : public CapePart<ICapeThermoEquilibriumRoutine> {
public:
    MaterialEquilibriumPart(com::Object& object, CapeErrors& errors, std::shared_ptr<PackageLink> link)
        : CapePart(object, errors, L"ICapeThermoEquilibriumRoutine"), link(std::move(link))
    {}
    STDMETHOD(CalcEquilibrium)(VARIANT specification1, VARIANT specification2, BSTR solutionType) override;
    STDMETHOD(CheckEquilibriumSpec)(VARIANT specification1, VARIANT specification2, BSTR solutionType,
                                    VARIANT_BOOL* isSupported) override;

private:
    template <class Body>
    HRESULT Ask(const wchar_t* operation, Body&& body);

    std::shared_ptr<PackageLink> link;
};

}  // namespace zelt::sample
