// ICapeThermoPhases of a proxy: the phases that may exist.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedPhases final : LoggedInterface<ICapeThermoPhases, ThermoVersion::CapeOpen11> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(GetNumPhases)(long* num) override { return LOGGED(ICapeThermoPhases, GetNumPhases, Out("num", num)); }
    STDMETHOD(GetPhaseInfo)(BSTR phaseLabel, BSTR phaseAttribute, VARIANT* value) override
    {
        return LOGGED(ICapeThermoPhases, GetPhaseInfo, In("phaseLabel", phaseLabel),
                      In("phaseAttribute", phaseAttribute), Out("value", value));
    }
    STDMETHOD(GetPhaseList)(VARIANT* phaseLabels, VARIANT* stateOfAggregation, VARIANT* keyCompoundId) override
    {
        return LOGGED(ICapeThermoPhases, GetPhaseList, Out("phaseLabels", phaseLabels, kStrings),
                      Out("stateOfAggregation", stateOfAggregation, kStrings),
                      Out("keyCompoundId", keyCompoundId, kStrings));
    }
};

}  // namespace zelt
