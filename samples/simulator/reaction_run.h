// A reaction package in use, and what the simulator does with it, step by step, in a fixed order. Each step prints its
// results, and throws CapeFailure when a call fails unexpectedly.
#pragma once

#include "samples/simulator/component_session.h"
#include "samples/material/material.h"

namespace zelt::sample {

class ReactionSession final : public ComponentSession {
public:
    // Reads the reactions. Their compounds and phases become the flowsheet's slate.
    ReactionSession(Microsoft::WRL::ComPtr<IDispatch> package, std::shared_ptr<Flowsheet> flowsheet);
    ~ReactionSession();

    // Makes a material and a reaction object, passes them to the package, and keeps them until Close.
    void SetObjects(ReadHook hook);
    void Close(bool hold);

    struct Reaction {
        std::wstring id;
        std::wstring phase;
        eCapeReactionType type;
    };

    Microsoft::WRL::ComPtr<ICapeReactionChemistry> chemistry;
    Microsoft::WRL::ComPtr<ICapeReactionsRoutine> routine;
    Microsoft::WRL::ComPtr<ICapeThermoMaterialContext> materialContext;
    std::vector<Reaction> reactions;
    Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
    Microsoft::WRL::ComPtr<IDispatch> materialDispatch;
    Microsoft::WRL::ComPtr<ICapeReactionProperties> reactionObject;
};

// Each reaction with its compounds and its parameters.
void ShowReactions(const ReactionSession& session, Report& report);
// Rates, equilibrium constants and related properties over a range of temperatures. If the package has ICapeThermoContext,
// passes the material through it and calculates again at the last temperature: the numbers must be the same.
void ShowReactionProperties(const ReactionSession& session, Report& report);
// A call that must fail.
void ShowReactionFailure(const ReactionSession& session, Report& report);

}  // namespace zelt::sample
