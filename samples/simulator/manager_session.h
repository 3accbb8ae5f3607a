// The class that gives packages by name, of any of the three kinds; or a package class of its own.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "samples/simulator/options.h"

namespace zelt::sample {

enum class PackageKind { kProperty11, kProperty10, kReaction };

// Created and initialised; ends with Terminate. Its kind is found out by asking for the standard's interfaces.
class ManagerSession {
public:
    ManagerSession(const CLSID& manager, bool inProcess);
    ~ManagerSession();
    ManagerSession(const ManagerSession&) = delete;
    ManagerSession& operator=(const ManagerSession&) = delete;

    // Of its packages.
    PackageKind Kind() const;
    std::wstring Name() const;
    std::vector<std::wstring> Packages() const;
    Microsoft::WRL::ComPtr<IDispatch> GetPackage(const std::wstring& name) const;

private:
    // One of the three is there.
    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackageManager> manager;
    Microsoft::WRL::ComPtr<ICapeThermoSystem> system;
    Microsoft::WRL::ComPtr<ICapeReactionsPackageManager> reactions;
    Microsoft::WRL::ComPtr<IUnknown> object;
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
};

Microsoft::WRL::ComPtr<IDispatch> CreateStandAlone(const Options& options);
// Found out by asking for the interface that only this kind has.
PackageKind KindOf(IDispatch* package);

}  // namespace zelt::sample
