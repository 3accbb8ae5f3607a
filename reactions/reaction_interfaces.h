// The reaction interfaces that packages and reaction objects share: ICapeReactionChemistry and ICapeReactionsRoutine.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedReactionChemistry final : LoggedInterface<ICapeReactionChemistry> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(GetNumberOfReactions)(long* nReacs) override
    {
        return LOGGED(ICapeReactionChemistry, GetNumberOfReactions, Out("nReacs", nReacs));
    }
    STDMETHOD(GetReactionsIds)(VARIANT* reactionIds) override
    {
        return LOGGED(ICapeReactionChemistry, GetReactionsIds, Out("reactionIDS", reactionIds, kStrings));
    }
    STDMETHOD(GetReactionType)(BSTR reacId, eCapeReactionType* type) override
    {
        return LOGGED(ICapeReactionChemistry, GetReactionType, In("reacID", reacId), Out("type", type));
    }
    STDMETHOD(GetNumberOfReactionCompounds)(BSTR reacId, long* nComps) override
    {
        return LOGGED(ICapeReactionChemistry, GetNumberOfReactionCompounds, In("reacID", reacId),
                      Out("nComps", nComps));
    }
    STDMETHOD(GetReactionCompoundIds)(BSTR reacId, VARIANT* compIds, VARIANT* compCharge,
                                      VARIANT* compCasNumber) override
    {
        return LOGGED(ICapeReactionChemistry, GetReactionCompoundIds, In("reacID", reacId),
                      Out("compIds", compIds, kStrings), Out("compCharge", compCharge, kDoubles),
                      Out("compCASNumber", compCasNumber, kStrings));
    }
    STDMETHOD(GetStoichiometricCoefficients)(BSTR reacId, VARIANT* coeffs) override
    {
        return LOGGED(ICapeReactionChemistry, GetStoichiometricCoefficients, In("reacID", reacId),
                      Out("coeffs", coeffs, kDoubles));
    }
    STDMETHOD(GetReactionPhase)(BSTR reacId, BSTR* phase) override
    {
        return LOGGED(ICapeReactionChemistry, GetReactionPhase, In("reacID", reacId), Out("phase", phase));
    }
    STDMETHOD(GetReactionRateBasis)(BSTR reacId, eCapeReactionRateBasis* rateBasis) override
    {
        return LOGGED(ICapeReactionChemistry, GetReactionRateBasis, In("reacID", reacId), Out("rateBasis", rateBasis));
    }
    STDMETHOD(GetReactionConcBasis)(BSTR reacId, BSTR* concBasis) override
    {
        return LOGGED(ICapeReactionChemistry, GetReactionConcBasis, In("reacID", reacId), Out("concBasis", concBasis));
    }
    STDMETHOD(GetBaseReactant)(BSTR reacId, BSTR* baseReactantId) override
    {
        return LOGGED(ICapeReactionChemistry, GetBaseReactant, In("reacID", reacId),
                      Out("baseReactantId", baseReactantId));
    }
    STDMETHOD(GetPhaseCompounds)(BSTR reacId, long* compNo, VARIANT* compIds) override
    {
        return LOGGED(ICapeReactionChemistry, GetPhaseCompounds, In("reacID", reacId), Out("compNo", compNo),
                      Out("compIds", compIds, kStrings));
    }
    STDMETHOD(GetReactionParameters)(BSTR reacId, IDispatch** parameters) override
    {
        return LOGGED(
            ICapeReactionChemistry, GetReactionParameters, In("reacID", reacId),
            WrappedOut("ParameterCollection", parameters, {WrapKind::ParameterCollection}, Shown::AsReturned));
    }
};

struct LoggedReactionsRoutine final : LoggedInterface<ICapeReactionsRoutine> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(CalcReactionProp)(VARIANT props, BSTR phase, VARIANT reacIds, BSTR basis) override
    {
        return LOGGED(ICapeReactionsRoutine, CalcReactionProp, In("props", props, kOptionalStrings), In("phase", phase),
                      In("reacIds", reacIds, kOptionalStrings), In("basis", basis));
    }
};

// The name that the log shows for SetMaterial of CAPE-OPEN 1.0. The version distinguishes it from the 1.1 method of the same
// name.
inline constexpr char kSetMaterial10[] = "ICapeThermoMaterialContext(v1.0)::SetMaterial";

}  // namespace zelt
