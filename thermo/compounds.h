// ICapeThermoCompounds of a proxy: the compounds of a material object or property package, their constants, and their
// properties that depend on temperature or pressure.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedCompounds final : LoggedInterface<ICapeThermoCompounds, ThermoVersion::CapeOpen11> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(GetCompoundConstant)(VARIANT props, VARIANT compIds, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoCompounds, GetCompoundConstant, In("props", props, kOptionalStrings),
                      In("compIds", compIds, kOptionalStrings), Out("propVals", propVals, kVariants));
    }
    STDMETHOD(GetCompoundList)(VARIANT* compIds, VARIANT* formulae, VARIANT* names, VARIANT* boilTemps, VARIANT* molwts,
                               VARIANT* casnos) override
    {
        return LOGGED(ICapeThermoCompounds, GetCompoundList, Out("compIds", compIds, kStrings),
                      Out("formulae", formulae, kStrings), Out("names", names, kStrings),
                      Out("boilTemps", boilTemps, kDoubles), Out("molwts", molwts, kDoubles),
                      Out("casnos", casnos, kStrings));
    }
    STDMETHOD(GetConstPropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoCompounds, GetConstPropList, Out("props", props, kStrings));
    }
    STDMETHOD(GetNumCompounds)(long* num) override
    {
        return LOGGED(ICapeThermoCompounds, GetNumCompounds, Out("num", num));
    }
    STDMETHOD(GetPDependentProperty)(VARIANT props, double pressure, VARIANT compIds, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoCompounds, GetPDependentProperty, In("props", props, kOptionalStrings),
                      In("pressure", pressure), In("compIds", compIds, kOptionalStrings),
                      Out("propVals", propVals, kDoubles));
    }
    STDMETHOD(GetPDependentPropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoCompounds, GetPDependentPropList, Out("props", props, kStrings));
    }
    STDMETHOD(GetTDependentProperty)(VARIANT props, double temperature, VARIANT compIds, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoCompounds, GetTDependentProperty, In("props", props, kOptionalStrings),
                      In("temperature", temperature), In("compIds", compIds, kOptionalStrings),
                      Out("propVals", propVals, kDoubles));
    }
    STDMETHOD(GetTDependentPropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoCompounds, GetTDependentPropList, Out("props", props, kStrings));
    }
};

}  // namespace zelt
