// ICapeThermoMaterial of a material object's proxy: the properties of a stream.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedMaterial final : LoggedInterface<ICapeThermoMaterial, ThermoVersion::CapeOpen11> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(ClearAllProps)() override { return LOGGED(ICapeThermoMaterial, ClearAllProps, ChangesObject()); }
    STDMETHOD(CopyFromMaterial)(IDispatch** source) override
    {
        return LOGGED(ICapeThermoMaterial, CopyFromMaterial, InSlot("source", source), ChangesObject(),
                      HoldOriginal(source ? *source : nullptr));
    }
    STDMETHOD(CreateMaterial)(IDispatch** materialObject) override
    {
        return LOGGED(
            ICapeThermoMaterial, CreateMaterial,
            WrappedOut("materialObject", materialObject, {WrapKind::MaterialObject, ThermoVersion::CapeOpen11}));
    }
    STDMETHOD(GetOverallProp)(BSTR property, BSTR basis, VARIANT* results) override
    {
        return LOGGED(ICapeThermoMaterial, GetOverallProp, In("property", property), In("basis", basis),
                      Out("results", results, kDoubles));
    }
    STDMETHOD(GetOverallTPFraction)(double* temperature, double* pressure, VARIANT* composition) override
    {
        return LOGGED(ICapeThermoMaterial, GetOverallTPFraction, Out("temperature", temperature),
                      Out("pressure", pressure), Out("composition", composition, kDoubles));
    }
    STDMETHOD(GetPresentPhases)(VARIANT* phaseLabels, VARIANT* phaseStatus) override
    {
        return LOGGED(ICapeThermoMaterial, GetPresentPhases, Out("phaseLabels", phaseLabels, kStrings),
                      Out("phaseStatus", phaseStatus));
    }
    STDMETHOD(GetSinglePhaseProp)(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT* results) override
    {
        return LOGGED(ICapeThermoMaterial, GetSinglePhaseProp, In("property", property), In("phaseLabel", phaseLabel),
                      NotEmpty(phaseLabel), In("basis", basis), Out("results", results, kDoubles));
    }
    STDMETHOD(GetTPFraction)(BSTR phaseLabel, double* temperature, double* pressure, VARIANT* composition) override
    {
        return LOGGED(ICapeThermoMaterial, GetTPFraction, In("phaseLabel", phaseLabel), NotEmpty(phaseLabel),
                      Out("temperature", temperature), Out("pressure", pressure),
                      Out("composition", composition, kDoubles));
    }
    STDMETHOD(GetTwoPhaseProp)(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT* results) override
    {
        return LOGGED(ICapeThermoMaterial, GetTwoPhaseProp, In("property", property),
                      In("phaseLabels", phaseLabels, kStrings), In("basis", basis), Out("results", results, kDoubles));
    }
    STDMETHOD(SetOverallProp)(BSTR property, BSTR basis, VARIANT values) override
    {
        return LOGGED(ICapeThermoMaterial, SetOverallProp, In("property", property), In("basis", basis),
                      In("values", values, kDoubles), ChangesObject());
    }
    STDMETHOD(SetPresentPhases)(VARIANT phaseLabels, VARIANT phaseStatus) override
    {
        return LOGGED(ICapeThermoMaterial, SetPresentPhases, In("phaseLabels", phaseLabels, kStrings),
                      In("phaseStatus", phaseStatus, kAnything), ChangesObject());
    }
    STDMETHOD(SetSinglePhaseProp)(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT values) override
    {
        return LOGGED(ICapeThermoMaterial, SetSinglePhaseProp, In("property", property), In("phaseLabel", phaseLabel),
                      NotEmpty(phaseLabel), In("basis", basis), In("values", values, kDoubles), ChangesObject());
    }
    STDMETHOD(SetTwoPhaseProp)(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT values) override
    {
        return LOGGED(ICapeThermoMaterial, SetTwoPhaseProp, In("property", property),
                      In("phaseLabels", phaseLabels, kStrings), In("basis", basis), In("values", values, kDoubles),
                      ChangesObject());
    }

private:
    static ErrorIf NotEmpty(BSTR phaseLabel) { return {!phaseLabel || !*phaseLabel, Sentence::EmptyPhaseLabel}; }
};

}  // namespace zelt
