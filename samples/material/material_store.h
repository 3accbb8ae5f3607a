// The values of a material object, exactly as they were set. Fractions, densities, enthalpies, entropies, volumes and heat
// capacities on a mole basis can also be read on a mass basis; nothing else is converted. The interface parts of a material
// share one store, which shares the slate with the simulator. Every function that takes a label, a property or values throws
// CapeFailure when they do not fit.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "samples/material/slate.h"

namespace zelt::sample {

// A property and its basis, in lower case.
struct PropertyKey {
    std::wstring property;
    std::wstring basis;
    bool operator<(const PropertyKey& other) const
    {
        return std::tie(property, basis) < std::tie(other.property, other.basis);
    }
};
using PropertyBag = std::map<PropertyKey, std::vector<double>>;

struct PresentPhase {
    std::wstring label;  // as the slate spells it
    long status;
    PropertyBag properties;
};

struct MaterialState {
    PropertyBag overall;
    std::vector<PresentPhase> phases;
    std::map<std::pair<std::wstring, std::wstring>, PropertyBag> twoPhase;  // by both labels
};

// Called at the start of GetPresentPhases and of each method of a material that gets property values; a test may block in
// it. May be empty.
using ReadHook = std::function<void(const wchar_t* method)>;

// The package that calculates for materials, if there is one. The materials share the link; the code that set it clears
// it before the package is released.
struct PackageLink {
    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackage> package;  // CAPE-OPEN 1.0
    // CAPE-OPEN 1.1; all three or none.
    Microsoft::WRL::ComPtr<ICapeThermoMaterialContext> context;
    Microsoft::WRL::ComPtr<ICapeThermoPropertyRoutine> properties;
    Microsoft::WRL::ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
};

class MaterialStore {
public:
    MaterialStore(std::shared_ptr<const Slate> slate, ReadHook hook) : slate(std::move(slate)), hook(std::move(hook)) {}

    const std::shared_ptr<const Slate>& SharedSlate() const { return slate; }
    void OnRead(const wchar_t* method) const;

    // A label as the slate spells it.
    const std::wstring& LabelOf(std::wstring_view text) const;
    // Throws CapeFailure ("bad order of calls") for a phase that is not present.
    PresentPhase& PhaseOf(std::wstring_view label);
    std::pair<std::wstring, std::wstring> LabelPair(const VARIANT& labels) const;
    std::vector<double> Find(const PropertyBag& bag, std::wstring_view property, std::wstring_view basis) const;
    void Store(PropertyBag& bag, std::wstring_view property, std::wstring_view basis, const VARIANT& values) const;

    MaterialState state;

private:
    std::shared_ptr<const Slate> slate;
    ReadHook hook;
};

}  // namespace zelt::sample
