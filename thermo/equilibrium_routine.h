// ICapeThermoEquilibriumRoutine of a proxy: phase equilibrium. A calculation writes its result to the material, so on a
// read-only material it is logged as an error (the proxy of a package is never read-only).
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedEquilibriumRoutine final : LoggedInterface<ICapeThermoEquilibriumRoutine, ThermoVersion::CapeOpen11> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(CalcEquilibrium)(VARIANT specification1, VARIANT specification2, BSTR solutionType) override
    {
        return LOGGED(ICapeThermoEquilibriumRoutine, CalcEquilibrium, In("specification1", specification1, kStrings),
                      In("specification2", specification2, kStrings), In("solutionType", solutionType),
                      ChangesObject());
    }
    STDMETHOD(CheckEquilibriumSpec)(VARIANT specification1, VARIANT specification2, BSTR solutionType,
                                    VARIANT_BOOL* isSupported) override
    {
        return LOGGED(ICapeThermoEquilibriumRoutine, CheckEquilibriumSpec,
                      In("specification1", specification1, kStrings), In("specification2", specification2, kStrings),
                      In("solutionType", solutionType), OutBool("isSupported", isSupported));
    }
};

}  // namespace zelt
