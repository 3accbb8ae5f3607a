// What every kind of package has besides its calculations: parameters that its user may set, and the context of
// the simulator that hosts it. A package has one PackageHost as a member, which holds the context from
// put_simulationContext to Terminate.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "samples/component/context_view.h"
#include "samples/component/parameter.h"

namespace zelt::sample {

enum class Generation { kCapeOpen10, kCapeOpen11 };

class PackageHost {
public:
    // `choice` is the option parameter of this kind of package; the other parameters are the same for every package.
    PackageHost(std::wstring packageName, ParameterDefinition choice);

    ParameterSet& Parameters() { return parameters; }
    const ParameterSet& Parameters() const { return parameters; }
    Microsoft::WRL::ComPtr<IDispatch> Collection() const { return parameters.Collection(name + L" parameters"); }

    void SetContext(IDispatch* context) { this->context.Set(context); }
    // With a context: tells the simulator, at level 1, that the package is ready, with the simulator's name if it is known.
    void Initialize() const;
    void Terminate();

    // At the first call with a context: makes a material from the simulator's first template, reads it through the
    // interfaces of `generation`, and tells the simulator, at level 1, which of the material's compounds `knows` rejects.
    // Until Terminate, later calls do nothing.
    void CheckTemplate(Generation generation, const std::function<bool(const std::wstring&)>& knows);

    // Throws CapeFailure when the user's limits do not allow a calculation at this state, or a limit is itself invalid.
    void CheckState(double temperature, double pressure, std::span<const double> fractions) const;

    // Writes to the simulator's log if the user wants messages of this level: 1 for a run's milestones, 2 for each
    // calculation.
    void Tell(long level, const std::wstring& message) const;

private:
    std::wstring name;
    ParameterSet parameters;
    ContextView context;
    bool templateChecked = false;
};

// The ids of a material's compounds, read through the interface of `generation`; empty when the material lacks it.
// Throws CapeFailure when the reading fails.
std::vector<std::wstring> CompoundIdsOf(IDispatch* material, Generation generation);

}  // namespace zelt::sample
