#include "samples/package/property_part.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/mixture_properties.h"

namespace zelt::sample {
namespace {

// Whether the first of two phase labels is the vapour's. Throws CapeFailure unless there is one label of each phase.
bool VapourFirst(const std::vector<std::wstring>& labels)
{
    if (labels.size() != 2) throw CapeFailure(ECapeInvalidArgumentHR, L"Two phase labels are needed");
    const Phase first = PhaseOf(labels[0]).phase;
    if (first == PhaseOf(labels[1]).phase) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The two phases are the same: " + Quoted(labels[0]));
    }
    return first == Phase::kVapour;
}

bool IsPhase(std::wstring_view label)
{
    for (const PhaseDefinition& phase : AllPhases()) {
        if (SameName(phase.label, label)) return true;
    }
    return false;
}

void CheckSize(std::size_t size, const IdealSolution& solution)
{
    if (size == solution.Count()) return;
    throw CapeFailure(ECapeInvalidArgumentHR, L"There are " + std::to_wstring(size) + L" amounts for " +
                                                  std::to_wstring(solution.Count()) + L" compounds");
}

}  // namespace

STDMETHODIMP PropertyPart::CalcAndGetLnPhi(BSTR phaseLabel, double temperature, double pressure, VARIANT moleNumbers,
                                           int fFlags, VARIANT* lnPhi, VARIANT* lnPhiDT, VARIANT* lnPhiDP,
                                           VARIANT* lnPhiDn)
{
    return Call(L"CalcAndGetLnPhi", [&] {
        const IdealSolution& solution = model.HasMaterial() ? model.MaterialSolution() : model.Solution();
        const Phase phase = PhaseOf(TextOf(phaseLabel)).phase;
        CheckSize(ReadDoubles(moleNumbers, L"moleNumbers").size(), solution);
        const CompoundProperties result = solution.LogFugacityCoefficient(phase, temperature, pressure);
        if (fFlags & CAPE_LOG_FUGACITY_COEFFICIENTS) Replace(lnPhi, MakeDoubles(result.value));
        if (fFlags & CAPE_T_DERIVATIVE) Replace(lnPhiDT, MakeDoubles(result.dT));
        if (fFlags & CAPE_P_DERIVATIVE) Replace(lnPhiDP, MakeDoubles(result.dP));
        if (fFlags & CAPE_MOLE_NUMBERS_DERIVATIVES) Replace(lnPhiDn, MakeDoubles(result.dn));
    });
}

STDMETHODIMP PropertyPart::CalcSinglePhaseProp(VARIANT props, BSTR phaseLabel)
{
    return Call(L"CalcSinglePhaseProp", [&] {
        const MaterialView& material = model.Material();
        const IdealSolution& solution = model.MaterialSolution();
        const PhaseDefinition& phase = PhaseOf(TextOf(phaseLabel));
        // Looks up all properties first, so that an unknown name fails before any of them is calculated.
        const std::vector<std::wstring> names = ReadStrings(props, L"props");
        std::vector<PropertyRequest> requests;
        requests.reserve(names.size());
        for (const std::wstring& name : names) requests.push_back(FindSinglePhaseProperty(name));

        const PhaseState state = material.StateOf(phase.label);
        CheckSize(state.fractions.size(), solution);
        model.Host().CheckState(state.temperature, state.pressure, state.fractions);
        const PhaseInput input{solution, phase.phase, state.temperature, state.pressure, state.fractions};
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::vector<double> values = requests[i].property->calculate(input, requests[i].derivative);
            material.SetSinglePhase(names[i].c_str(), phase.label, requests[i].property->basis, values);
        }
    });
}

STDMETHODIMP PropertyPart::CalcTwoPhaseProp(VARIANT props, VARIANT phaseLabels)
{
    return Call(L"CalcTwoPhaseProp", [&] {
        const MaterialView& material = model.Material();
        const std::vector<std::wstring> labels = ReadStrings(phaseLabels, L"phaseLabels");
        const bool vapourFirst = VapourFirst(labels);
        const PhaseState state = material.StateOf(labels[0]);
        for (const std::wstring& name : ReadStrings(props, L"props")) {
            const std::vector<double> values = CalculateTwoPhaseProperty(
                name, model.MaterialSolution(), state.temperature, state.pressure, vapourFirst);
            material.SetTwoPhase(name.c_str(), labels, L"", values);
        }
    });
}

STDMETHODIMP PropertyPart::CheckSinglePhasePropSpec(BSTR property, BSTR phaseLabel, VARIANT_BOOL* valid)
{
    if (!valid) return E_POINTER;
    *valid = IsSinglePhaseProperty(TextOf(property)) && IsPhase(TextOf(phaseLabel)) ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP PropertyPart::CheckTwoPhasePropSpec(BSTR property, VARIANT phaseLabels, VARIANT_BOOL* valid)
{
    if (!valid) return E_POINTER;
    return Call(L"CheckTwoPhasePropSpec", [&] {
        const std::vector<std::wstring> labels = ReadStrings(phaseLabels, L"phaseLabels");
        const bool phases =
            labels.size() == 2 && IsPhase(labels[0]) && IsPhase(labels[1]) && !SameName(labels[0], labels[1]);
        *valid = phases && IsTwoPhaseProperty(TextOf(property)) ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

STDMETHODIMP PropertyPart::GetSinglePhasePropList(VARIANT* props)
{
    return Call(L"GetSinglePhasePropList", [&] { Return(props, MakeStrings(SinglePhasePropertyNames())); });
}

STDMETHODIMP PropertyPart::GetTwoPhasePropList(VARIANT* props)
{
    return Call(L"GetTwoPhasePropList", [&] { Return(props, MakeStrings(TwoPhasePropertyNames())); });
}

}  // namespace zelt::sample
