#include "samples/material/slate.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

void RequireEqual(std::size_t a, std::size_t b, const wchar_t* what)
{
    if (a != b) throw CapeFailure(ECapeDataHR, std::wstring(L"The property package's lists differ in length: ") + what);
}

}  // namespace

std::vector<std::wstring> Slate::CompoundIds() const
{
    std::vector<std::wstring> ids;
    for (const SlateCompound& compound : compounds) ids.push_back(compound.id);
    return ids;
}

const SlateCompound* Slate::FindCompound(const std::wstring& id) const
{
    for (const SlateCompound& compound : compounds) {
        if (SameName(compound.id, id)) return &compound;
    }
    return nullptr;
}

const SlatePhase* Slate::FindPhase(const std::wstring& label) const
{
    for (const SlatePhase& phase : phases) {
        if (SameName(phase.label, label)) return &phase;
    }
    return nullptr;
}

namespace {

// The six lists in which both versions of the standard return the compounds.
struct CompoundLists {
    _variant_t ids, formulae, names, boilingPoints, weights, numbers;

    std::vector<SlateCompound> Compounds() const
    {
        const auto idList = ReadStrings(ids, L"compIds"), formulaList = ReadStrings(formulae, L"formulae"),
                   nameList = ReadStrings(names, L"names"), numberList = ReadStrings(numbers, L"casnos");
        const auto boilingPointList = ReadDoubles(boilingPoints, L"boilTemps"),
                   weightList = ReadDoubles(weights, L"molwts");
        RequireEqual(idList.size(), formulaList.size(), L"formulae");
        RequireEqual(idList.size(), nameList.size(), L"names");
        RequireEqual(idList.size(), boilingPointList.size(), L"boilTemps");
        RequireEqual(idList.size(), weightList.size(), L"molwts");
        RequireEqual(idList.size(), numberList.size(), L"casnos");
        std::vector<SlateCompound> compounds;
        for (std::size_t i = 0; i < idList.size(); ++i) {
            compounds.push_back(
                {idList[i], formulaList[i], nameList[i], boilingPointList[i], weightList[i], numberList[i]});
        }
        return compounds;
    }
};

}  // namespace

Slate ReadSlate(ICapeThermoPropertyPackage* package)
{
    Slate slate;
    CompoundLists lists;
    CheckCall(package->GetComponentList(&lists.ids, &lists.formulae, &lists.names, &lists.boilingPoints, &lists.weights,
                                        &lists.numbers),
              package, L"GetComponentList");
    slate.compounds = lists.Compounds();
    _variant_t phases;
    CheckCall(package->GetPhaseList(&phases), package, L"GetPhaseList");
    // In CAPE-OPEN 1.0, a phase's label is its state of aggregation.
    for (const std::wstring& label : ReadStrings(phases, L"phases")) slate.phases.push_back({label, label, {}});
    return slate;
}

Slate ReadSlate(ICapeThermoCompounds* compounds, ICapeThermoPhases* phases)
{
    Slate slate;
    long count = 0;
    CheckCall(compounds->GetNumCompounds(&count), compounds, L"GetNumCompounds");
    CompoundLists lists;
    CheckCall(compounds->GetCompoundList(&lists.ids, &lists.formulae, &lists.names, &lists.boilingPoints,
                                         &lists.weights, &lists.numbers),
              compounds, L"GetCompoundList");
    slate.compounds = lists.Compounds();
    RequireEqual(slate.compounds.size(), static_cast<std::size_t>(count), L"compIds");

    CheckCall(phases->GetNumPhases(&count), phases, L"GetNumPhases");
    _variant_t labels, states, keys;
    CheckCall(phases->GetPhaseList(&labels, &states, &keys), phases, L"GetPhaseList");
    const auto labelList = ReadStrings(labels, L"phaseLabels"), stateList = ReadStrings(states, L"stateOfAggregation"),
               keyList = ReadStrings(keys, L"keyCompoundId");
    RequireEqual(labelList.size(), static_cast<std::size_t>(count), L"phaseLabels");
    RequireEqual(labelList.size(), stateList.size(), L"stateOfAggregation");
    RequireEqual(labelList.size(), keyList.size(), L"keyCompoundId");
    for (std::size_t i = 0; i < labelList.size(); ++i) {
        slate.phases.push_back({labelList[i], stateList[i], keyList[i]});
    }
    return slate;
}

}  // namespace zelt::sample
