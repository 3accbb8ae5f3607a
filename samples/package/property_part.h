// ICapeThermoPropertyRoutine of a property package: reads temperature, pressure and composition from the active
// material and writes the results back into it. CalcAndGetLnPhi gets these values as arguments, and writes nothing into
// the material.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/package/package_model.h"

namespace zelt::sample {

class PropertyPart : public CapePart<ICapeThermoPropertyRoutine> {
public:
    PropertyPart(com::Object& object, CapeErrors& errors, const PackageModel& model)
        : CapePart(object, errors, L"ICapeThermoPropertyRoutine"), model(model)
    {}

    // The compounds are those of the active material, or of the package if no material is set. Writes only the
    // outputs whose flags are set. The derivative with respect to amounts begins with all derivatives of compound 0's value.
    STDMETHOD(CalcAndGetLnPhi)(BSTR phaseLabel, double temperature, double pressure, VARIANT moleNumbers, int fFlags,
                               VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP, VARIANT* lnPhiDn) override;
    STDMETHOD(CalcSinglePhaseProp)(VARIANT props, BSTR phaseLabel) override;
    // Temperature and pressure are those of the first of the two phases.
    STDMETHOD(CalcTwoPhaseProp)(VARIANT props, VARIANT phaseLabels) override;
    STDMETHOD(CheckSinglePhasePropSpec)(BSTR property, BSTR phaseLabel, VARIANT_BOOL* valid) override;
    STDMETHOD(CheckTwoPhasePropSpec)(BSTR property, VARIANT phaseLabels, VARIANT_BOOL* valid) override;
    STDMETHOD(GetSinglePhasePropList)(VARIANT* props) override;
    STDMETHOD(GetTwoPhasePropList)(VARIANT* props) override;

private:
    const PackageModel& model;
};

}  // namespace zelt::sample
