// CReactionPackage10: the proxy of a CAPE-OPEN 1.0 reaction package, and the root of its logged tree. In a logged call,
// materials and reaction objects are wrapped on their way in.
#pragma once

#include <cape-open-thermo-context.h>

#include "core/persistence.h"
#include "reactions/reaction_interfaces.h"

namespace zelt {

struct LoggedKineticContext final : LoggedInterface<ICapeKineticReactionContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetReactionObject)(IDispatch** reactionsObject) override
    {
        return LOGGED(ICapeKineticReactionContext, SetReactionObject,
                      WrappedInSlot("reactionsObject", reactionsObject, {WrapKind::ReactionObject}), ChangesObject());
    }
};

// The method has the same name and signature as that of the kinetic context, so this is a separate part.
struct LoggedElectrolyteContext final : LoggedInterface<ICapeElectrolyteReactionContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetReactionObject)(IDispatch** reactionsObject) override
    {
        return LOGGED(ICapeElectrolyteReactionContext, SetReactionObject,
                      WrappedInSlot("reactionsObject", reactionsObject, {WrapKind::ReactionObject}), ChangesObject());
    }
};

struct LoggedReactionMaterialContext final : LoggedInterface<ICapeThermoMaterialContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetMaterial)(IDispatch* material) override
    {
        return LOGGED(ICapeThermoMaterialContext, SetMaterial,
                      WrappedIn("material", material, {WrapKind::MaterialObject, ThermoVersion::CapeOpen11}),
                      ChangesObject(), ErrorIf(!material, Sentence::NullMaterialReactions));
    }
    STDMETHOD(UnsetMaterial)() override { return LOGGED(ICapeThermoMaterialContext, UnsetMaterial, ChangesObject()); }
};

struct LoggedReactionThermoContext final : LoggedInterface<ICapeThermoContext> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(SetMaterial)(IDispatch* material) override
    {
        return LOGGED_AS(kSetMaterial10, ICapeThermoContext, SetMaterial,
                         WrappedIn("material", material, {WrapKind::MaterialObject, ThermoVersion::CapeOpen10}),
                         ChangesObject());
    }
};

class CReactionPackage10 final : public ExposedObjectBase {
public:
    CReactionPackage10()
        : ExposedObjectBase(kTraits),
          kinetic(*this),
          chemistry(*this),
          routine(*this),
          materialContext(*this),
          thermoContext(*this),
          electrolyte(*this),
          persistence(*this)
    {}

private:
    // No servedVersion: the package may use materials of either generation, so those made from templates start without one.
    static constexpr ProxyTraits kTraits = {.typeName = "Reaction Package"};
    LoggedKineticContext kinetic;
    LoggedReactionChemistry chemistry;
    LoggedReactionsRoutine routine;
    LoggedReactionMaterialContext materialContext;
    LoggedReactionThermoContext thermoContext;
    LoggedElectrolyteContext electrolyte;
    PackagePersistence persistence;
};

}  // namespace zelt
