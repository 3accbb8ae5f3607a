#include "samples/simulator/material_access.h"

#include <algorithm>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {

std::vector<std::wstring> Labels(const Slate& slate)
{
    std::vector<std::wstring> labels;
    for (const SlatePhase& phase : slate.phases) labels.push_back(phase.label);
    return labels;
}

std::wstring LabelOf(const Slate& slate, const wchar_t* stateOfAggregation)
{
    for (const SlatePhase& phase : slate.phases) {
        if (SameName(phase.stateOfAggregation, stateOfAggregation)) return phase.label;
    }
    throw CapeFailure(ECapeDataHR, L"The property package has no phase in state " + std::wstring(stateOfAggregation));
}

void SetOverall(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis,
                std::span<const double> values)
{
    CheckCall(material->SetOverallProp(MakeBstr(property).GetBSTR(), MakeBstr(basis).GetBSTR(), MakeDoubles(values)),
              material, L"SetOverallProp");
}

std::vector<double> GetOverallList(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis)
{
    _variant_t values;
    CheckCall(material->GetOverallProp(MakeBstr(property).GetBSTR(), MakeBstr(basis).GetBSTR(), &values), material,
              L"GetOverallProp");
    return ReadDoubles(values, L"results");
}

double GetOverall(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis)
{
    return GetOverallList(material, property, basis).at(0);
}

std::vector<double> GetSinglePhase(ICapeThermoMaterial* material, const wchar_t* property, const std::wstring& label,
                                   const wchar_t* basis)
{
    _variant_t values;
    CheckCall(material->GetSinglePhaseProp(MakeBstr(property).GetBSTR(), MakeBstr(label).GetBSTR(),
                                           MakeBstr(basis).GetBSTR(), &values),
              material, L"GetSinglePhaseProp");
    return ReadDoubles(values, L"results");
}

void SetPhases(ICapeThermoMaterial* material, std::span<const std::wstring> labels)
{
    const std::vector<long> status(labels.size(), CAPE_UNKNOWNPHASESTATUS);
    CheckCall(material->SetPresentPhases(MakeStrings(labels), MakeLongs(status)), material, L"SetPresentPhases");
}

bool IsPresent(ICapeThermoMaterial* material, const std::wstring& label)
{
    _variant_t labels, status;
    CheckCall(material->GetPresentPhases(&labels, &status), material, L"GetPresentPhases");
    const std::vector<std::wstring> present = ReadStrings(labels, L"phaseLabels");
    return std::find(present.begin(), present.end(), label) != present.end();
}

}  // namespace zelt::sample
