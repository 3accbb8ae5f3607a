// The interfaces through which a reaction package gets its objects: a material, through either version of
// the standard, and a reaction object, for kinetic reactions or for electrolytes.
#pragma once

#include <cape-open-thermo-context.h>

#include "samples/component/cape_errors.h"
#include "samples/reactions/reaction_model.h"

namespace zelt::sample {

class ReactionMaterialContextPart final : public CapePart<ICapeThermoMaterialContext> {
public:
    ReactionMaterialContextPart(com::Object& object, CapeErrors& errors, ReactionModel& model)
        : CapePart(object, errors, L"ICapeThermoMaterialContext"), model(model)
    {}
    STDMETHOD(SetMaterial)(IDispatch* material) override;
    STDMETHOD(UnsetMaterial)() override;

private:
    ReactionModel& model;
};

class ThermoContextPart final : public CapePart<ICapeThermoContext> {
public:
    ThermoContextPart(com::Object& object, CapeErrors& errors, ReactionModel& model)
        : CapePart(object, errors, L"ICapeThermoContext"), model(model)
    {}
    STDMETHOD(SetMaterial)(IDispatch* materialObject) override;

private:
    ReactionModel& model;
};

class KineticContextPart final : public CapePart<ICapeKineticReactionContext> {
public:
    KineticContextPart(com::Object& object, CapeErrors& errors, ReactionModel& model)
        : CapePart(object, errors, L"ICapeKineticReactionContext"), model(model)
    {}
    STDMETHOD(SetReactionObject)(IDispatch** reactionsObject) override;

private:
    ReactionModel& model;
};

class ElectrolyteContextPart final : public CapePart<ICapeElectrolyteReactionContext> {
public:
    ElectrolyteContextPart(com::Object& object, CapeErrors& errors, ReactionModel& model)
        : CapePart(object, errors, L"ICapeElectrolyteReactionContext"), model(model)
    {}
    STDMETHOD(SetReactionObject)(IDispatch** reactionsObject) override;

private:
    ReactionModel& model;
};

}  // namespace zelt::sample
