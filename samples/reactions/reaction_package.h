// A CAPE-OPEN 1.0 reaction package: the interfaces of the standard around one ReactionModel. Holds references to the
// material, until UnsetMaterial, and the reaction object; Terminate releases both.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/reactions/chemistry_part.h"
#include "samples/reactions/context_parts.h"
#include "samples/reactions/routine_part.h"

namespace zelt::sample {

class ReactionPackage final : public com::Object {
public:
    explicit ReactionPackage(const ReactionPackageDefinition& definition = AllReactionPackages().front())
        : model(definition)
    {}

protected:
    IDispatch* ScriptInterface() override { return &chemistry; }

    // Only a package of ionic reactions offers ICapeElectrolyteReactionContext.
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry*) override
    {
        const bool electrolytes = IsEqualIID(iid, __uuidof(ICapeElectrolyteReactionContext));
        return electrolytes && !model.Definition().electrolytes ? E_NOINTERFACE : S_OK;
    }

private:
    ReactionModel model;
    CapeErrors errors{*this, L"ZeltSample.ReactionsPackage"};
    ChemistryPart chemistry{*this, errors, model};
    RoutinePart routine{*this, errors, model};
    KineticContextPart kineticContext{*this, errors, model};
    ElectrolyteContextPart electrolyteContext{*this, errors, model};
    ReactionMaterialContextPart materialContext{*this, errors, model};
    ThermoContextPart thermoContext{*this, errors, model};
    UtilitiesPart utilities{*this, errors, {}, [this] { model.Release(); }, &model.Host()};
    IdentificationPart identification{*this, errors, model.Definition().name, model.Definition().description};
};

}  // namespace zelt::sample
