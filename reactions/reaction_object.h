// CReactionObject: the proxy of a reaction object, which a reaction package or unit operation is given. The materials that are
// set on it come from the same side as the object, so they are not wrapped.
#pragma once

#include <cape-open-thermo-context.h>

#include "reactions/reaction_interfaces.h"

namespace zelt {

struct LoggedReactionProperties final : LoggedInterface<ICapeReactionProperties> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(GetReactionProp)(BSTR property, BSTR phase, VARIANT reacIds, BSTR basis, VARIANT* propVals) override
    {
        return LOGGED(ICapeReactionProperties, GetReactionProp, In("property", property), In("phase", phase),
                      In("reacIds", reacIds, kOptionalStrings), In("basis", basis),
                      Out("propVals", propVals, kDoubles));
    }
    STDMETHOD(SetReactionProp)(BSTR property, BSTR phase, VARIANT reacIds, BSTR basis, VARIANT propVals) override
    {
        return LOGGED(ICapeReactionProperties, SetReactionProp, In("property", property), In("phase", phase),
                      In("reacIds", reacIds, kOptionalStrings), In("basis", basis), In("propVals", propVals, kDoubles),
                      ChangesObject());
    }
};

struct LoggedObjectMaterialContext final : LoggedInterface<ICapeThermoMaterialContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetMaterial)(IDispatch* material) override
    {
        return LOGGED(ICapeThermoMaterialContext, SetMaterial, InObject("material", material), ChangesObject(),
                      ErrorIf(!material, Sentence::NullMaterial10));
    }
    STDMETHOD(UnsetMaterial)() override { return LOGGED(ICapeThermoMaterialContext, UnsetMaterial, ChangesObject()); }
};

struct LoggedObjectThermoContext final : LoggedInterface<ICapeThermoContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetMaterial)(IDispatch* material) override
    {
        return LOGGED_AS(kSetMaterial10, ICapeThermoContext, SetMaterial, InObject("material", material),
                         ChangesObject());
    }
};

class CReactionObject final : public ExposedObjectBase {
public:
    CReactionObject()
        : ExposedObjectBase(kTraits),
          chemistry(*this),
          properties(*this),
          routine(*this),
          materialContext(*this),
          thermoContext(*this)
    {}

protected:
    IDispatch* ScriptInterface() override { return &properties; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Reaction Object"};
    LoggedReactionChemistry chemistry;
    LoggedReactionProperties properties;
    LoggedReactionsRoutine routine;
    LoggedObjectMaterialContext materialContext;
    LoggedObjectThermoContext thermoContext;
};

}  // namespace zelt
