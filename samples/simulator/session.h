// A property package of CAPE-OPEN 1.1 in use: asked for what it offers, given a material.
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
    // Initialises the package and asks for every interface that a flowsheet program uses.
    PackageSession(Microsoft::WRL::ComPtr<IDispatch> package, std::shared_ptr<Flowsheet> flowsheet);
    ~PackageSession();

    // Makes a material of the package's compounds and hands it over; it is kept until Close.
    void SetMaterial(ReadHook hook);
    // From here to Close the flowsheet's new materials calculate by this package. Throws CapeFailure when it cannot.
    void ServeMaterials();
    // Takes the material back, unless `hold`; terminates and releases the package; releases the material last.
    void Close(bool hold);

    Microsoft::WRL::ComPtr<ICapeThermoPropertyRoutine> properties;  // these may be null
    Microsoft::WRL::ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
    Microsoft::WRL::ComPtr<ICapeThermoUniversalConstant> universalConstants;
    Microsoft::WRL::ComPtr<ICapeThermoMaterialContext> materialContext;
    Microsoft::WRL::ComPtr<ICapeThermoCompounds> compounds;  // these are required
    Microsoft::WRL::ComPtr<ICapeThermoPhases> phases;

    std::shared_ptr<const Slate> slate;
    Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
};

}  // namespace zelt::sample
