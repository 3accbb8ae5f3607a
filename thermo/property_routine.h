// ICapeThermoPropertyRoutine of a proxy: property calculations.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedPropertyRoutine final : LoggedInterface<ICapeThermoPropertyRoutine, ThermoVersion::CapeOpen11> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(CalcAndGetLnPhi)(BSTR phaseLabel, double temperature, double pressure, VARIANT moleNumbers, int fFlags,
                               VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP, VARIANT* lnPhiDn) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, CalcAndGetLnPhi, In("phaseLabel", phaseLabel),
                      In("temperature", temperature), In("pressure", pressure),
                      In("moleNumbers", moleNumbers, kDoubles), InFlags("fFlags", fFlags),
                      Out("lnPhi", lnPhi, kDoubles), Out("lnPhiDT", lnPhiDT, kOptionalDoubles),
                      Out("lnPhiDP", lnPhiDP, kOptionalDoubles), Out("lnPhiDn", lnPhiDn, kOptionalDoubles));
    }
    STDMETHOD(CalcSinglePhaseProp)(VARIANT props, BSTR phaseLabel) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, CalcSinglePhaseProp, In("props", props, kOptionalStrings),
                      In("phaseLabel", phaseLabel));
    }
    STDMETHOD(CalcTwoPhaseProp)(VARIANT props, VARIANT phaseLabels) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, CalcTwoPhaseProp, In("props", props, kOptionalStrings),
                      In("phaseLabels", phaseLabels, kStrings));
    }
    STDMETHOD(CheckSinglePhasePropSpec)(BSTR property, BSTR phaseLabel, VARIANT_BOOL* valid) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, CheckSinglePhasePropSpec, In("property", property),
                      In("phaseLabel", phaseLabel), OutBool("valid", valid));
    }
    STDMETHOD(CheckTwoPhasePropSpec)(BSTR property, VARIANT phaseLabels, VARIANT_BOOL* valid) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, CheckTwoPhasePropSpec, In("property", property),
                      In("phaseLabels", phaseLabels, kStrings), OutBool("valid", valid));
    }
    STDMETHOD(GetSinglePhasePropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, GetSinglePhasePropList, Out("props", props, kStrings));
    }
    STDMETHOD(GetTwoPhasePropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoPropertyRoutine, GetTwoPhasePropList, Out("props", props, kStrings));
    }
};

}  // namespace zelt
