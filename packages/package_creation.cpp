#include "packages/package_creation.h"

#include <cape-open.h>
#include <comutil.h>

#include <memory>
#include <utility>

#include "log/error_description.h"
#include "guard/foreign_creation.h"
#include "log/hr_name.h"
#include "system/narrow.h"
#include "packages/initialized_manager.h"
#include "packages/package_failure.h"
#include "packages/package_kinds.h"
#include "packages/recorded_export.h"
#include "replay/recorded_package.h"
#include "log/recording/recorded_component.h"
#include "log/root_log.h"

namespace zelt {

using Microsoft::WRL::ComPtr;

namespace {

constexpr DWORD kAnyContext = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
constexpr HRESULT kCreationFailed = static_cast<HRESULT>(ECapeFailedInitialisationHR);
constexpr HRESULT kOtherFailure = static_cast<HRESULT>(ECapeUnknownHR);

[[noreturn]] void Fail(std::wstring description) { throw PackageFailure{kCreationFailed, std::move(description)}; }

// Creates a component; `failure` is the beginning of the error's text.
template <class I>
ForeignPtr<I> CreateComponent(REFCLSID clsid, REFIID iid, const wchar_t* failure)
{
    void* created = nullptr;
    const HRESULT result = CreateForeign(clsid, kAnyContext, iid, &created);
    if (FAILED(result)) Fail(failure + Widen(HRName(result)));
    return ForeignPtr<I>(static_cast<I*>(created));
}

// A foreign manager, initialized as long as this object lives.
struct OpenManager {
    OpenManager(const PackageFamily& family, REFCLSID classId)
        : manager(CreateComponent<IUnknown>(classId, family.foreignInterface, family.createManagerFailure)),
          initialized(manager.Get())
    {
        if (FAILED(initialized.Result())) {
            Fail(family.initializeFailure + Widen(ErrorDescription(initialized.Result(), initialized.ErrorSource())));
        }
    }

    ForeignPtr<IUnknown> manager;
    InitializedManager initialized;
};

BarePackage PackageFromManager(const PackageFamily& family, const ExportedPackage& package)
{
    const auto open = std::make_shared<OpenManager>(family, package.classId);
    BarePackage created{{}, open, {}};
    IUnknown* const manager = open->manager.Get();
    const _bstr_t name(package.sourceName.c_str());
    const HRESULT got = CallForeign([&] { return family.getForeignPackage(manager, name, created.package.Receive()); });
    // Do not trust a pointer that comes with a failure.
    if (FAILED(got)) {
        created.package.Detach();
        Fail(Widen(ErrorDescription(got, manager)));
    }
    return created;
}

BarePackage PackageFromRecording(const ExportedPackage& package)
{
    try {
        auto recording = std::make_shared<replay::RecordedPackage>(package.sourceName);
        return {QueryForeign<IDispatch>(recording->Package().Get()), {}, recording};
    } catch (const std::runtime_error& reason) {
        Fail(Widen(reason.what(), CP_UTF8));
    }
}

BarePackage CreatePackage(const PackageFamily& family, const ExportedPackage& package)
{
    const PackageKindRow* kind = FindPackageKind(package.kind);
    if (!kind || &kind->family != &family) throw PackageFailure{kOtherFailure, L"internal error"};
    if (IsEqualCLSID(package.classId, kRecordedPackageClass)) return PackageFromRecording(package);
    if (IsManager(package.kind)) return PackageFromManager(family, package);
    return {CreateComponent<IDispatch>(package.classId, IID_IDispatch, family.standAloneFailure), {}, {}};
}

void RenamePackage(IUnknown* package, const std::wstring& exportedName)
{
    const ForeignPtr<ICapeIdentification> identification = QueryForeign<ICapeIdentification>(package);
    if (!identification) return;
    const _bstr_t name(exportedName.c_str());
    AttemptForeign([&] { identification->put_ComponentName(name); });
}

}  // namespace

BarePackage CreateBarePackage(const PackageFamily& family, const ExportedPackage& package)
{
    BarePackage made = CreatePackage(family, package);
    if (!made.package) Fail(family.nullResult);
    RenamePackage(made.package.Get(), package.exportedName);
    return made;
}

// The caller's package may disappear during the call. NOLINTNEXTLINE(performance-unnecessary-value-param)
ComPtr<IDispatch> CreateExportedPackage(const PackageFamily& family, ExportedPackage package, LogOptions& options)
{
    // Another program may have changed the options. If they cannot be read, OpenRootLog says so.
    static_cast<void>(options.Load());
    BarePackage made = CreatePackage(family, package);
    if (!options.keepManager) made.manager.reset();
    const ForeignPtr<IDispatch> created = std::move(made.package);
    if (!created) Fail(family.nullResult);
    RenamePackage(created.Get(), package.exportedName);

    DocumentHold document;
    if (package.loggingEnabled) {
        document = OpenRootLog(options, package.exportedName, package.exportedName, family.logDescription);
    } else if (options.recordUnlogged) {
        document = OpenRootRecording(options, package.exportedName, family.logDescription);
    }
    RecordComponent(
        document.Get(),
        {package.classId, static_cast<std::uint32_t>(package.kind), package.sourceName, package.exportedName},
        created.Get());
    const ProxyPtr proxy = family.newProxy();
    proxy->AttachAsRoot(created.Get(), document.Get(), Narrow(package.exportedName));
    proxy->KeepUntilReleased(std::make_shared<std::pair<std::shared_ptr<void>, std::shared_ptr<void>>>(
        std::move(made.manager), std::move(made.recording)));
    if (options.handBackOriginals) proxy->HandBackOriginals();
    ComPtr<IDispatch> result;
    const HRESULT attached = proxy.CopyTo(IID_IDispatch, reinterpret_cast<void**>(result.GetAddressOf()));
    if (FAILED(attached)) throw PackageFailure{kOtherFailure, Widen(ErrorText(attached, nullptr))};
    return result;
}

HRESULT EditForeignManager(const PackageFamily& family, REFCLSID classId)
{
    const OpenManager open(family, classId);
    const ForeignPtr<ICapeUtilities> utilities = QueryForeign<ICapeUtilities>(open.manager.Get());
    if (!utilities) return E_NOTIMPL;
    const HRESULT edited = CallForeign([&] { return utilities->Edit(); });
    if (FAILED(edited) && edited != E_NOTIMPL) {
        throw PackageFailure{edited, Widen(ErrorDescription(edited, utilities.Get()))};
    }
    return edited;
}

}  // namespace zelt
