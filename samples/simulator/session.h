// One property package in use: created through its manager or on its own, asked for what it offers, given a material.
// Owns its references and gives them back in the order in which a flowsheet program does.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <memory>
#include <string>
#include <vector>

#include "samples/simulator/material.h"
#include "samples/simulator/options.h"
#include "samples/simulator/slate.h"

namespace zelt::sample {

// The manager's class, created and initialised. Ends with Terminate.
class ManagerSession {
public:
    explicit ManagerSession(const Options& options);
    ~ManagerSession();
    ManagerSession(const ManagerSession&) = delete;
    ManagerSession& operator=(const ManagerSession&) = delete;

    std::wstring Name() const;
    std::vector<std::wstring> Packages() const;
    Microsoft::WRL::ComPtr<IDispatch> GetPackage(const std::wstring& name) const;

private:
    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackageManager> manager;
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
};

// A package class of its own.
Microsoft::WRL::ComPtr<IDispatch> CreateStandAlone(const Options& options);

class PackageSession {
public:
    // Initialises the package and asks for every interface that a flowsheet program uses.
    explicit PackageSession(Microsoft::WRL::ComPtr<IDispatch> package);
    ~PackageSession();
    PackageSession(const PackageSession&) = delete;
    PackageSession& operator=(const PackageSession&) = delete;

    // Makes a material of the package's compounds and hands it over; it is kept until Close.
    void SetMaterial(ReadHook hook);
    // Takes the material back, unless `hold`; terminates and releases the package; releases the material last.
    void Close(bool hold);

    Microsoft::WRL::ComPtr<IDispatch> package;
    Microsoft::WRL::ComPtr<ICapeIdentification> identification;  // these may be null
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
    Microsoft::WRL::ComPtr<ICapeThermoPropertyRoutine> properties;
    Microsoft::WRL::ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
    Microsoft::WRL::ComPtr<ICapeThermoUniversalConstant> universalConstants;
    Microsoft::WRL::ComPtr<ICapeThermoMaterialContext> materialContext;
    Microsoft::WRL::ComPtr<ICapeThermoCompounds> compounds;  // these are required
    Microsoft::WRL::ComPtr<ICapeThermoPhases> phases;

    std::shared_ptr<const Slate> slate;
    Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
};

}  // namespace zelt::sample
