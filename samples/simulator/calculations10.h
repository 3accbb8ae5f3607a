// A property package of CAPE-OPEN 1.0 in use, and what the simulator does with it, step by step, in a fixed order. Each
// step prints its results, and throws CapeFailure when a call fails unexpectedly. For some calculations the simulator
// calls the package with the material as argument; for others it calls the material, which calls the package. Both ways are
// in use among flowsheet programs and unit operations.
#pragma once

#include "samples/simulator/component_session.h"
#include "samples/material/material.h"

namespace zelt::sample {

class PackageSession10 final : public ComponentSession {
public:
    PackageSession10(Microsoft::WRL::ComPtr<IDispatch> package, std::shared_ptr<Flowsheet> flowsheet);
    ~PackageSession10();

    // Makes a material of the package's compounds and keeps it until Close.
    void MakeMaterial(ReadHook hook);
    void Close(bool hold);

    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackage> properties;
    Microsoft::WRL::ComPtr<ICapeThermoMaterialObject> material;
    Microsoft::WRL::ComPtr<IDispatch> materialDispatch;
};

// Compounds with their constants, phases, universal constants, and the number of properties that the package calculates.
void Show10Lists(const PackageSession10& session, Report& report);
// The flashes of the 1.1 run, through the interfaces of 1.0.
void Show10Equilibria(const PackageSession10& session, Report& report);
// Properties of the mixture in each phase and of the pure compounds at the last equilibrium, and a property of a
// duplicate of the material.
void Show10Properties(const PackageSession10& session, Report& report);
// A call that must fail.
void Show10Failure(const PackageSession10& session, Report& report);

}  // namespace zelt::sample
