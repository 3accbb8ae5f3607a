// ICapeThermoMaterialObject of a material object's proxy: the CAPE-OPEN 1.0 interface of a material.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedMaterialObject10 final : LoggedInterface<ICapeThermoMaterialObject, ThermoVersion::CapeOpen10> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(get_ComponentIds)(VARIANT* compIds) override
    {
        return LOGGED(ICapeThermoMaterialObject, get_ComponentIds, Out("compIds", compIds, kStrings));
    }
    STDMETHOD(get_PhaseIds)(VARIANT* phaseIds) override
    {
        return LOGGED(ICapeThermoMaterialObject, get_PhaseIds, Out("PhaseIds", phaseIds, kStrings));
    }
    STDMETHOD(GetUniversalConstant)(VARIANT props, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoMaterialObject, GetUniversalConstant, In("props", props, kOptionalStrings),
                      Out("propVals", propVals, kVariants));
    }
    STDMETHOD(GetComponentConstant)(VARIANT props, VARIANT compIds, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoMaterialObject, GetComponentConstant, In("props", props, kOptionalStrings),
                      In("compIds", compIds, kOptionalStrings), Out("propVals", propVals, kVariants));
    }
    STDMETHOD(CalcProp)(VARIANT props, VARIANT phases, BSTR calcType) override
    {
        return LOGGED(ICapeThermoMaterialObject, CalcProp, In("props", props, kOptionalStrings),
                      In("phases", phases, kOptionalStrings), In("calcType", calcType));
    }
    STDMETHOD(GetProp)(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis, VARIANT* results) override
    {
        return LOGGED(ICapeThermoMaterialObject, GetProp, In("property", property), In("phase", phase), NotEmpty(phase),
                      In("compIds", compIds, kOptionalStrings), In("calcType", calcType), In("basis", basis),
                      Out("results", results, kDoubles));
    }
    STDMETHOD(SetProp)(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis, VARIANT values) override
    {
        return LOGGED(ICapeThermoMaterialObject, SetProp, In("property", property), In("phase", phase),
                      In("compIds", compIds, kOptionalStrings), In("calcType", calcType), In("basis", basis),
                      NotEmpty(phase), InShownAsOut("values", values, kDoubles), ChangesObject());
    }
    STDMETHOD(CalcEquilibrium)(BSTR flashType, VARIANT props) override
    {
        return LOGGED(ICapeThermoMaterialObject, CalcEquilibrium, In("flashType", flashType),
                      In("props", props, kOptionalStrings), ChangesObject());
    }
    STDMETHOD(SetIndependentVar)(VARIANT indVars, VARIANT values) override
    {
        return LOGGED(ICapeThermoMaterialObject, SetIndependentVar, In("indVars", indVars, kStrings),
                      In("values", values, kDoubles), ChangesObject(), ErrorIf(true, Sentence::SetIndependentVarUsed));
    }
    STDMETHOD(GetIndependentVar)(VARIANT indVars, VARIANT* values) override
    {
        return LOGGED(ICapeThermoMaterialObject, GetIndependentVar, In("indVars", indVars, kStrings),
                      ErrorIf(true, Sentence::GetIndependentVarUsed), Out("values", values, kDoubles));
    }
    STDMETHOD(PropCheck)(VARIANT props, VARIANT* valid) override
    {
        return LOGGED(ICapeThermoMaterialObject, PropCheck, In("props", props, kOptionalStrings),
                      Out("valid", valid, kBooleans));
    }
    STDMETHOD(AvailableProps)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoMaterialObject, AvailableProps, Out("props", props, kStrings));
    }
    STDMETHOD(RemoveResults)(VARIANT props) override
    {
        return LOGGED(ICapeThermoMaterialObject, RemoveResults, In("props", props, kOptionalStrings), ChangesObject());
    }
    STDMETHOD(CreateMaterialObject)(IDispatch** materialObject) override
    {
        return LOGGED(
            ICapeThermoMaterialObject, CreateMaterialObject,
            WrappedOut("materialObject", materialObject, {WrapKind::MaterialObject, ThermoVersion::CapeOpen10}));
    }
    STDMETHOD(Duplicate)(IDispatch** clone) override
    {
        return LOGGED(ICapeThermoMaterialObject, Duplicate,
                      WrappedOut("clone", clone, {WrapKind::MaterialObject, ThermoVersion::CapeOpen10}));
    }
    STDMETHOD(ValidityCheck)(VARIANT props, VARIANT* relList) override
    {
        return LOGGED(ICapeThermoMaterialObject, ValidityCheck, In("props", props, kOptionalStrings),
                      ErrorIf(true, Sentence::ValidityCheckUsed), Out("relList", relList, kObjects));
    }
    STDMETHOD(GetPropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoMaterialObject, GetPropList, Out("props", props, kStrings));
    }
    STDMETHOD(GetNumComponents)(long* numComp) override
    {
        return LOGGED(ICapeThermoMaterialObject, GetNumComponents, Out("numComp", numComp));
    }

private:
    static ErrorIf NotEmpty(BSTR phase) { return {!phase || !*phase, Sentence::EmptyPhase}; }
};

}  // namespace zelt
