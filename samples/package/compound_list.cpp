#include "samples/package/compound_list.h"

#include "samples/component/variant.h"

namespace zelt::sample {

void ReplaceCompoundList(std::span<const Compound* const> compounds, VARIANT* ids, VARIANT* formulae, VARIANT* names,
                         VARIANT* boilingPoints, VARIANT* molecularWeights, VARIANT* casNumbers)
{
    std::vector<std::wstring> idList, formulaList, nameList, numberList;
    std::vector<double> boilingPointList, weightList;
    for (const Compound* compound : compounds) {
        idList.emplace_back(compound->id);
        formulaList.emplace_back(compound->formula);
        nameList.emplace_back(compound->iupacName);
        boilingPointList.push_back(compound->normalBoilingPoint);
        weightList.push_back(compound->molecularWeight);
        numberList.emplace_back(compound->casNumber);
    }
    Replace(ids, MakeStrings(idList));
    Replace(formulae, MakeStrings(formulaList));
    Replace(names, MakeStrings(nameList));
    Replace(boilingPoints, MakeDoubles(boilingPointList));
    Replace(molecularWeights, MakeDoubles(weightList));
    Replace(casNumbers, MakeStrings(numberList));
}

}  // namespace zelt::sample
