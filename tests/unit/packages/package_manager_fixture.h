// A package manager with scripted foreign managers and packages, which COM creates in this process.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "log/log_location.h"
#include "log/log_options.h"
#include "packages/exported_package_list.h"
#include "proxy_fixture.h"
#include "system/narrow.h"
#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {

inline constexpr CLSID kForeignManager = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x01}};
inline constexpr CLSID kStandAlone = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x02}};
inline constexpr CLSID kOtherManager = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x04}};
inline constexpr CLSID kNowhere = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x03}};

// What the foreign managers do next, and the calls that they got.
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
    std::vector<std::string> ends;  // in order, each Terminate of a manager and each destroyed package
    std::wstring requested;
};
inline Script script;

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
    // A package with the IDispatch that scripts need.
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
    PackageKind foreign;  // a kind this manager does not serve
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
inline void PrintTo(const ManagerUnderTest& manager, std::ostream* out) { *out << manager.name; }

extern const std::array<ManagerUnderTest, 3> kManagers;

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

// The path of the next log, empty for none, and the title of the last dialog that asked for a path.
inline std::wstring logPath, logTitle;
void PlaceLogsAt(const std::wstring& path);

inline constexpr auto kNotAvailable = static_cast<HRESULT>(ECapeInvalidArgumentHR);
inline constexpr auto kCreationFailed = static_cast<HRESULT>(ECapeFailedInitialisationHR);

}  // namespace zelt::test
