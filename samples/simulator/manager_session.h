// The class that makes packages by name, of any of the three kinds; or the class of a single package.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "samples/simulator/options.h"

namespace zelt::sample {

enum class PackageKind { kProperty11, kProperty10, kReaction };

// Created and initialised; ends with Terminate. Queries for the standard's interfaces show its kind.
class ManagerSession {
public:
    ManagerSession(const CLSID& manager, bool inProcess);
    ~ManagerSession();
    ManagerSession(const ManagerSession&) = delete;
    ManagerSession& operator=(const ManagerSession&) = delete;

    // The kind of its packages.
    PackageKind Kind() const;
    std::wstring Name() const;
    std::vector<std::wstring> Packages() const;
    Microsoft::WRL::ComPtr<IDispatch> GetPackage(const std::wstring& name) const;

private:
    // Only one of the three is set.
    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackageManager> manager;
    Microsoft::WRL::ComPtr<ICapeThermoSystem> system;
    Microsoft::WRL::ComPtr<ICapeReactionsPackageManager> reactions;
    Microsoft::WRL::ComPtr<IUnknown> object;
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
};

Microsoft::WRL::ComPtr<IDispatch> CreateStandAlone(const Options& options);
// Queries for the interface that only this kind has.
PackageKind KindOf(IDispatch* package);

}  // namespace zelt::sample
