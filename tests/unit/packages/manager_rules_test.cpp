// What the package managers do besides returning packages: their complete set of interfaces, the contexts in which they
// create foreign components, and what a caller gets for an unexpected failure or a wrong late-bound call.
#include <windows.h>
#include <oleauto.h>

#include <set>

#include "com/class_factory.h"
#include "com/type_info.h"
#include "log/hr_name.h"
#include "log/log_location.h"
#include "system/narrow.h"
#include "system/system_text.h"
#include "fakes.h"
#include "proxy_fixture.h"
#include "recorded_messages.h"
#include "packages/exported_package_list.h"
#include "tests/system/harness/scratch_registry.h"
#include "packages/property_package_manager.h"
#include "packages/reaction_package_manager.h"
#include "packages/thermo_system.h"

namespace zelt::test {
namespace {

constexpr CLSID kPackage = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x41}};
constexpr CLSID kManager = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x42}};

class ForeignPackage final : public FakeObject {
protected:
    IDispatch* ScriptInterface() override
    {
        return static_cast<ICapeIdentification*>(FindInterface(__uuidof(ICapeIdentification))->Pointer());
    }
};

// One manager of all three kinds.
class ForeignManager final : public FakeObject {
    static HRESULT Give(IDispatch** package)
    {
        return com::Create<ForeignPackage>(IID_IDispatch, reinterpret_cast<void**>(package));
    }
    struct Property final : com::DualPart<ICapeThermoPropertyPackageManager> {
        using DualPart::DualPart;
        STDMETHOD(GetPropertyPackageList)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetPropertyPackage)(BSTR, IDispatch** package) override { return Give(package); }
    } property{*this};
    struct System final : com::DualPart<ICapeThermoSystem> {
        using DualPart::DualPart;
        STDMETHOD(GetPropertyPackages)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(ResolvePropertyPackage)(BSTR, IDispatch** package) override { return Give(package); }
    } system{*this};
    struct Reactions final : com::DualPart<ICapeReactionsPackageManager> {
        using DualPart::DualPart;
        STDMETHOD(GetListOfReactionsPackages)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(ResolveReactionsPackage)(BSTR, IDispatch** package) override { return Give(package); }
    } reactions{*this};
};

template <class T>
class Factory final : public com::Object {
    struct Part final : com::Part<IClassFactory> {
        using com::Part<IClassFactory>::Part;
        STDMETHOD(CreateInstance)(IUnknown*, REFIID iid, void** result) override { return com::Create<T>(iid, result); }
        STDMETHOD(LockServer)(BOOL) override { return S_OK; }
    } part{*this};
};

// A class object that COM finds only in one class context.
class OnlyIn {
public:
    OnlyIn(REFCLSID clsid, DWORD context, com::Object* factory)
    {
        const ComPtr<com::Object> hold(factory);
        EXPECT_EQ(S_OK, CoRegisterClassObject(clsid, factory, context, REGCLS_MULTI_SEPARATE, &cookie));
    }
    ~OnlyIn() { EXPECT_EQ(S_OK, CoRevokeClassObject(cookie)); }
    OnlyIn(const OnlyIn&) = delete;
    OnlyIn& operator=(const OnlyIn&) = delete;

private:
    DWORD cookie = 0;
};

struct ManagerKind {
    const char* name;
    HRESULT (*create)(REFIID, void**);
    const IID& iid;
    const char* ownInterface;
    const wchar_t* method;
    HRESULT (*get)(IUnknown*, BSTR, IDispatch**);
    PackageKind fromManager, alone;
    const wchar_t* removalPrompt;
};
void PrintTo(const ManagerKind& kind, std::ostream* out) { *out << kind.name; }

template <class I, HRESULT (STDMETHODCALLTYPE I::*method)(BSTR, IDispatch**)>
HRESULT ResolveWith(IUnknown* manager, BSTR name, IDispatch** package)
{
    return (static_cast<I*>(manager)->*method)(name, package);
}

const ManagerKind kKinds[] = {
    {"ThermoSystem", CreateThermoSystem, __uuidof(ICapeThermoSystem), "ICapeThermoSystem", L"ResolvePropertyPackage",
     ResolveWith<ICapeThermoSystem, &ICapeThermoSystem::ResolvePropertyPackage>,
     PackageKind::PropertyPackage10FromThermoSystem, PackageKind::PropertyPackage10StandAlone,
     L"\r\nRemove from list of exported property packages?"},
    {"PropertyPackageManager", CreatePropertyPackageManager, __uuidof(ICapeThermoPropertyPackageManager),
     "ICapeThermoPropertyPackageManager", L"GetPropertyPackage",
     ResolveWith<ICapeThermoPropertyPackageManager, &ICapeThermoPropertyPackageManager::GetPropertyPackage>,
     PackageKind::PropertyPackage11FromManager, PackageKind::PropertyPackage11StandAlone,
     L"\r\nRemove from list of exported property packages?"},
    {"ReactionPackageManager", CreateReactionPackageManager, __uuidof(ICapeReactionsPackageManager),
     "ICapeReactionsPackageManager", L"ResolveReactionsPackage",
     ResolveWith<ICapeReactionsPackageManager, &ICapeReactionsPackageManager::ResolveReactionsPackage>,
     PackageKind::ReactionPackage10FromManager, PackageKind::ReactionPackage10StandAlone,
     L"\r\nRemove from list of exported packages?"},
};

class ManagerRules : public testing::TestWithParam<ManagerKind> {
protected:
    const ManagerKind& kind = GetParam();

    ManagerRules()
    {
        InstallWrappers();
        ExportedPackages().UseRoot({scratch.Key(), 0});
        while (ExportedPackages().Count()) ExportedPackages().Remove(0);
        TheLogOptions().root = {scratch.Key(), 0};
        EXPECT_EQ(S_OK, kind.create(kind.iid, &manager));
    }
    ~ManagerRules() override
    {
        while (ExportedPackages().Count()) ExportedPackages().Remove(0);
        ExportedPackages().UseRoot({});
        TheLogOptions() = {};
        SetLogSurroundings(nullptr);
    }
    static void Export(PackageKind packageKind, const CLSID& classId, bool logged = false)
    {
        auto package = std::make_unique<ExportedPackage>();
        package->classId = classId;
        package->kind = packageKind;
        package->sourceName = L"Source";
        package->exportedName = L"P";
        package->loggingEnabled = logged;
        ExportedPackages().Append(std::move(package));
    }
    HRESULT Get() { return kind.get(manager.Get(), _bstr_t(L"P"), package.ReleaseAndGetAddressOf()); }

    ScratchKey scratch;
    ComPtr<IUnknown> manager;
    ComPtr<IDispatch> package;
};

INSTANTIATE_TEST_SUITE_P(Each, ManagerRules, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

// Checks all interfaces that the type libraries describe, and some system interfaces that a caller may ask for.
TEST_P(ManagerRules, OfferTheseInterfacesAndNoOthers)
{
    std::set<std::string> offered;
    for (int number = 1; number <= com::CountTypeLibraries(); ++number) {
        ComPtr<ITypeLib> library;
        ASSERT_EQ(S_OK, com::LoadModuleTypeLibrary(number, &library));
        for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
            ComPtr<ITypeInfo> info;
            ASSERT_EQ(S_OK, library->GetTypeInfo(index, &info));
            TYPEATTR* attributes = nullptr;
            ASSERT_EQ(S_OK, info->GetTypeAttr(&attributes));
            const IID iid = attributes->guid;
            info->ReleaseTypeAttr(attributes);
            ComPtr<IUnknown> answer;
            if (FAILED(manager->QueryInterface(iid, reinterpret_cast<void**>(answer.GetAddressOf())))) continue;
            BSTR name = nullptr;
            ASSERT_EQ(S_OK, info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr));
            offered.insert(Narrow(TextOf(name)));
            SysFreeString(name);
        }
    }
    EXPECT_EQ((std::set<std::string>{kind.ownInterface, "ICapeIdentification", "ICapeUtilities", "ECapeRoot",
                                     "ECapeUser", "ECapeUnknown", "ECapeInvalidArgument", "ECapeFailedInitialisation"}),
              offered);
    for (const IID& iid : {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo}) {
        ComPtr<IUnknown> answer;
        EXPECT_EQ(S_OK, manager->QueryInterface(iid, reinterpret_cast<void**>(answer.GetAddressOf())));
    }
    for (const IID& iid : {IID_IPersist, IID_IPersistStream, IID_IProvideClassInfo, IID_IMarshal}) {
        void* answer = this;
        EXPECT_EQ(E_NOINTERFACE, manager->QueryInterface(iid, &answer));
        EXPECT_EQ(nullptr, answer);
    }
}

// A component may be a DLL, a handler or a program.
TEST_P(ManagerRules, CreateInEachContext)
{
    for (const DWORD context : {CLSCTX_INPROC_SERVER, CLSCTX_INPROC_HANDLER, CLSCTX_LOCAL_SERVER}) {
        SCOPED_TRACE(context);
        const OnlyIn packages(kPackage, context, new Factory<ForeignPackage>);
        const OnlyIn managers(kManager, context, new Factory<ForeignManager>);
        for (const bool isAlone : {true, false}) {
            RecordedMessages messages(IDNO);
            Export(isAlone ? kind.alone : kind.fromManager, isAlone ? kPackage : kManager);
            EXPECT_EQ(S_OK, Get());
            EXPECT_NE(nullptr, package.Get());
            EXPECT_TRUE(messages.All().empty());
            package.Reset();
            ExportedPackages().Remove(0);
        }
    }
}

struct Unexpected {
    const char* name;
    void (*raise)();
    HRESULT meaning;
};
constexpr Unexpected kUnexpected[] = {
    {"memory", [] { throw std::bad_alloc(); }, static_cast<HRESULT>(0x8007000E)},
    {"a standard exception", [] { throw std::runtime_error("not to be shown"); }, static_cast<HRESULT>(0x8000FFFF)},
    {"any other one", [] { throw 42; }, static_cast<HRESULT>(0x8000FFFF)},
    {"a failure", [] { throw com::Failure(static_cast<HRESULT>(0x80004001)); }, static_cast<HRESULT>(0x80004001)},
};
const Unexpected* raised;

// ZELT's own code fails while it makes a package, here while it chooses the location of the log.
TEST_P(ManagerRules, ReportAnUnexpectedFailure)
{
    static const LogSurroundings surroundings = {[] { return SYSTEMTIME{}; }, [](std::wstring&) { return false; },
                                                 [](const std::wstring&, std::wstring&) {
                                                     raised->raise();
                                                     return false;
                                                 }};
    SetLogSurroundings(&surroundings);
    com::ClassObjects classes{CLSCTX_INPROC_SERVER};
    static const com::ClassEntry kClasses[] = {{kPackage, com::CreateDefault<ForeignPackage>}};
    ASSERT_EQ(S_OK, classes.Register(kClasses));
    Export(kind.alone, kPackage, true);
    constexpr auto kUnknown = static_cast<HRESULT>(0x80040501);
    for (const Unexpected& row : kUnexpected) {
        SCOPED_TRACE(row.name);
        raised = &row;
        const std::wstring text = Widen(HRName(row.meaning) + ": " + SystemText(row.meaning));
        RecordedMessages messages(IDNO);
        EXPECT_EQ(kUnknown, Get());
        EXPECT_EQ(nullptr, package.Get());
        ASSERT_EQ(1u, messages.All().size());
        EXPECT_EQ(text + kind.removalPrompt, messages.All()[0].text);
        EXPECT_EQ(L"ZELT:", messages.All()[0].caption);
        EXPECT_EQ(static_cast<UINT>(MB_YESNO | MB_ICONQUESTION | MB_TOPMOST), messages.All()[0].flags);
        EXPECT_EQ(1u, ExportedPackages().Count());

        ComPtr<ECapeUser> user;
        ComPtr<ECapeRoot> root;
        ASSERT_EQ(S_OK, manager.As(&user));
        ASSERT_EQ(S_OK, manager.As(&root));
        long code = 0;
        _bstr_t description, scope, interfaceName, name;
        EXPECT_EQ(S_OK, user->get_code(&code));
        EXPECT_EQ(kUnknown, code);
        EXPECT_EQ(S_OK, user->get_description(description.GetAddress()));
        EXPECT_EQ(text, static_cast<const wchar_t*>(description));
        EXPECT_EQ(S_OK, user->get_scope(scope.GetAddress()));
        EXPECT_STREQ(kind.method, scope);
        EXPECT_EQ(S_OK, user->get_interfaceName(interfaceName.GetAddress()));
        EXPECT_EQ(Widen(kind.ownInterface), static_cast<const wchar_t*>(interfaceName));
        EXPECT_EQ(S_OK, root->get_name(name.GetAddress()));
        EXPECT_STREQ(L"ECapeUnknown", name);
    }
}

// --- Late-bound calls.

constexpr LCID kLocale = LOCALE_INVARIANT;

TEST_P(ManagerRules, RefuseLateBoundCallsThatAreWrong)
{
    ComPtr<IDispatch> script;
    ASSERT_EQ(S_OK, manager.As(&script));
    std::wstring method = kind.method, nonsense = L"NoSuchMethod";
    LPOLESTR names[] = {nonsense.data(), method.data()};
    DISPID ids[] = {7, 7};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, script->GetIDsOfNames(IID_NULL, names, 1, kLocale, ids));
    EXPECT_EQ(DISPID_UNKNOWN, ids[0]);
    DISPID id = 0;
    ASSERT_EQ(S_OK, script->GetIDsOfNames(IID_NULL, names + 1, 1, kLocale, &id));

    _variant_t result;
    UINT wrong = 77;
    DISPPARAMS none = {};
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
              script->Invoke(0x7654, IID_NULL, kLocale, DISPATCH_METHOD, &none, &result, nullptr, &wrong));
    _variant_t three[] = {_variant_t(1L), _variant_t(2L), _variant_t(3L)};
    DISPPARAMS many = {three, nullptr, 3, 0};
    EXPECT_EQ(DISP_E_BADPARAMCOUNT,
              script->Invoke(id, IID_NULL, kLocale, DISPATCH_METHOD, &many, &result, nullptr, &wrong));
    const _variant_t array = [] {
        VARIANT value;
        value.vt = VT_ARRAY | VT_R8;
        value.parray = SafeArrayCreateVector(VT_R8, 0, 1);
        return _variant_t(value, false);
    }();
    _variant_t one[] = {array};
    DISPPARAMS mistyped = {one, nullptr, 1, 0};
    EXPECT_EQ(DISP_E_TYPEMISMATCH,
              script->Invoke(id, IID_NULL, kLocale, DISPATCH_METHOD, &mistyped, &result, nullptr, nullptr));
    EXPECT_EQ(VT_EMPTY, result.vt);
    EXPECT_EQ(E_POINTER, script->GetTypeInfoCount(nullptr));
    EXPECT_EQ(E_POINTER, script->GetTypeInfo(0, kLocale, nullptr));
}

}  // namespace
}  // namespace zelt::test
