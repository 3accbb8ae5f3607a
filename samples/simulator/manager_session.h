// Where the simulator gets its packages: from a manager, which makes them by name, or from the class of a single package.
// Either way, the packages are of one of three kinds.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "samples/simulator/options.h"

namespace zelt::sample {

enum class PackageKind { kProperty11, kProperty10, kReaction };

// A manager. If it has ICapeUtilities, the constructor initialises it, and the destructor calls Terminate.
class ManagerSession {
public:
    ManagerSession(const CLSID& manager, bool inProcess);
    ~ManagerSession();
    ManagerSession(const ManagerSession&) = delete;
    ManagerSession& operator=(const ManagerSession&) = delete;

    // The kind of the manager's packages, known from the interface that the manager has.
    PackageKind Kind() const;
    std::wstring Name() const;
    std::vector<std::wstring> Packages() const;
    Microsoft::WRL::ComPtr<IDispatch> GetPackage(const std::wstring& name) const;

private:
    // Only one of these three is set.
    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackageManager> manager;
    Microsoft::WRL::ComPtr<ICapeThermoSystem> system;
    Microsoft::WRL::ComPtr<ICapeReactionsPackageManager> reactions;
    Microsoft::WRL::ComPtr<IUnknown> object;
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
};

Microsoft::WRL::ComPtr<IDispatch> CreateStandAlone(const Options& options);
// Queries for interfaces that only one kind has. Throws CapeFailure if the package is of no known kind.
PackageKind KindOf(IDispatch* package);

}  // namespace zelt::sample
