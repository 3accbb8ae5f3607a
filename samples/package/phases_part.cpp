#include "samples/package/phases_part.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/package_model.h"

namespace zelt::sample {

STDMETHODIMP PhasesPart::GetNumPhases(long* num)
{
    if (!num) return E_POINTER;
    *num = static_cast<long>(AllPhases().size());
    return S_OK;
}

STDMETHODIMP PhasesPart::GetPhaseInfo(BSTR phaseLabel, BSTR phaseAttribute, VARIANT* value)
{
    return Call(L"GetPhaseInfo", [&] {
        const PhaseDefinition& phase = PhaseOf(TextOf(phaseLabel));
        const std::wstring_view attribute = TextOf(phaseAttribute);
        if (SameName(attribute, L"StateOfAggregation")) {
            Return(value, MakeText(phase.stateOfAggregation));
        } else if (SameName(attribute, L"DensityDescription")) {
            Return(value, MakeText(phase.densityDescription));
        } else if (SameName(attribute, L"UserDescription")) {
            Return(value, MakeText(phase.userDescription));
        } else if (SameName(attribute, L"KeyCompoundId") || SameName(attribute, L"ExcludedCompoundId") ||
                   SameName(attribute, L"TypeOfSolid")) {
            Return(value, _variant_t());
        } else {
            throw CapeFailure(ECapeInvalidArgumentHR, L"There is no phase attribute " + Quoted(attribute));
        }
    });
}

STDMETHODIMP PhasesPart::GetPhaseList(VARIANT* phaseLabels, VARIANT* stateOfAggregation, VARIANT* keyCompoundId)
{
    return Call(L"GetPhaseList", [&] {
        std::vector<std::wstring> labels, states;
        for (const PhaseDefinition& phase : AllPhases()) {
            labels.emplace_back(phase.label);
            states.emplace_back(phase.stateOfAggregation);
        }
        const std::vector<std::wstring> keys(labels.size());
        Replace(phaseLabels, MakeStrings(labels));
        Replace(stateOfAggregation, MakeStrings(states));
        Replace(keyCompoundId, MakeStrings(keys));
    });
}

}  // namespace zelt::sample
