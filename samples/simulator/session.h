// A property package of CAPE-OPEN 1.1 in use: queries its interfaces and gives it a material.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <memory>
#include <string>
#include <vector>

#include "samples/simulator/component_session.h"
#include "samples/material/material.h"
#include "samples/material/slate.h"

namespace zelt::sample {

class PackageSession final : public ComponentSession {
public:
    // Initialises the package, queries for the interfaces below, and reads the slate.
    PackageSession(Microsoft::WRL::ComPtr<IDispatch> package, std::shared_ptr<Flowsheet> flowsheet);
    ~PackageSession();

    // Makes a material of the package's compounds, passes it to the package and keeps it until Close.
    void SetMaterial(ReadHook hook);
    // Until Close, the flowsheet's new materials calculate with this package. Throws CapeFailure if it cannot.
    void ServeMaterials();
    // Unsets and releases the material, then terminates and releases the package. With `hold`, the material stays set, and
    // is released after the package.
    void Close(bool hold);

    Microsoft::WRL::ComPtr<ICapeThermoPropertyRoutine> properties;  // these four may be null
    Microsoft::WRL::ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
    Microsoft::WRL::ComPtr<ICapeThermoUniversalConstant> universalConstants;
    Microsoft::WRL::ComPtr<ICapeThermoMaterialContext> materialContext;
    Microsoft::WRL::ComPtr<ICapeThermoCompounds> compounds;  // these two are required
    Microsoft::WRL::ComPtr<ICapeThermoPhases> phases;

    std::shared_ptr<const Slate> slate;
    Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
};

}  // namespace zelt::sample
