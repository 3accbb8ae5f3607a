// ICapeReactionChemistry of a reaction package: its reactions, their compounds and their parameters.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/reactions/reaction_model.h"

namespace zelt::sample {

class ChemistryPart final : public CapePart<ICapeReactionChemistry> {
public:
    ChemistryPart(com::Object& object, CapeErrors& errors, const ReactionModel& model)
        : CapePart(object, errors, L"ICapeReactionChemistry"), model(model)
    {}

    STDMETHOD(GetNumberOfReactions)(long* nReacs) override;
    STDMETHOD(GetReactionsIds)(VARIANT* reactionIDS) override;
    STDMETHOD(GetReactionType)(BSTR reacID, eCapeReactionType* type) override;
    STDMETHOD(GetNumberOfReactionCompounds)(BSTR reacID, long* nComps) override;
    STDMETHOD(GetReactionCompoundIds)(BSTR reacID, VARIANT* compIds, VARIANT* compCharge,
                                      VARIANT* compCASNumber) override;
    STDMETHOD(GetStoichiometricCoefficients)(BSTR reacID, VARIANT* coeffs) override;
    STDMETHOD(GetReactionPhase)(BSTR reacID, BSTR* phase) override;
    STDMETHOD(GetReactionRateBasis)(BSTR reacID, eCapeReactionRateBasis* rateBasis) override;
    STDMETHOD(GetReactionConcBasis)(BSTR reacID, BSTR* concBasis) override;
    STDMETHOD(GetBaseReactant)(BSTR reacID, BSTR* baseReactantId) override;
    // The compounds of all reactions of the package that take place in the same phase as this reaction.
    STDMETHOD(GetPhaseCompounds)(BSTR reacID, long* compNo, VARIANT* compIds) override;
    STDMETHOD(GetReactionParameters)(BSTR reacID, IDispatch** parameterCollection) override;

private:
    const ReactionModel& model;
};

}  // namespace zelt::sample
