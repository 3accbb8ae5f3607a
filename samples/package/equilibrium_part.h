// ICapeThermoEquilibriumRoutine of a property package: vapour-liquid flashes of the active material at given
// temperature and pressure, at one of these and a phase fraction, or at given pressure and enthalpy or entropy.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/package/package_model.h"

namespace zelt::sample {

class EquilibriumPart final : public CapePart<ICapeThermoEquilibriumRoutine> {
public:
    EquilibriumPart(com::Object& object, CapeErrors& errors, const PackageModel& model)
        : CapePart(object, errors, L"ICapeThermoEquilibriumRoutine"), model(model)
    {}

    // A specification is an array of a property, a basis and a phase label. The candidates are the phases that are present in
    // the material before the call and that the user's parameter allows. Sets the phases that are present at equilibrium; the
    // temperature, pressure, fraction and phase fraction of each; and the overall temperature or pressure if it was not given.
    STDMETHOD(CalcEquilibrium)(VARIANT specification1, VARIANT specification2, BSTR solutionType) override;
    STDMETHOD(CheckEquilibriumSpec)(VARIANT specification1, VARIANT specification2, BSTR solutionType,
                                    VARIANT_BOOL* isSupported) override;

private:
    const PackageModel& model;
};

}  // namespace zelt::sample
