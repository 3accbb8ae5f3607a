#include "thermo/package_creation.h"

#include <cape-open.h>
#include <comutil.h>

#include "core/error_description.h"
#include "core/foreign_creation.h"
#include "core/hr_name.h"
#include "core/narrow.h"
#include "thermo/package_failure.h"
#include "unit/root_log.h"

namespace zelt {
namespace {

constexpr DWORD kAnyContext = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
constexpr HRESULT kCreationFailed = static_cast<HRESULT>(ECapeFailedInitialisationHR);
constexpr HRESULT kOtherFailure = static_cast<HRESULT>(ECapeUnknownHR);

[[noreturn]] void Fail(std::wstring description) { throw PackageFailure{kCreationFailed, std::move(description)}; }

// Creates a component; `failure` begins the error's text.
template <class I>
ForeignPtr<I> CreateComponent(REFCLSID clsid, REFIID iid, const wchar_t* failure)
{
    void* created = nullptr;
    const HRESULT result = CreateForeign(clsid, kAnyContext, iid, &created);
    if (FAILED(result)) Fail(failure + Widen(HRName(result)));
    return ForeignPtr<I>(static_cast<I*>(created));
}

// A foreign manager, initialised as long as this lives.
class ForeignManager {
public:
    ForeignManager(const ManagerRow& row, REFCLSID clsid)
        : manager(CreateComponent<IUnknown>(clsid, row.foreignInterface, row.createManagerFailure)),
          utilities(QueryForeign<ICapeUtilities>(manager.Get()))
    {
        if (!utilities) return;
        const HRESULT result = CallForeign([&] { return utilities->Initialize(); });
        if (FAILED(result)) {
            Fail(row.initializeFailure + Widen(ErrorDescription(result, utilities.Get())));
        }
    }
    ~ForeignManager()
    {
        if (utilities) CallForeign([&] { return utilities->Terminate(); });
    }
    ForeignManager(const ForeignManager&) = delete;
    ForeignManager& operator=(const ForeignManager&) = delete;

    IUnknown* Get() const { return manager.Get(); }

private:
    ForeignPtr<IUnknown> manager;
    ForeignPtr<ICapeUtilities> utilities;
};

ForeignPtr<IDispatch> PackageFromManager(const ManagerRow& row, const ExportedPackage& package)
{
    const ForeignManager manager(row, package.classId);
    const _bstr_t name(package.sourceName.c_str());
    ForeignPtr<IDispatch> result;
    const HRESULT got = CallForeign([&] { return row.getForeignPackage(manager.Get(), name, result.Receive()); });
    // A pointer that comes with a failure is not to be trusted.
    if (FAILED(got)) {
        result.Detach();
        Fail(Widen(ErrorDescription(got, manager.Get())));
    }
    return result;
}

ForeignPtr<IDispatch> CreatePackage(const ManagerRow& row, const ExportedPackage& package)
{
    if (package.kind == row.fromManager) return PackageFromManager(row, package);
    if (package.kind == row.standAlone) {
        return CreateComponent<IDispatch>(package.classId, IID_IDispatch, row.standAloneFailure);
    }
    throw PackageFailure{kOtherFailure, L"internal error"};
}

void RenamePackage(IUnknown* package, const std::wstring& exportedName)
{
    const ForeignPtr<ICapeIdentification> identification = QueryForeign<ICapeIdentification>(package);
    if (!identification) return;
    const _bstr_t name(exportedName.c_str());
    CallForeign([&] { return identification->put_ComponentName(name); });
}

}  // namespace

// The caller's package may go meanwhile. NOLINTNEXTLINE(performance-unnecessary-value-param)
IDispatch* CreateExportedPackage(const ManagerRow& row, ExportedPackage package, LogOptions& options)
{
    const ForeignPtr<IDispatch> created = CreatePackage(row, package);
    if (!created) Fail(row.nullResult);
    RenamePackage(created.Get(), package.exportedName);

    const DocumentHold document(
        package.loggingEnabled ? OpenRootLog(options, package.exportedName, package.exportedName, row.logDescription)
                               : nullptr);
    const ProxyPtr proxy(row.newProxy());
    proxy->AttachAsRoot(created.Get(), document.Get(), Narrow(package.exportedName));
    IDispatch* result = nullptr;
    const HRESULT attached = proxy.CopyTo(IID_IDispatch, reinterpret_cast<void**>(&result));
    if (FAILED(attached)) throw PackageFailure{kOtherFailure, Widen(ErrorText(attached, nullptr))};
    return result;
}

}  // namespace zelt
