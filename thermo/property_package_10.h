// CPropertyPackage10: the proxy of a CAPE-OPEN 1.0 property package, and the root of its logged tree. The material that most
// methods work on is wrapped on its way in, anew for each logged call.
#pragma once

#include "core/exposed_object_base.h"
#include "core/persistence.h"

namespace zelt {

struct LoggedPropertyPackage10 final : LoggedInterface<ICapeThermoPropertyPackage> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(GetPhaseList)(VARIANT* phases) override
    {
        return LOGGED(ICapeThermoPropertyPackage, GetPhaseList, Out("phases", phases, kStrings));
    }
    STDMETHOD(GetComponentList)(VARIANT* compIds, VARIANT* formulae, VARIANT* name, VARIANT* boilTemps, VARIANT* molwt,
                                VARIANT* casno) override
    {
        return LOGGED(ICapeThermoPropertyPackage, GetComponentList, Out("compIds", compIds, kStrings),
                      Out("formulae", formulae, kStrings), Out("name", name, kStrings),
                      Out("boilTemps", boilTemps, kDoubles), Out("molwt", molwt, kDoubles),
                      Out("casno", casno, kStrings));
    }
    STDMETHOD(GetUniversalConstant)(IDispatch* materialObject, VARIANT props, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoPropertyPackage, GetUniversalConstant, Material(materialObject),
                      In("props", props, kOptionalStrings), Out("propVals", propVals, kVariants));
    }
    STDMETHOD(GetComponentConstant)(IDispatch* materialObject, VARIANT props, VARIANT* propVals) override
    {
        return LOGGED(ICapeThermoPropertyPackage, GetComponentConstant, Material(materialObject),
                      In("props", props, kOptionalStrings), Out("propVals", propVals, kVariants));
    }
    STDMETHOD(CalcProp)(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType) override
    {
        return LOGGED(ICapeThermoPropertyPackage, CalcProp, Material(materialObject),
                      In("props", props, kOptionalStrings), In("phases", phases, kOptionalStrings),
                      In("calcType", calcType));
    }
    STDMETHOD(CalcEquilibrium)(IDispatch* materialObject, BSTR flashType, VARIANT props) override
    {
        return LOGGED(ICapeThermoPropertyPackage, CalcEquilibrium, Material(materialObject), In("flashType", flashType),
                      In("props", props, kOptionalStrings));
    }
    STDMETHOD(PropCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override
    {
        return LOGGED(ICapeThermoPropertyPackage, PropCheck, Material(materialObject),
                      In("props", props, kOptionalStrings), Out("valid", valid, kBooleans));
    }
    STDMETHOD(ValidityCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override
    {
        return LOGGED(ICapeThermoPropertyPackage, ValidityCheck, Material(materialObject),
                      In("props", props, kOptionalStrings), ErrorIf(true, Sentence::ValidityCheckUsed),
                      Out("valid", valid));
    }
    STDMETHOD(GetPropList)(VARIANT* props) override
    {
        return LOGGED(ICapeThermoPropertyPackage, GetPropList, Out("props", props, kStrings));
    }

private:
    static WrappedIn Material(IDispatch* materialObject)
    {
        return {"materialObject", materialObject, {WrapKind::MaterialObject, ThermoVersion::CapeOpen10}};
    }
};

class CPropertyPackage10 final : public ExposedObjectBase {
public:
    CPropertyPackage10() : ExposedObjectBase(kTraits), package(*this), persistence(*this) {}

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Property Package", .servedVersion = ThermoVersion::CapeOpen10};
    LoggedPropertyPackage10 package;
    PackagePersistence persistence;
};

}  // namespace zelt
