// A reaction package without its interfaces: its reactions with their parameters, the material whose state they depend
// on, and the reaction object that receives the results. The interface parts of a package share one model. Holds a
// reference to each of the two objects until another replaces it or Release is called; UnsetMaterial releases the material.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "samples/component/package_host.h"
#include "samples/package/material_object_view.h"
#include "samples/package/material_view.h"
#include "samples/reactions/reaction.h"

namespace zelt::sample {

// A reaction of one package, with the parameters that its user may change, in SI units.
class ReactionEntry {
public:
    explicit ReactionEntry(const Reaction& reaction);

    const Reaction& Definition() const { return reaction; }
    const ParameterSet& Parameters() const { return parameters; }

    // The laws with the user's values. All four functions throw CapeFailure if the reaction is of the other kind or disabled.
    RateLaw Rate() const;
    std::vector<double> Orders() const;                   // one for each compound
    std::vector<double> EquilibriumCoefficients() const;  // of ln K
    // Added to the material's temperature for the equilibrium, K.
    double TemperatureApproach() const;

private:
    void Require(bool kinetic) const;

    const Reaction& reaction;
    ParameterSet parameters;
};

class ReactionModel {
public:
    explicit ReactionModel(const ReactionPackageDefinition& definition);

    const ReactionPackageDefinition& Definition() const { return definition; }
    PackageHost& Host() { return host; }
    const PackageHost& Host() const { return host; }
    const std::deque<ReactionEntry>& Reactions() const { return reactions; }
    // Throws CapeFailure ("invalid argument") for an unknown id.
    const ReactionEntry& ReactionOf(std::wstring_view id) const;

    // The standard pressure (Pa) that the user chose for equilibrium constants of gas reactions; none: as published.
    std::optional<double> StandardPressure() const;

    // If the new object is null or of the wrong kind, SetMaterial and SetReactionObject throw CapeFailure and keep the
    // previous one.
    void SetMaterial(IDispatch* object, Generation generation);
    void UnsetMaterial();
    void SetReactionObject(IDispatch* object);
    // Releases both objects.
    void Release();

    // Temperature, pressure and the fractions of the reaction's compounds in the reaction's phase of the material; a
    // compound that the material lacks has fraction 0. Throws CapeFailure: "bad order of calls" without a material, "out of
    // bounds" when the user's limits do not allow the state.
    PhaseState StateOf(const Reaction& reaction) const;
    // Throws CapeFailure ("bad order of calls") without a reaction object.
    ICapeReactionProperties* ReactionObject() const;

private:
    const ReactionPackageDefinition& definition;
    PackageHost host;
    std::deque<ReactionEntry> reactions;
    std::optional<MaterialView> material;
    std::optional<MaterialObjectView> olderMaterial;
    Microsoft::WRL::ComPtr<ICapeReactionProperties> reactionObject;
};

}  // namespace zelt::sample
