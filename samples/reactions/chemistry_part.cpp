#include "samples/reactions/chemistry_part.h"

#include <algorithm>

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

// In the order of ConcentrationBasis.
constexpr const wchar_t* kBasisNames[] = {L"molarity", L"partial pressure", L"molality"};

}  // namespace

STDMETHODIMP ChemistryPart::GetNumberOfReactions(long* nReacs)
{
    if (!nReacs) return E_POINTER;
    *nReacs = static_cast<long>(model.Reactions().size());
    return S_OK;
}

STDMETHODIMP ChemistryPart::GetReactionsIds(VARIANT* reactionIDS)
{
    return Call(L"GetReactionsIds", [&] {
        std::vector<std::wstring> ids;
        for (const ReactionEntry& entry : model.Reactions()) ids.emplace_back(entry.Definition().id);
        Return(reactionIDS, MakeStrings(ids));
    });
}

STDMETHODIMP ChemistryPart::GetReactionType(BSTR reacID, eCapeReactionType* type)
{
    if (!type) return E_POINTER;
    return Call(L"GetReactionType", [&] {
        *type = model.ReactionOf(TextOf(reacID)).Definition().kinetic ? CAPE_KINETIC : CAPE_EQUILIBRIUM;
    });
}

STDMETHODIMP ChemistryPart::GetNumberOfReactionCompounds(BSTR reacID, long* nComps)
{
    if (!nComps) return E_POINTER;
    return Call(L"GetNumberOfReactionCompounds",
                [&] { *nComps = static_cast<long>(model.ReactionOf(TextOf(reacID)).Definition().compounds.size()); });
}

STDMETHODIMP ChemistryPart::GetReactionCompoundIds(BSTR reacID, VARIANT* compIds, VARIANT* compCharge,
                                                   VARIANT* compCASNumber)
{
    return Call(L"GetReactionCompoundIds", [&] {
        std::vector<std::wstring> ids, numbers;
        std::vector<double> charges;
        for (const ReactionCompound& compound : model.ReactionOf(TextOf(reacID)).Definition().compounds) {
            ids.emplace_back(compound.id);
            charges.push_back(compound.charge);
            numbers.emplace_back(compound.casNumber);
        }
        Replace(compIds, MakeStrings(ids));
        Replace(compCharge, MakeDoubles(charges));
        Replace(compCASNumber, MakeStrings(numbers));
    });
}

STDMETHODIMP ChemistryPart::GetStoichiometricCoefficients(BSTR reacID, VARIANT* coeffs)
{
    return Call(L"GetStoichiometricCoefficients", [&] {
        std::vector<double> values;
        for (const ReactionCompound& compound : model.ReactionOf(TextOf(reacID)).Definition().compounds) {
            values.push_back(compound.coefficient);
        }
        Return(coeffs, MakeDoubles(values));
    });
}

STDMETHODIMP ChemistryPart::GetReactionPhase(BSTR reacID, BSTR* phase)
{
    return Call(L"GetReactionPhase", [&] { Return(phase, model.ReactionOf(TextOf(reacID)).Definition().phase); });
}

STDMETHODIMP ChemistryPart::GetReactionRateBasis(BSTR reacID, eCapeReactionRateBasis* rateBasis)
{
    if (!rateBasis) return E_POINTER;
    return Call(L"GetReactionRateBasis", [&] {
        model.ReactionOf(TextOf(reacID));
        *rateBasis = CAPE_HOMOGENEOUS;
    });
}

STDMETHODIMP ChemistryPart::GetReactionConcBasis(BSTR reacID, BSTR* concBasis)
{
    return Call(L"GetReactionConcBasis", [&] {
        const ConcentrationBasis basis = model.ReactionOf(TextOf(reacID)).Definition().basis;
        Return(concBasis, kBasisNames[static_cast<std::size_t>(basis)]);
    });
}

STDMETHODIMP ChemistryPart::GetBaseReactant(BSTR reacID, BSTR* baseReactantId)
{
    return Call(L"GetBaseReactant",
                [&] { Return(baseReactantId, model.ReactionOf(TextOf(reacID)).Definition().baseReactant); });
}

STDMETHODIMP ChemistryPart::GetPhaseCompounds(BSTR reacID, long* compNo, VARIANT* compIds)
{
    if (!compNo) return E_POINTER;
    return Call(L"GetPhaseCompounds", [&] {
        const std::wstring_view phase = model.ReactionOf(TextOf(reacID)).Definition().phase;
        std::vector<std::wstring> ids;
        for (const ReactionEntry& entry : model.Reactions()) {
            if (phase != entry.Definition().phase) continue;
            for (const ReactionCompound& compound : entry.Definition().compounds) {
                if (std::find(ids.begin(), ids.end(), compound.id) == ids.end()) ids.emplace_back(compound.id);
            }
        }
        Replace(compIds, MakeStrings(ids));
        *compNo = static_cast<long>(ids.size());
    });
}

STDMETHODIMP ChemistryPart::GetReactionParameters(BSTR reacID, IDispatch** parameterCollection)
{
    if (!parameterCollection) return E_POINTER;
    *parameterCollection = nullptr;
    return Call(L"GetReactionParameters", [&] {
        const ReactionEntry& entry = model.ReactionOf(TextOf(reacID));
        *parameterCollection =
            entry.Parameters().Collection(std::wstring(entry.Definition().id) + L" parameters").Detach();
    });
}

}  // namespace zelt::sample
