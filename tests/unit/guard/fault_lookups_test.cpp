// Faults in calls that the proxy makes for itself: queries, names, descriptions, the last release, the report of unreleased
// objects. Also returned values that are not valid strings, arrays or objects.
#include <gtest/gtest.h>

#include <cstdio>

#include "fault_kinds.h"
#include "proxy_fixture.h"
#include "parameters/parameter_collection.h"
#include "parameters/parameter_spec.h"

namespace zelt::test {
namespace {

constexpr auto kFailure = static_cast<HRESULT>(ECapeComputationHR);

enum class Place { Nowhere, Query, Name, Description, Release };

// Which fault an object commits, and where.
struct Plan {
    Place place = Place::Nowhere;
    const FaultKind* kind = nullptr;

    void Visit(Place here) const
    {
        if (here == place) kind->act.act(kind->act.what);
    }
};

// An object with a name and an error description, which returns another object of its kind as its parameters.
class Saboteur final : public com::Object {
public:
    Plan plan;
    BSTR name = nullptr;  // returned unchanged if not null
    BSTR description = nullptr;
    ComPtr<IDispatch> parameters;
    IDispatch* wildParameters = nullptr;  // returned unchanged if not null
    VARIANT items{};                      // returned unchanged
    HRESULT result = S_OK;

    IDispatch* Face() { return &utilities; }

protected:
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry*) override
    {
        if (IsEqualIID(iid, __uuidof(ICapeUtilities))) plan.Visit(Place::Query);
        return S_OK;
    }
    void FinalRelease() override { plan.Visit(Place::Release); }

private:
    struct Identification final : com::DualPart<ICapeIdentification> {
        explicit Identification(Saboteur& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(get_ComponentName)(BSTR* out) override
        {
            owner.plan.Visit(Place::Name);
            *out = owner.name ? owner.name : SysAllocString(L"Saboteur");
            return S_OK;
        }
        STDMETHOD(put_ComponentName)(BSTR) override { return S_OK; }
        STDMETHOD(get_ComponentDescription)(BSTR*) override { return E_NOTIMPL; }
        STDMETHOD(put_ComponentDescription)(BSTR) override { return E_NOTIMPL; }
        Saboteur& owner;
    } identification{*this};
    struct Root final : com::DualPart<ECapeRoot> {
        using DualPart::DualPart;
        STDMETHOD(get_name)(BSTR* out) override
        {
            *out = SysAllocString(L"the error's name");
            return S_OK;
        }
    } root{*this};
    struct User final : com::DualPart<ECapeUser> {
        explicit User(Saboteur& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(get_code)(long*) override { return E_NOTIMPL; }
        STDMETHOD(get_description)(BSTR* out) override
        {
            owner.plan.Visit(Place::Description);
            *out = owner.description ? owner.description : SysAllocString(L"the description");
            return S_OK;
        }
        STDMETHOD(get_scope)(BSTR*) override { return E_NOTIMPL; }
        STDMETHOD(get_interfaceName)(BSTR*) override { return E_NOTIMPL; }
        STDMETHOD(get_operation)(BSTR*) override { return E_NOTIMPL; }
        STDMETHOD(get_moreInfo)(BSTR*) override { return E_NOTIMPL; }
        Saboteur& owner;
    } user{*this};
    struct Utilities final : com::DualPart<ICapeUtilities> {
        explicit Utilities(Saboteur& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(get_parameters)(IDispatch** out) override
        {
            if (owner.wildParameters) {
                *out = owner.wildParameters;
                return S_OK;
            }
            return owner.parameters.CopyTo(out);
        }
        STDMETHOD(put_simulationContext)(IDispatch*) override { return S_OK; }
        STDMETHOD(Initialize)() override { return owner.result; }
        STDMETHOD(Terminate)() override { return S_OK; }
        STDMETHOD(Edit)() override { return E_NOTIMPL; }
        Saboteur& owner;
    } utilities{*this};
    struct Items final : com::DualPart<ICapeArrayParameterSpec> {
        explicit Items(Saboteur& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(get_NumDimensions)(long*) override { return E_NOTIMPL; }
        STDMETHOD(get_Size)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(get_ItemsSpecifications)(VARIANT* out) override
        {
            *out = owner.items;
            return S_OK;
        }
        STDMETHOD(Validate)(VARIANT, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
        Saboteur& owner;
    } itemSpecifications{*this};
};

// A package with its proxy and its own log. Each fault and each wild value gets a new one.
class Scene {
public:
    explicit Scene(bool isLogged) : path(TemporaryPath())
    {
        options.promptOpenLog = false;
        LogFile file;
        EXPECT_EQ(0, file.Open(path));
        document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
        document->Hold();
        package->parameters = child->Face();
        proxy = ComPtr<CPropertyPackage11>(new CPropertyPackage11);
        proxy->AttachAsRoot(package.Get(), isLogged ? document : nullptr, "Pack");
    }
    ~Scene()
    {
        EXPECT_EQ(0u, CountCallsInProgress());
        proxy.Reset();
        document->LetGo();
        DeleteFileW(path.c_str());
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    std::string Log() const { return WithoutCarriageReturns(ReadWhole(path)); }
    bool Logs(const std::string& text) const { return Log().find(text) != std::string::npos; }
    template <class I>
    I* Part() const
    {
        return static_cast<I*>(proxy->FindInterface(__uuidof(I))->Pointer());
    }
    ComPtr<IDispatch> Parameters() const
    {
        ComPtr<IDispatch> parameters;
        EXPECT_EQ(S_OK, Part<ICapeUtilities>()->get_parameters(&parameters));
        EXPECT_TRUE(parameters);
        return parameters;
    }

    ComPtr<Saboteur> package = MakeFake<Saboteur>();
    ComPtr<Saboteur> child = MakeFake<Saboteur>();
    ComPtr<CPropertyPackage11> proxy;

private:
    std::wstring path;
    LogOptions options;
    LogDocument* document;
};

std::wstring LookupName(const ComPtr<IDispatch>& object)
{
    ComPtr<ICapeIdentification> identification;
    if (FAILED(object.As(&identification))) return L"<no identification>";
    _bstr_t name;
    EXPECT_EQ(S_OK, identification->get_ComponentName(name.GetAddress()));
    return name.length() ? std::wstring(name) : std::wstring();
}

class FaultLookups : public testing::Test {
protected:
    FaultLookups() { InstallWrappers(); }

    // Runs `body` with each kind of fault, logged and not logged.
    template <class Body>
    static void ForEachKind(Body body)
    {
        int cells = 0;
        for (const FaultKind& kind : AllFaultKinds()) {
            for (const bool isLogged : {true, false}) {
                SCOPED_TRACE(kind.name + (isLogged ? ", logged" : ", not logged"));
                Scene scene(isLogged);
                body(scene, kind, isLogged);
                ++cells;
            }
        }
        std::printf("%d faults\n", cells);
        EXPECT_LT(200, cells);
    }
};

TEST_F(FaultLookups, InQueriesAreRefusals)
{
    ForEachKind([](Scene& scene, const FaultKind& kind, bool isLogged) {
        auto* utilities = scene.Part<ICapeUtilities>();
        scene.package->plan = {Place::Query, &kind};
        ComPtr<ICapeUtilities> refused;
        EXPECT_EQ(E_NOINTERFACE, scene.proxy->QueryInterface(IID_PPV_ARGS(&refused)));
        EXPECT_EQ(E_NOINTERFACE, utilities->Initialize());
        scene.package->plan = {};
        EXPECT_EQ(S_OK, utilities->Initialize());
        EXPECT_EQ(isLogged, scene.Logs(Func("ICapeUtilities::Initialize",
                                            " <warning value=\"Interface not exposed by object\"/>\n") +
                                       Func("ICapeUtilities::Initialize", "")));
    });
}

TEST_F(FaultLookups, InNamesLeaveTheObjectUnnamed)
{
    ForEachKind([](Scene& scene, const FaultKind& kind, bool isLogged) {
        scene.child->plan = {Place::Name, &kind};
        const ComPtr<IDispatch> parameters = scene.Parameters();
        scene.child->plan = {};
        EXPECT_EQ(isLogged, scene.Logs(" <error value=\"Failed to get name from object: "));
        EXPECT_EQ(isLogged, scene.Logs("interface to object &quot;&lt;unknown&gt;&quot; (address "));
        EXPECT_EQ(L"Saboteur", LookupName(parameters));
    });
}

TEST_F(FaultLookups, InDescriptionsFallBackToTheErrorsName)
{
    ForEachKind([](Scene& scene, const FaultKind& kind, bool isLogged) {
        scene.package->result = kFailure;
        scene.package->plan = {Place::Description, &kind};
        EXPECT_EQ(kFailure, scene.Part<ICapeUtilities>()->Initialize());
        EXPECT_EQ(isLogged, scene.Logs(Func("ICapeUtilities::Initialize",
                                            " <error value=\"ECapeComputationHR: the error&apos;s name\"/>\n")));
        scene.package->plan = {};
        EXPECT_EQ(kFailure, scene.Part<ICapeUtilities>()->Initialize());
        EXPECT_EQ(isLogged, scene.Logs("ECapeComputationHR: the description"));
    });
}

TEST_F(FaultLookups, InReleasesAreSwallowed)
{
    ForEachKind([](Scene& scene, const FaultKind& kind, bool isLogged) {
        Saboteur* child = scene.child.Get();
        ComPtr<IDispatch> parameters = scene.Parameters();
        scene.package->parameters.Reset();
        scene.child.Reset();
        child->plan = {Place::Release, &kind};
        // The proxy's reference is the last one.
        EXPECT_EQ(0u, parameters.Reset());
        EXPECT_EQ(S_OK, scene.Part<ICapeUtilities>()->Initialize());
        EXPECT_EQ(isLogged, scene.Logs(Func("ICapeUtilities::Initialize", "")));
    });
}

TEST_F(FaultLookups, InTheReportOfARootLeaveItWhole)
{
    ForEachKind([](Scene& scene, const FaultKind& kind, bool isLogged) {
        const ComPtr<IDispatch> parameters = scene.Parameters();
        Saboteur* package = scene.package.Get();
        scene.package.Reset();
        package->plan = {Place::Release, &kind};
        EXPECT_EQ(0u, scene.proxy.Reset());
        EXPECT_EQ(isLogged, scene.Logs("<warning value=\"Object &quot;Saboteur&quot; (type: "));
        EXPECT_EQ(isLogged, scene.Log().ends_with("\n</zeltlogdocument>\n"));
        // A proxy that outlives the root still forwards calls.
        EXPECT_EQ(L"Saboteur", LookupName(parameters));
    });
}

// Addresses with no string, array or object: unmapped, reserved by the system, or unaligned.
void* const kWild[] = {reinterpret_cast<void*>(1), reinterpret_cast<void*>(0x1003), reinterpret_cast<void*>(0xDDDDDDD0),
                       reinterpret_cast<void*>(~std::uintptr_t{0xF})};

TEST_F(FaultLookups, WildStringsReadAsNone)
{
    for (void* wild : kWild) {
        Scene scene(true);
        scene.child->name = static_cast<BSTR>(wild);
        const ComPtr<IDispatch> parameters = scene.Parameters();
        EXPECT_TRUE(scene.Logs("Object&apos;s name is empty"));
        BSTR name = nullptr;
        ComPtr<ICapeIdentification> identification;
        ASSERT_EQ(S_OK, parameters.As(&identification));
        EXPECT_EQ(S_OK, identification->get_ComponentName(&name));
        EXPECT_EQ(wild, name);
        EXPECT_TRUE(scene.Logs("&lt;unable to format value&gt;"));
        scene.package->result = kFailure;
        scene.package->description = static_cast<BSTR>(wild);
        EXPECT_EQ(kFailure, scene.Part<ICapeUtilities>()->Initialize());
        EXPECT_TRUE(scene.Logs("ECapeComputationHR: the error&apos;s name"));
    }
}

TEST_F(FaultLookups, WildObjectsAreWrappedAndDoNothing)
{
    for (const bool isLogged : {true, false}) {
        for (void* wild : kWild) {
            Scene scene(isLogged);
            scene.package->wildParameters = static_cast<IDispatch*>(wild);
            const ComPtr<IDispatch> parameters = scene.Parameters();
            EXPECT_NE(wild, static_cast<void*>(parameters.Get()));
            EXPECT_EQ(L"<no identification>", LookupName(parameters));
            EXPECT_EQ(S_OK, scene.Part<ICapeUtilities>()->Initialize());
        }
    }
}

// An array with a wrong header makes the call fail, and the caller gets nothing.
TEST_F(FaultLookups, WildArraysOfObjectsAreFailures)
{
    struct Claim {
        const char* what;
        VARTYPE type;
        SAFEARRAY array;
    };
    const auto claim = [](USHORT dimensions, ULONG size, void* data, ULONG count, LONG lower = 0) {
        SAFEARRAY array = {};
        array.cDims = dimensions;
        array.fFeatures = FADF_STATIC | FADF_FIXEDSIZE;
        array.cbElements = size;
        array.pvData = data;
        array.rgsabound[0] = {count, lower};
        return array;
    };
    constexpr ULONG kPointer = sizeof(void*), kVariant = sizeof(VARIANT);
    void* const nowhere = reinterpret_cast<void*>(16);
    const Claim kClaims[] = {
        {"no data", VT_DISPATCH, claim(1, kPointer, nullptr, 3)},
        {"wild data", VT_DISPATCH, claim(1, kPointer, nowhere, 3)},
        {"wild data, VARIANTs", VT_VARIANT, claim(1, kVariant, nowhere, 3)},
        {"no dimension", VT_DISPATCH, claim(0, kPointer, nowhere, 3)},
        {"too many dimensions", VT_DISPATCH, claim(65535, kPointer, nowhere, 3)},
        {"small elements", VT_DISPATCH, claim(1, 1, nowhere, 3)},
        {"pointers said to be VARIANTs", VT_VARIANT, claim(1, kPointer, nowhere, 3)},
        {"more elements than memory", VT_DISPATCH, claim(1, kPointer, nowhere, 0xFFFFFFFF)},
        {"a size that overflows", VT_DISPATCH, claim(1, kPointer, nowhere, 0x40000000)},
        {"bounds that overflow", VT_DISPATCH, claim(1, kPointer, nowhere, 16, 0x7FFFFFFF)},
    };
    for (const bool isLogged : {true, false}) {
        for (const Claim& claimed : kClaims) {
            SCOPED_TRACE(claimed.what);
            Scene scene(isLogged);
            SAFEARRAY array = claimed.array;
            const ComPtr<CParameterSpec> spec(new CParameterSpec);
            spec->AttachThrough(scene.child.Get(), Crossing::Outbound, *scene.proxy.Get());
            scene.child->items.vt = static_cast<VARTYPE>(VT_ARRAY | claimed.type);
            scene.child->items.parray = &array;
            auto* items = static_cast<ICapeArrayParameterSpec*>(
                spec->FindInterface(__uuidof(ICapeArrayParameterSpec))->Pointer());
            VARIANT answer;
            VariantInit(&answer);
            EXPECT_TRUE(FAILED(items->get_ItemsSpecifications(&answer)));
            EXPECT_EQ(VT_EMPTY, answer.vt);
            EXPECT_EQ(isLogged, scene.Logs("<func name=\"ICapeArrayParameterSpec::get_ItemsSpecifications\""));
            EXPECT_EQ(S_OK, scene.Part<ICapeUtilities>()->Initialize());
        }
    }
}

}  // namespace
}  // namespace zelt::test
