// The three package managers with scripted foreign managers and packages, which COM creates in this process.
#include "packages/package_manager.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "checked_heap.h"
#include "com/class_factory.h"
#include "log/hr_name.h"
#include "log/log_location.h"
#include "system/narrow.h"
#include "system/system_text.h"
#include "long_run.h"
#include "proxy_fixture.h"
#include "packages/exported_package_list.h"
#include "tests/system/harness/process_figures.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/system/harness/refused_writes.h"
#include "packages/property_package_manager.h"
#include "packages/reaction_package_manager.h"
#include "packages/thermo_system.h"

namespace zelt::test {
namespace {

constexpr CLSID kForeignManager = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x01}};
constexpr CLSID kStandAlone = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x02}};
constexpr CLSID kOtherManager = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x04}};
constexpr CLSID kNowhere = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x03}};

// What the foreign manager does next, and the calls that it got.
struct Script {
    HRESULT initialize = S_OK;
    HRESULT get = S_OK;
    std::wstring description;
    bool answersNull = false;
    bool fault = false;          // in Initialize
    bool throws = false;         // when asked for the package
    std::vector<HRESULT> edits;  // what Edit returns, first to last; then E_NOTIMPL
    bool lacksUtilities = false;
    std::vector<std::string> calls;
    std::vector<std::string> ends;  // the last calls of a manager, and packages that are gone
    std::wstring requested;
    FakePackage* last = nullptr;  // alive while somebody holds it
};
Script script;

class ForeignManagerFake final : public FakeObject {
public:
    ForeignManagerFake()
    {
        errorDescription = script.description;
        if (script.lacksUtilities) Refuse(__uuidof(ICapeUtilities));
    }
    ~ForeignManagerFake() override { script.calls.push_back("released"); }

private:
    static HRESULT GetPackage(BSTR name, IDispatch** package)
    {
        script.calls.push_back("get");
        script.requested = TextOf(name);
        if (script.throws) throw 42;
        if (FAILED(script.get)) {
            *package = reinterpret_cast<IDispatch*>(0x10);  // must not be used
            return script.get;
        }
        *package = nullptr;
        if (script.answersNull) return S_OK;
        return com::Create<PackageWithDispatch>(IID_IDispatch, reinterpret_cast<void**>(package));
    }
    struct PropertyManager final : com::DualPart<ICapeThermoPropertyPackageManager> {
        using DualPart::DualPart;
        STDMETHOD(GetPropertyPackageList)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetPropertyPackage)(BSTR name, IDispatch** package) override { return GetPackage(name, package); }
    } propertyManager{*this};
    struct ThermoSystem final : com::DualPart<ICapeThermoSystem> {
        using DualPart::DualPart;
        STDMETHOD(GetPropertyPackages)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(ResolvePropertyPackage)(BSTR name, IDispatch** package) override { return GetPackage(name, package); }
    } thermoSystem{*this};
    struct ReactionManager final : com::DualPart<ICapeReactionsPackageManager> {
        using DualPart::DualPart;
        STDMETHOD(GetListOfReactionsPackages)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(ResolveReactionsPackage)(BSTR name, IDispatch** package) override
        {
            return GetPackage(name, package);
        }
    } reactionManager{*this};
    struct Utilities final : com::DualPart<ICapeUtilities> {
        using DualPart::DualPart;
        STDMETHOD(get_parameters)(IDispatch**) override { return E_NOTIMPL; }
        STDMETHOD(put_simulationContext)(IDispatch*) override { return E_NOTIMPL; }
        STDMETHOD(Initialize)() override
        {
            script.calls.push_back("Initialize");
            if (script.fault) RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
            return script.initialize;
        }
        STDMETHOD(Terminate)() override
        {
            script.calls.push_back("Terminate");
            script.ends.push_back("Terminate");
            return S_OK;
        }
        STDMETHOD(Edit)() override
        {
            script.calls.push_back("Edit");
            if (script.edits.empty()) return E_NOTIMPL;
            const HRESULT result = script.edits.front();
            script.edits.erase(script.edits.begin());
            return result;
        }
    } utilities{*this};

public:
    // A package that a script could also reach.
    class PackageWithDispatch final : public FakeObject {
    public:
        ~PackageWithDispatch() override { script.ends.push_back("package"); }

    protected:
        IDispatch* ScriptInterface() override { return Identification(); }

    private:
        IDispatch* Identification()
        {
            return static_cast<ICapeIdentification*>(FindInterface(__uuidof(ICapeIdentification))->Pointer());
        }
    };
};

// What differs between the managers.
struct ManagerUnderTest {
    const char* name;
    HRESULT (*create)(REFIID, void**);
    const IID& iid;
    HRESULT (*list)(IUnknown*, VARIANT*);
    HRESULT (*get)(IUnknown*, BSTR, IDispatch**);
    PackageKind fromManager;
    PackageKind alone;
    PackageKind foreign;  // a kind that belongs to another manager
    std::wstring scope;
    std::wstring interfaceName;
    std::wstring createManagerFailure;
    std::wstring initializeFailure;
    std::wstring standAloneFailure;
    std::wstring nullResult;
    std::wstring removalPrompt;
    std::string logDescription;
    std::wstring componentName;
    std::wstring componentDescription;
};
void PrintTo(const ManagerUnderTest& manager, std::ostream* out) { *out << manager.name; }

template <class I, HRESULT (STDMETHODCALLTYPE I::*method)(VARIANT*)>
HRESULT ListWith(IUnknown* manager, VARIANT* names)
{
    return (static_cast<I*>(manager)->*method)(names);
}
template <class I, HRESULT (STDMETHODCALLTYPE I::*method)(BSTR, IDispatch**)>
HRESULT GetWith(IUnknown* manager, BSTR name, IDispatch** package)
{
    return (static_cast<I*>(manager)->*method)(name, package);
}

const ManagerUnderTest kManagers[] = {
    {"ThermoSystem", CreateThermoSystem, __uuidof(ICapeThermoSystem),
     ListWith<ICapeThermoSystem, &ICapeThermoSystem::GetPropertyPackages>,
     GetWith<ICapeThermoSystem, &ICapeThermoSystem::ResolvePropertyPackage>,
     PackageKind::PropertyPackage10FromThermoSystem, PackageKind::PropertyPackage10StandAlone,
     PackageKind::PropertyPackage11StandAlone, L"ResolvePropertyPackage", L"ICapeThermoSystem",
     L"Failed to create thermo system: ", L"thermo system failed to initialize: ",
     L"Failed to create stand-alone property package: ", L"NULL pointer is returned for property package",
     L"\r\nRemove from list of exported property packages?", "CAPE-OPEN version 1.0 Physical Property Package",
     L"ZELT Thermo System (CAPE-OPEN 1.0)", L"Zeltora: Thermo System"},
    {"PropertyPackageManager", CreatePropertyPackageManager, __uuidof(ICapeThermoPropertyPackageManager),
     ListWith<ICapeThermoPropertyPackageManager, &ICapeThermoPropertyPackageManager::GetPropertyPackageList>,
     GetWith<ICapeThermoPropertyPackageManager, &ICapeThermoPropertyPackageManager::GetPropertyPackage>,
     PackageKind::PropertyPackage11FromManager, PackageKind::PropertyPackage11StandAlone,
     PackageKind::PropertyPackage10StandAlone, L"GetPropertyPackage", L"ICapeThermoPropertyPackageManager",
     L"Failed to create property package manager: ", L"property package manager failed to initialize: ",
     L"Failed to create stand-alone property package: ", L"NULL pointer is returned for property package",
     L"\r\nRemove from list of exported property packages?", "CAPE-OPEN version 1.1 Physical Property Package",
     L"ZELT Property Package Manager (CAPE-OPEN 1.1)", L"Zeltora: Property Package Manager"},
    {"ReactionPackageManager", CreateReactionPackageManager, __uuidof(ICapeReactionsPackageManager),
     ListWith<ICapeReactionsPackageManager, &ICapeReactionsPackageManager::GetListOfReactionsPackages>,
     GetWith<ICapeReactionsPackageManager, &ICapeReactionsPackageManager::ResolveReactionsPackage>,
     PackageKind::ReactionPackage10FromManager, PackageKind::ReactionPackage10StandAlone,
     PackageKind::PropertyPackage11FromManager, L"ResolveReactionsPackage", L"ICapeReactionsPackageManager",
     L"Failed to create reaction package manager: ", L"reaction package manager failed to initialize: ",
     L"Failed to create stand-alone reacion package: ", L"NULL pointer is returned for reaction package",
     L"\r\nRemove from list of exported packages?", "CAPE-OPEN version 1.0 Reaction Package",
     L"ZELT Reaction Package Manager (CAPE-OPEN 1.0)", L"Zeltora: Reacion Package Manager"},
};

class PackageManagerTest : public testing::TestWithParam<ManagerUnderTest> {
protected:
    const ManagerUnderTest& kind = GetParam();

    PackageManagerTest()
    {
        InstallWrappers();
        script = {};
        ExportedPackages().UseRoot({scratch.Key(), 0});
        while (ExportedPackages().Count()) ExportedPackages().Remove(0);
        TheLogOptions().root = {scratch.Key(), 0};
        TheLogOptions().promptOpenLog = false;
        EXPECT_EQ(S_OK, classes.Register(kClasses));
        EXPECT_EQ(S_OK, kind.create(kind.iid, &manager));
    }
    ~PackageManagerTest() override
    {
        while (ExportedPackages().Count()) ExportedPackages().Remove(0);
        ExportedPackages().UseRoot({});
        TheLogOptions() = {};
        SetLogSurroundings(nullptr);
    }

    static void Export(PackageKind kind, const wchar_t* name, const CLSID& classId, bool logged = false)
    {
        auto package = std::make_unique<ExportedPackage>();
        package->classId = classId;
        package->kind = kind;
        package->sourceName = L"Source";
        package->exportedName = name;
        package->loggingEnabled = logged;
        ExportedPackages().Append(std::move(package));
    }
    HRESULT Get(const wchar_t* name)
    {
        BSTR text = name ? SysAllocString(name) : nullptr;
        const HRESULT result = kind.get(manager.Get(), text, package.ReleaseAndGetAddressOf());
        SysFreeString(text);
        return result;
    }
    template <class Getter>
    std::wstring ErrorText(Getter getter)
    {
        ComPtr<ECapeUser> user;
        EXPECT_EQ(S_OK, manager.As(&user));
        BSTR text = nullptr;
        EXPECT_EQ(S_OK, (user.Get()->*getter)(&text));
        std::wstring copy(TextOf(text));
        SysFreeString(text);
        return copy;
    }
    // Checks the error in every form in which the caller can read it.
    void ExpectError(const std::wstring& description, HRESULT code, const wchar_t* className)
    {
        ComPtr<IErrorInfo> information;
        ASSERT_EQ(S_OK, GetErrorInfo(0, &information));
        BSTR text = nullptr;
        EXPECT_EQ(S_OK, information->GetDescription(&text));
        EXPECT_EQ(description, TextOf(text));
        SysFreeString(text);
        EXPECT_EQ(description, ErrorText(&ECapeUser::get_description));
        EXPECT_EQ(kind.scope, ErrorText(&ECapeUser::get_scope));
        EXPECT_EQ(kind.interfaceName, ErrorText(&ECapeUser::get_interfaceName));
        ComPtr<ECapeUser> user;
        ComPtr<ECapeRoot> root;
        manager.As(&user);
        manager.As(&root);
        long raised = 0;
        EXPECT_EQ(S_OK, user->get_code(&raised));
        EXPECT_EQ(code, raised);
        EXPECT_EQ(S_OK, root->get_name(&text));
        EXPECT_STREQ(className, text);
        SysFreeString(text);
    }
    std::vector<std::wstring> Names()
    {
        _variant_t list;
        EXPECT_EQ(S_OK, kind.list(manager.Get(), &list));
        if (list.vt == VT_EMPTY) return {};
        EXPECT_EQ(VT_ARRAY | VT_BSTR, list.vt);
        LONG lower = -1;
        SafeArrayGetLBound(list.parray, 1, &lower);
        EXPECT_EQ(0, lower);
        std::vector<std::wstring> names;
        for (ULONG i = 0; i < list.parray->rgsabound[0].cElements; ++i) {
            names.emplace_back(static_cast<BSTR*>(list.parray->pvData)[i]);
        }
        return names;
    }

    static constexpr com::ClassEntry kClasses[] = {
        {kForeignManager, com::CreateDefault<ForeignManagerFake>},
        {kOtherManager, com::CreateDefault<ForeignManagerFake>},
        {kStandAlone, com::CreateDefault<ForeignManagerFake::PackageWithDispatch>},
    };
    ScratchKey scratch;
    com::ClassObjects classes{CLSCTX_INPROC_SERVER};
    ComPtr<IUnknown> manager;
    ComPtr<IDispatch> package;
};

std::wstring logPath;
std::wstring logTitle;

void PlaceLogsAt(const std::wstring& path)
{
    logPath = path;
    static const LogSurroundings surroundings = {
        [] {
            SYSTEMTIME now;
            GetLocalTime(&now);
            return now;
        },
        [](std::wstring&) { return false; },
        [](const std::wstring& title, std::wstring& chosen) {
            logTitle = title;
            chosen = logPath;
            return !logPath.empty();
        },
    };
    SetLogSurroundings(&surroundings);
}

constexpr auto kNotAvailable = static_cast<HRESULT>(ECapeInvalidArgumentHR);
constexpr auto kCreationFailed = static_cast<HRESULT>(ECapeFailedInitialisationHR);

INSTANTIATE_TEST_SUITE_P(Each, PackageManagerTest, testing::ValuesIn(kManagers),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(PackageManagerTest, ListsItsOwnKindsInOrder)
{
    _variant_t nothing(L"overwritten");
    VARIANT out = nothing.Detach();
    SysFreeString(out.bstrVal);
    EXPECT_EQ(S_OK, kind.list(manager.Get(), &out));
    EXPECT_EQ(VT_EMPTY, out.vt);

    Export(kind.foreign, L"other", kStandAlone);
    EXPECT_TRUE(Names().empty());
    Export(kind.alone, L"B", kStandAlone);
    Export(kind.foreign, L"another", kStandAlone);
    Export(kind.fromManager, L"A", kForeignManager);
    EXPECT_EQ((std::vector<std::wstring>{L"B", L"A"}), Names());
    EXPECT_EQ(E_POINTER, kind.list(manager.Get(), nullptr));
}

TEST_P(PackageManagerTest, GetsAPackageFromItsManagerAndLetsTheManagerGo)
{
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    ASSERT_EQ(S_OK, Get(L"aROMATICS"));
    EXPECT_EQ((std::vector<std::string>{"Initialize", "get", "Terminate", "released"}), script.calls);
    EXPECT_EQ(L"Source", script.requested);
    ComPtr<ICapeIdentification> identification;
    ASSERT_EQ(S_OK, package.As(&identification));
    BSTR name = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentName(&name));
    EXPECT_STREQ(L"Aromatics", name);
    SysFreeString(name);
    // The result is a proxy, and each request makes a new one.
    ComPtr<IOriginalObject> proxy;
    EXPECT_EQ(S_OK, package.As(&proxy));
    const ComPtr<IDispatch> first = package;
    ASSERT_EQ(S_OK, Get(L"Aromatics"));
    EXPECT_NE(first.Get(), package.Get());
}

TEST_P(PackageManagerTest, KeepsTheManagerAsLongAsItsPackageIfTheUserWantsThat)
{
    TheLogOptions().keepManager = true;
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    ASSERT_EQ(S_OK, Get(L"Aromatics"));
    const std::vector<std::string> opened{"Initialize", "get"};
    EXPECT_EQ(opened, script.calls);
    // Each package has its own.
    ComPtr<IDispatch> first = package;
    ASSERT_EQ(S_OK, Get(L"Aromatics"));
    EXPECT_EQ((std::vector<std::string>{"Initialize", "get", "Initialize", "get"}), script.calls);
    script.calls.clear();
    first.Reset();
    EXPECT_EQ((std::vector<std::string>{"Terminate", "released"}), script.calls);
    package.Reset();
    EXPECT_EQ((std::vector<std::string>{"Terminate", "released", "Terminate", "released"}), script.calls);
    EXPECT_EQ((std::vector<std::string>{"package", "Terminate", "package", "Terminate"}), script.ends);
}

TEST_P(PackageManagerTest, KeepsNoManagerThatHasGivenNoPackage)
{
    TheLogOptions().keepManager = true;
    RecordedMessages messages(IDNO);
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    const std::vector<std::string> all{"Initialize", "get", "Terminate", "released"};
    script.get = E_FAIL;
    EXPECT_EQ(kCreationFailed, Get(L"Aromatics"));
    EXPECT_EQ(all, script.calls);
    script = {};
    script.answersNull = true;
    EXPECT_EQ(kCreationFailed, Get(L"Aromatics"));
    EXPECT_EQ(all, script.calls);
    EXPECT_EQ(2u, messages.All().size());
}

TEST_P(PackageManagerTest, ForwardsEditOnlyIfTheUserWantsThat)
{
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    script.edits = {S_OK};
    EXPECT_EQ(E_NOTIMPL, utilities->Edit());
    EXPECT_TRUE(script.calls.empty());

    // Stored by another program, as zeltctl does.
    LogOptions stored;
    stored.root = TheLogOptions().root;
    stored.forwardManagerEdit = true;
    ASSERT_TRUE(stored.Save(LogOption::ForwardManagerEdit));
    EXPECT_EQ(S_OK, utilities->Edit());
    EXPECT_EQ((std::vector<std::string>{"Initialize", "Edit", "Terminate", "released"}), script.calls);
}

TEST_P(PackageManagerTest, ForwardsEditToEachManagerOnce)
{
    TheLogOptions().forwardManagerEdit = true;
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    Export(kind.alone, L"Alone", kStandAlone);
    Export(kind.foreign, L"Foreign", kForeignManager);
    EXPECT_EQ(E_NOTIMPL, utilities->Edit()) << "no manager";
    EXPECT_TRUE(script.calls.empty());

    Export(kind.fromManager, L"A", kForeignManager);
    Export(kind.fromManager, L"B", kOtherManager);
    Export(kind.fromManager, L"C", kForeignManager);
    struct Case {
        std::vector<HRESULT> edits;
        HRESULT result;
    };
    const Case cases[] = {
        {{S_OK, S_OK}, S_OK},
        {{S_OK, S_FALSE}, S_OK},
        {{S_FALSE, S_OK}, S_OK},
        {{S_FALSE, S_FALSE}, S_FALSE},
        {{E_NOTIMPL, S_OK}, S_OK},
        {{S_FALSE, E_NOTIMPL}, S_FALSE},
        {{E_NOTIMPL, E_NOTIMPL}, E_NOTIMPL},
    };
    const std::vector<std::string> twice{"Initialize", "Edit", "Terminate", "released",
                                         "Initialize", "Edit", "Terminate", "released"};
    for (const Case& each : cases) {
        script.calls.clear();
        script.edits = each.edits;
        EXPECT_EQ(each.result, utilities->Edit());
        EXPECT_EQ(twice, script.calls);
    }
    script = {};
    script.lacksUtilities = true;
    EXPECT_EQ(E_NOTIMPL, utilities->Edit());
    EXPECT_EQ((std::vector<std::string>{"released", "released"}), script.calls);
}

TEST_P(PackageManagerTest, AFailingEditIsRaisedWithTheManagersWords)
{
    TheLogOptions().forwardManagerEdit = true;
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    Export(kind.fromManager, L"A", kForeignManager);
    Export(kind.fromManager, L"B", kOtherManager);
    script.description = L"The data base is locked";
    script.edits = {static_cast<HRESULT>(ECapeUnknownHR), S_OK};
    RecordedMessages messages;
    EXPECT_EQ(static_cast<HRESULT>(ECapeUnknownHR), utilities->Edit());
    EXPECT_EQ((std::vector<std::string>{"Initialize", "Edit", "Terminate", "released"}), script.calls);
    EXPECT_EQ(L"The data base is locked", ErrorText(&ECapeUser::get_description));
    EXPECT_EQ(L"Edit", ErrorText(&ECapeUser::get_scope));
    EXPECT_EQ(L"ICapeUtilities", ErrorText(&ECapeUser::get_interfaceName));

    script = {};
    script.fault = true;
    EXPECT_EQ(kCreationFailed, utilities->Edit());
    EXPECT_TRUE(ErrorText(&ECapeUser::get_description).starts_with(kind.initializeFailure));
    while (ExportedPackages().Count()) ExportedPackages().Remove(0);
    Export(kind.fromManager, L"Gone", kNowhere);
    EXPECT_EQ(kCreationFailed, utilities->Edit());
    EXPECT_EQ(kind.createManagerFailure + L"REGDB_E_CLASSNOTREG", ErrorText(&ECapeUser::get_description));
    EXPECT_TRUE(messages.All().empty()) << "nobody is asked whether to remove a package";
}

TEST_P(PackageManagerTest, PackagesThatComeAndGoLeaveNothingBehind)
{
    Export(kind.fromManager, L"Aromatics", kForeignManager, true);
    RecordedMessages messages;
    const auto live = [&](int times) {
        for (int i = 0; i < times; ++i) {
            PlaceLogsAt(logPath);
            ASSERT_EQ(S_OK, Get(L"Aromatics"));
            package.Reset();
            script.calls.clear();
            script.ends.clear();
        }
    };
    PlaceLogsAt(TemporaryPath());
    live(20);
    const HeapInUse before = HeapOfOperatorNew();
    const ProcessFigures processBefore = FiguresOf(GetCurrentProcessId());
    live(20 * Effort());
    const HeapInUse after = HeapOfOperatorNew();
    const ProcessFigures processAfter = FiguresOf(GetCurrentProcessId());
    EXPECT_EQ(before.blocks, after.blocks);
    EXPECT_EQ(before.bytes, after.bytes);
    EXPECT_EQ(processBefore.handles, processAfter.handles);
    std::printf("%d packages; before: %zu KB, after: %zu KB\n", 20 * Effort(),
                static_cast<std::size_t>(processBefore.privateBytes / 1024),
                static_cast<std::size_t>(processAfter.privateBytes / 1024));
    EXPECT_TRUE(messages.All().empty());
    DeleteFileW(logPath.c_str());
    PlaceLogsAt(L"");
}

TEST_P(PackageManagerTest, GetsAStandAlonePackage)
{
    Export(kind.alone, L"Alone", kStandAlone);
    EXPECT_EQ(S_OK, Get(L"Alone"));
    EXPECT_NE(nullptr, package.Get());
    EXPECT_TRUE(script.calls.empty());
}

TEST_P(PackageManagerTest, OfTwoPackagesOfOneNameTheFirstWins)
{
    Export(kind.foreign, L"Twin", kNowhere);  // not this manager's
    Export(kind.alone, L"twin", kStandAlone);
    Export(kind.fromManager, L"Twin", kForeignManager);
    EXPECT_EQ(S_OK, Get(L"TWIN"));
    EXPECT_TRUE(script.calls.empty());
}

TEST_P(PackageManagerTest, UnknownNameFailsWithoutAQuestion)
{
    RecordedMessages messages(IDYES);
    Export(kind.foreign, L"Other", kStandAlone);
    EXPECT_EQ(kNotAvailable, Get(L"Other"));
    EXPECT_EQ(nullptr, package.Get());
    ExpectError(L"Package with name \"Other\" is not available", kNotAvailable, L"ECapeInvalidArgument");
    EXPECT_EQ(kNotAvailable, Get(nullptr));
    ExpectError(L"Package with name \"NULL\" is not available", kNotAvailable, L"ECapeInvalidArgument");
    EXPECT_TRUE(messages.All().empty());
}

TEST_P(PackageManagerTest, NullNameMatchesAnEmptyOne)
{
    Export(kind.alone, L"", kStandAlone);
    EXPECT_EQ(S_OK, Get(nullptr));
}

struct FailureRow {
    const char* what;
    PackageKind kind;
    const CLSID& classId;
    void (*arrange)();
    std::wstring description;
    std::vector<std::string> calls;
};

TEST_P(PackageManagerTest, EachFailureHasItsText)
{
    const std::wstring notRegistered = L"REGDB_E_CLASSNOTREG";
    const FailureRow rows[] = {
        {"no such manager", kind.fromManager, kNowhere, [] {}, kind.createManagerFailure + notRegistered, {}},
        {"no such package", kind.alone, kNowhere, [] {}, kind.standAloneFailure + notRegistered, {}},
        {"no manager at all", kind.fromManager, kStandAlone, [] {}, kind.createManagerFailure + L"E_NOINTERFACE", {}},
        {"manager fails to initialize",
         kind.fromManager,
         kForeignManager,
         [] {
             script.initialize = static_cast<HRESULT>(ECapeLicenceErrorHR);
             script.description = L"licence expired";
         },
         kind.initializeFailure + L"licence expired",
         {"Initialize", "released"}},
        {"manager refuses",
         kind.fromManager,
         kForeignManager,
         [] {
             script.get = static_cast<HRESULT>(ECapeUnknownHR);
             script.description = L"no data bank";
         },
         L"no data bank",
         {"Initialize", "get", "Terminate", "released"}},
        {"manager faults while it initializes",
         kind.fromManager,
         kForeignManager,
         [] { script.fault = true; },
         kind.initializeFailure + Widen(SystemText(E_UNEXPECTED)),
         {"Initialize", "released"}},
        {"manager throws",
         kind.fromManager,
         kForeignManager,
         [] { script.throws = true; },
         Widen(SystemText(E_UNEXPECTED)),
         {"Initialize", "get", "Terminate", "released"}},
        {"null result",
         kind.fromManager,
         kForeignManager,
         [] { script.answersNull = true; },
         kind.nullResult,
         {"Initialize", "get", "Terminate", "released"}},
    };
    for (const FailureRow& row : rows) {
        SCOPED_TRACE(row.what);
        script = {};
        row.arrange();
        Export(row.kind, L"Bad", row.classId);
        RecordedMessages messages(IDNO);
        EXPECT_EQ(kCreationFailed, Get(L"Bad"));
        EXPECT_EQ(nullptr, package.Get());
        ExpectError(row.description, kCreationFailed, L"ECapeFailedInitialisation");
        EXPECT_EQ(row.calls, script.calls);
        ASSERT_EQ(1u, messages.All().size());
        EXPECT_EQ(row.description + kind.removalPrompt, messages.All()[0].text);
        EXPECT_EQ(L"ZELT:", messages.All()[0].caption);
        EXPECT_EQ(static_cast<UINT>(MB_YESNO | MB_ICONQUESTION | MB_TOPMOST), messages.All()[0].flags);
        EXPECT_EQ(1u, ExportedPackages().Count());  // No keeps it
        ExportedPackages().Remove(0);
    }
}

TEST_P(PackageManagerTest, YesRemovesTheRecordAndSavesTheList)
{
    static int refreshed;
    refreshed = 0;
    ExportedPackages().SetRefresh([] { ++refreshed; });
    Export(kind.alone, L"Keep", kStandAlone);
    Export(kind.alone, L"Bad", kNowhere);
    RecordedMessages messages(IDYES);
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    ExportedPackages().SetRefresh(nullptr);
    EXPECT_EQ(1, refreshed);
    EXPECT_EQ((std::vector<std::wstring>{L"Keep"}), Names());
    while (ExportedPackages().Count()) ExportedPackages().Remove(0);
    EXPECT_TRUE(ExportedPackages().Load());
    EXPECT_EQ((std::vector<std::wstring>{L"Keep"}), Names());
}

TEST_P(PackageManagerTest, TheUserReadsThatTheListCannotBeStored)
{
    Export(kind.alone, L"Keep", kStandAlone);
    Export(kind.alone, L"Bad", kNowhere);
    RecordedMessages messages(IDYES);
    const RefusedWrites refused;
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    ASSERT_EQ(2u, messages.All().size());
    EXPECT_EQ(L"Failed to store the list of packages in the registry: " + RefusedWrites::Reason(),
              messages.All()[1].text);
    EXPECT_EQ(L"ZELT", messages.All()[1].caption);
    EXPECT_EQ((std::vector<std::wstring>{L"Keep"}), Names());
}

// A process that only shows logs also serves the classes.
TEST_P(PackageManagerTest, WhoAsksFirstHasTheListLoaded)
{
    Export(kind.alone, L"Stored", kStandAlone);
    EXPECT_TRUE(ExportedPackages().Save());
    static int loaded;
    const auto putOff = [] {
        ExportedPackages().Remove(0);
        loaded = 0;
        ExportedPackages().LoadLater([] {
            ++loaded;
            EXPECT_TRUE(LoadPackages());
        });
    };
    putOff();
    EXPECT_EQ((std::vector<std::wstring>{L"Stored"}), Names());
    EXPECT_EQ(S_OK, Get(L"Stored"));
    EXPECT_EQ(1, loaded);
    putOff();
    EXPECT_EQ(S_OK, Get(L"Stored"));
    EXPECT_EQ((std::vector<std::wstring>{L"Stored"}), Names());
    EXPECT_EQ(1, loaded);
    putOff();
    EXPECT_EQ(kNotAvailable, Get(L"Missing"));
    EXPECT_EQ(1, loaded);
}

TEST_P(PackageManagerTest, TheManagerMayBeReleasedWhileTheListIsLoaded)
{
    static ComPtr<IUnknown>* held;
    held = std::addressof(manager);
    ExportedPackages().LoadLater([] { held->Reset(); });
    IUnknown* const raw = manager.Get();
    _variant_t list;
    EXPECT_EQ(S_OK, kind.list(raw, &list));
    EXPECT_EQ(VT_EMPTY, list.vt);
    EXPECT_EQ(nullptr, manager.Get());
}

TEST_P(PackageManagerTest, TheListMayChangeWhileTheQuestionStands)
{
    Export(kind.alone, L"First", kStandAlone);
    Export(kind.alone, L"Bad", kNowhere);
    Export(kind.alone, L"Last", kStandAlone);
    RecordedMessages messages(IDYES);
    messages.meanwhile = [] { ExportedPackages().Remove(0); };
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    EXPECT_EQ((std::vector<std::wstring>{L"Last"}), Names());

    // The record itself may be gone when the user answers.
    Export(kind.alone, L"Bad", kNowhere);
    messages.meanwhile = [] { ExportedPackages().Remove(1); };
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    EXPECT_EQ((std::vector<std::wstring>{L"Last"}), Names());
}

TEST_P(PackageManagerTest, LoggedPackageGetsALogOfItsOwn)
{
    PlaceLogsAt(TemporaryPath());
    RecordedMessages messages(IDNO);
    TheLogOptions().promptOpenLog = true;
    Export(kind.fromManager, L"Logged", kForeignManager, true);
    ASSERT_EQ(S_OK, Get(L"Logged"));
    EXPECT_EQ(L"Create log for Logged:", logTitle);
    ComPtr<ICapeIdentification> identification;
    package.As(&identification);
    BSTR text = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentDescription(&text));
    SysFreeString(text);
    identification.Reset();
    package.Reset();
    const std::string log = WithoutCarriageReturns(ReadWhole(logPath));
    EXPECT_NE(std::string::npos, log.find("<info value=\"Creating Logged\"/>\n"
                                          "<info value=\"Object type: " +
                                          kind.logDescription +
                                          "\"/>\n"
                                          "<func name=\"ICapeIdentification::get_ComponentDescription\" direc=\"in\" "
                                          "object=\"Logged\">\n"))
        << log;
    EXPECT_TRUE(log.ends_with("</zeltlogdocument>\n")) << log;
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Open log file \"" + logPath + L"\"?", messages.All()[0].text);
    DeleteFileW(logPath.c_str());
}

TEST_P(PackageManagerTest, DecliningThePlaceMeansNoLog)
{
    PlaceLogsAt(L"");
    RecordedMessages messages;
    Export(kind.alone, L"Logged", kStandAlone, true);
    EXPECT_EQ(S_OK, Get(L"Logged"));
    EXPECT_TRUE(messages.All().empty());
}

TEST_P(PackageManagerTest, LogThatCannotBeOpenedIsSaidAndThePackageComesAllTheSame)
{
    PlaceLogsAt(L"C:\\no such folder\\log.zlg");
    RecordedMessages messages;
    Export(kind.alone, L"Logged", kStandAlone, true);
    EXPECT_EQ(S_OK, Get(L"Logged"));
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Failed to open log file \"C:\\no such folder\\log.zlg\" for writing: " + Widen(std::strerror(ENOENT)) +
                  L"\r\nLogging will not be enabled",
              messages.All()[0].text);
    EXPECT_EQ(L"Error:", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[0].flags);
}

TEST_P(PackageManagerTest, SaysWhatItIs)
{
    ComPtr<ICapeIdentification> identification;
    ASSERT_EQ(S_OK, manager.As(&identification));
    BSTR text = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentName(&text));
    EXPECT_EQ(kind.componentName, text);
    SysFreeString(text);
    EXPECT_EQ(S_OK, identification->get_ComponentDescription(&text));
    EXPECT_EQ(kind.componentDescription, text);
    SysFreeString(text);
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(S_OK, utilities->Terminate());
    EXPECT_EQ(E_NOTIMPL, utilities->Edit());
    IDispatch* parameters = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, utilities->get_parameters(&parameters));
    EXPECT_EQ(nullptr, parameters);
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(S_OK, manager.As(&support));
    EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(kind.iid));
    EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(ICapeUtilities)));
}

}  // namespace
}  // namespace zelt::test
