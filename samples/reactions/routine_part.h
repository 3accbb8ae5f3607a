// ICapeReactionsRoutine of a reaction package: reads the material's state and writes the results into the reaction object.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/reactions/reaction_model.h"

namespace zelt::sample {

class RoutinePart final : public CapePart<ICapeReactionsRoutine> {
public:
    RoutinePart(com::Object& object, CapeErrors& errors, const ReactionModel& model)
        : CapePart(object, errors, L"ICapeReactionsRoutine"), model(model)
    {}

    // One value for each reaction. An omitted list of reactions means all reactions in the phase. Writes nothing
    // unless every property of every reaction can be calculated.
    STDMETHOD(CalcReactionProp)(VARIANT props, BSTR phase, VARIANT reacIds, BSTR basis) override;

private:
    const ReactionModel& model;
};

}  // namespace zelt::sample
