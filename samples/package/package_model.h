// A property package without its interfaces: its name, its compounds in order, their ideal solution, and the material that
// calculations read and write. The interface parts of a package share one PackageModel.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "samples/component/package_host.h"
#include "samples/package/material_view.h"
#include "samples/thermo/flash.h"
#include "samples/thermo/ideal_solution.h"

namespace zelt::sample {

struct PackageDefinition {
    const wchar_t* name;
    const wchar_t* description;
    std::initializer_list<const wchar_t*> compounds;
    double vapourPressureFactor = 1;  // multiplies the vapour pressure of the last compound
};

// The packages that the sample offers.
std::span<const PackageDefinition> AllPackages();
// Compared without regard to case; null if there is none. Also finds "Aromatics, revised", which AllPackages does not list:
// "Aromatics" with o-xylene's vapour pressure raised by one part per million.
const PackageDefinition* FindPackage(std::wstring_view name);

struct PhaseDefinition {
    Phase phase;
    const wchar_t* label;
    const wchar_t* stateOfAggregation;
    const wchar_t* densityDescription;
    const wchar_t* userDescription;
};
std::span<const PhaseDefinition> AllPhases();
// Throws CapeFailure ("invalid argument") for an unknown label.
const PhaseDefinition& PhaseOf(std::wstring_view label);

// The standard's phase label for the overall material.
inline constexpr std::wstring_view kOverall = L"Overall";

class PackageModel {
public:
    explicit PackageModel(const PackageDefinition& definition);

    const PackageDefinition& Definition() const { return definition; }
    PackageHost& Host() { return host; }
    const PackageHost& Host() const { return host; }
    std::span<const Compound* const> Compounds() const { return compounds; }
    // The ideal solution of the compounds in the package's order.
    const IdealSolution& Solution() const { return solution; }

    // The compounds with these ids; all compounds for an empty list. Throws CapeFailure for an unknown id.
    std::vector<const Compound*> Select(std::span<const std::wstring> ids) const;

    // The phases in `allowed` that the user's parameter also allows. Throws CapeFailure if none is left.
    AllowedPhases Restrict(AllowedPhases allowed) const;
    // PackageHost::CheckTemplate for this package's compounds.
    void CheckTemplate(Generation generation);

    // Sets the active material. It may contain any of the package's compounds, in any order; from now on
    // MaterialSolution follows that order. If the material does not fit, throws CapeFailure and keeps the previous one.
    void SetMaterial(IDispatch* object);
    void UnsetMaterial();

    bool HasMaterial() const { return static_cast<bool>(material); }

    // The active material, and the ideal solution of the compounds in the material's order. Without a material, both throw
    // CapeFailure ("bad order of calls").
    const MaterialView& Material() const;
    const IdealSolution& MaterialSolution() const;

private:
    void RequireMaterial() const;

    const PackageDefinition& definition;
    PackageHost host;
    Compound lastCompound;  // with the definition's vapourPressureFactor applied
    std::vector<const Compound*> compounds;
    IdealSolution solution;
    MaterialView material;
    IdealSolution materialSolution;
};

}  // namespace zelt::sample
