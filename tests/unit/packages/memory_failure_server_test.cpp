// Failing allocations on the server's side: the managers, opening a log, the registration.
#include "com/class_factory.h"
#include "log/log_location.h"
#include "log/open_log.h"
#include "long_run.h"
#include "memory_failure.h"
#include "packages/exported_package_list.h"
#include "registration/registration.h"
#include "registration/registration_check.h"
#include "tests/system/harness/scratch_registry.h"
#include "packages/property_package_manager.h"

namespace zelt::test {
namespace {

constexpr CLSID kPackageClass = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x21}};

std::wstring placeOfLog;

// Exports a package as "Pack", with logging if there is a document; Run gets the package from a manager.
class Managing : public Answered {
public:
    explicit Managing(LogDocument* document)
    {
        static const LogSurroundings surroundings = {[] { return SYSTEMTIME(); }, [](std::wstring&) { return false; },
                                                     [](const std::wstring&, std::wstring& path) {
                                                         path = placeOfLog;
                                                         return true;
                                                     }};
        placeOfLog = TemporaryPath();
        before = SetLogSurroundings(&surroundings);
        ExportedPackages().UseRoot(scratch.Root());
        rootBefore = std::exchange(TheLogOptions().root, scratch.Root());
        promptBefore = std::exchange(TheLogOptions().promptOpenLog, false);
        auto package = std::make_unique<ExportedPackage>();
        package->classId = kPackageClass;
        package->kind = PackageKind::PropertyPackage11StandAlone;
        package->exportedName = L"Pack";
        package->loggingEnabled = document != nullptr;
        ExportedPackages().Append(std::move(package));
    }
    ~Managing()
    {
        EXPECT_EQ(0, FakePackage::alive);
        ExportedPackages().Remove(0);
        ExportedPackages().UseRoot({});
        TheLogOptions().root = rootBefore;
        TheLogOptions().promptOpenLog = promptBefore;
        SetLogSurroundings(before);
        DeleteFileW(placeOfLog.c_str());
    }
    Managing(const Managing&) = delete;
    Managing& operator=(const Managing&) = delete;

    void Run()
    {
        ComPtr<ICapeThermoPropertyPackageManager> manager;
        if (!Note(CreatePropertyPackageManager(IID_PPV_ARGS(&manager)))) return;
        _variant_t names;
        ComPtr<IDispatch> package, none;
        ComPtr<ICapeUtilities> utilities;
        Note(manager->GetPropertyPackageList(&names));
        Note(manager->GetPropertyPackage(unknownName, &none));
        if (Note(manager->GetPropertyPackage(name, &package)) && Note(package.As(&utilities)))
            Note(utilities->Initialize());
    }

private:
    const _bstr_t name = L"pack", unknownName = L"another name, which no package has";
    ScratchKey scratch;
    RegistryRoot rootBefore;
    bool promptBefore = false;
    const LogSurroundings* before = nullptr;
};

// A message box offers to remove a package that cannot be made; the answer keeps the package.
class ServerMemoryFailure : public MemoryFailure {
protected:
    ServerMemoryFailure() : before(SetMessageFunction([](const wchar_t*, const wchar_t*, UINT) -> int { return IDNO; }))
    {
        static const com::ClassEntry kClasses[] = {{kPackageClass, com::CreateDefault<FakePackage>}};
        EXPECT_EQ(S_OK, classes.Register(kClasses));
    }
    ~ServerMemoryFailure() override { SetMessageFunction(before); }

private:
    com::ClassObjects classes{CLSCTX_INPROC_SERVER};
    MessageFunction before;
};

TEST_F(ServerMemoryFailure, OfEachAllocationOfAManagerEndsInStatusCodes) { FailOneAfterAnother<Managing>(1, 10); }

TEST_F(ServerMemoryFailure, OfEachAllocationOfARegistrationLeavesNothingThatRemovalDoesNotFind)
{
    // Allocates beforehand what is allocated only once and kept.
    ASSERT_EQ(S_OK, RegisterServer(Scope::User, "1.0"));
    ASSERT_EQ(S_OK, UnregisterServer(Scope::User, "1.0"));
    const long step = std::max(1, 100 / Effort());
    int failures = 0;
    for (long successes = step / 2;; successes += step) {
        SCOPED_TRACE(successes);
        FailAllocationAfter(successes);
        const HRESULT registered = RegisterServer(Scope::User, "1.0");
        const bool hasFailed = FailAllocationAfter(-1);
        if (!hasFailed) {
            EXPECT_EQ(S_OK, registered);
            EXPECT_EQ(S_OK, UnregisterServer(Scope::User, "1.0"));
            break;
        }
        ++failures;
        EXPECT_TRUE(FAILED(registered));
        EXPECT_EQ(S_OK, UnregisterServer(Scope::User, "1.0"));
        for (const EditionClass& own : kThisEdition.classes) {
            for (const REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
                EXPECT_FALSE(LookUpEntry(Scope::User, view, ClassPath(own.classId), L"").keyExists);
            }
        }
        if (HasFailure()) break;
    }
    std::printf("%d registrations failed\n", failures);
    EXPECT_LT(10, failures);
}

}  // namespace
}  // namespace zelt::test
