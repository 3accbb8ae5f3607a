// What the simulator reads from a package once: its compounds and phases. The materials share it as constant data.
#pragma once

#include <cape-open.h>

#include <string>
#include <vector>

namespace zelt::sample {

struct SlateCompound {
    std::wstring id;
    std::wstring formula;
    std::wstring name;
    double boilingPoint;     // K, at normal pressure
    double molecularWeight;  // g/mol
    std::wstring casNumber;
};

struct SlatePhase {
    std::wstring label;
    std::wstring stateOfAggregation;
    std::wstring keyCompound;
};

struct Slate {
    std::vector<SlateCompound> compounds;
    std::vector<SlatePhase> phases;

    std::vector<std::wstring> CompoundIds() const;
    // Both compare without regard to case, and return null if there is none.
    const SlateCompound* FindCompound(const std::wstring& id) const;
    const SlatePhase* FindPhase(const std::wstring& label) const;
};

// Reads from the package through the interfaces of 1.1 or 1.0. Throws CapeFailure.
Slate ReadSlate(ICapeThermoCompounds* compounds, ICapeThermoPhases* phases);
Slate ReadSlate(ICapeThermoPropertyPackage* package);

}  // namespace zelt::sample
