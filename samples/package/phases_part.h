// ICapeThermoPhases of a property package: one vapour and one liquid. No key compounds.
#pragma once

#include "samples/component/cape_errors.h"

namespace zelt::sample {

class PhasesPart final : public CapePart<ICapeThermoPhases> {
public:
    PhasesPart(com::Object& object, CapeErrors& errors) : CapePart(object, errors, L"ICapeThermoPhases") {}

    STDMETHOD(GetNumPhases)(long* num) override;
    // Returns an empty VARIANT for an attribute that does not apply, such as "TypeOfSolid".
    STDMETHOD(GetPhaseInfo)(BSTR phaseLabel, BSTR phaseAttribute, VARIANT* value) override;
    STDMETHOD(GetPhaseList)(VARIANT* phaseLabels, VARIANT* stateOfAggregation, VARIANT* keyCompoundId) override;
};

}  // namespace zelt::sample
