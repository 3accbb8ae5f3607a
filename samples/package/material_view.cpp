#include "samples/package/material_view.h"

#include "samples/component/cape_failure.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

double Single(const std::vector<double>& values, const wchar_t* property)
{
    if (values.size() != 1) {
        throw CapeFailure(ECapeDataHR,
                          std::wstring(L"The material object does not give exactly one value for ") + property);
    }
    return values.front();
}

}  // namespace

MaterialView::MaterialView(IDispatch* object)
{
    if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(&material)))) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The material object does not implement ICapeThermoMaterial");
    }
    // Assumes that a material without a list of compounds contains the package's compounds.
    if (FAILED(object->QueryInterface(IID_PPV_ARGS(&compounds)))) compounds.Reset();
}

std::vector<std::wstring> MaterialView::CompoundIds() const
{
    if (!compounds) return {};
    _variant_t ids, formulae, names, boilingPoints, weights, numbers;
    CheckCall(compounds->GetCompoundList(&ids, &formulae, &names, &boilingPoints, &weights, &numbers), compounds.Get(),
              L"Material object");
    return ReadStrings(ids, L"compIds");
}

std::vector<std::wstring> MaterialView::PresentPhases() const
{
    _variant_t labels, status;
    CheckCall(material->GetPresentPhases(&labels, &status), material.Get(), L"Material object");
    return ReadStrings(labels, L"phaseLabels");
}

PhaseState MaterialView::StateOf(const std::wstring& phaseLabel) const
{
    PhaseState state{};
    _variant_t fractions;
    CheckCall(material->GetTPFraction(MakeBstr(phaseLabel).GetBSTR(), &state.temperature, &state.pressure, &fractions),
              material.Get(), L"Material object");
    state.fractions = ReadDoubles(fractions, L"composition");
    return state;
}

std::vector<double> MaterialView::OverallFractions() const
{
    _variant_t values;
    CheckCall(material->GetOverallProp(MakeBstr(L"fraction").GetBSTR(), MakeBstr(L"mole").GetBSTR(), &values),
              material.Get(), L"Material object");
    return ReadDoubles(values, L"results");
}

double MaterialView::Overall(const wchar_t* property, const wchar_t* basis) const
{
    _variant_t values;
    CheckCall(material->GetOverallProp(MakeBstr(property).GetBSTR(), MakeBstr(basis).GetBSTR(), &values),
              material.Get(), L"Material object");
    return Single(ReadDoubles(values, L"results"), property);
}

double MaterialView::SinglePhase(const wchar_t* property, const std::wstring& phaseLabel, const wchar_t* basis) const
{
    _variant_t values;
    CheckCall(material->GetSinglePhaseProp(MakeBstr(property).GetBSTR(), MakeBstr(phaseLabel).GetBSTR(),
                                           MakeBstr(basis).GetBSTR(), &values),
              material.Get(), L"Material object");
    return Single(ReadDoubles(values, L"results"), property);
}

void MaterialView::SetOverall(const wchar_t* property, const wchar_t* basis, std::span<const double> values) const
{
    CheckCall(material->SetOverallProp(MakeBstr(property).GetBSTR(), MakeBstr(basis).GetBSTR(), MakeDoubles(values)),
              material.Get(), L"Material object");
}

void MaterialView::SetSinglePhase(const wchar_t* property, const std::wstring& phaseLabel, const wchar_t* basis,
                                  std::span<const double> values) const
{
    CheckCall(material->SetSinglePhaseProp(MakeBstr(property).GetBSTR(), MakeBstr(phaseLabel).GetBSTR(),
                                           MakeBstr(basis).GetBSTR(), MakeDoubles(values)),
              material.Get(), L"Material object");
}

void MaterialView::SetTwoPhase(const wchar_t* property, std::span<const std::wstring> phaseLabels, const wchar_t* basis,
                               std::span<const double> values) const
{
    CheckCall(material->SetTwoPhaseProp(MakeBstr(property).GetBSTR(), MakeStrings(phaseLabels),
                                        MakeBstr(basis).GetBSTR(), MakeDoubles(values)),
              material.Get(), L"Material object");
}

void MaterialView::SetPresentPhases(std::span<const std::wstring> phaseLabels, eCapePhaseStatus status) const
{
    const std::vector<long> all(phaseLabels.size(), status);
    CheckCall(material->SetPresentPhases(MakeStrings(phaseLabels), MakeLongs(all)), material.Get(), L"Material object");
}

}  // namespace zelt::sample
