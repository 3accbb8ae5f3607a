#include <gtest/gtest.h>

#include <cape-open.h>
#include <comutil.h>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "log/error_description.h"
#include "system/narrow.h"
#include "packages/package_listing.h"

// Listing the packages of a manager. The manager lives in this process and is of all three kinds.
namespace {

using zelt::PackageKind;

constexpr CLSID kManagerClass = {0x7E57CCCC, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};

// What the managers do, and what has happened to them.
struct Script {
    HRESULT initializeResult = S_OK, listResult = S_OK;
    bool hasUtilities = true, faultInList = false;
    _variant_t names;
    int initialized = 0, terminated = 0, alive = 0;
};
Script script;

HRESULT GiveNames(VARIANT* names)
{
    if (script.faultInList) *static_cast<volatile int*>(nullptr) = 1;
    return FAILED(script.listResult) ? script.listResult : VariantCopy(names, &script.names);
}

class Manager final : public com::Object {
public:
    Manager() { ++script.alive; }

private:
    ~Manager() override { --script.alive; }
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry*) override
    {
        return !script.hasUtilities && iid == __uuidof(ICapeUtilities) ? E_NOINTERFACE : S_OK;
    }
    struct Utilities final : com::DualPart<ICapeUtilities> {
        using DualPart::DualPart;
        STDMETHOD(get_parameters)(IDispatch**) override { return E_NOTIMPL; }
        STDMETHOD(put_simulationContext)(IDispatch*) override { return E_NOTIMPL; }
        STDMETHOD(Initialize)() override
        {
            ++script.initialized;
            return script.initializeResult;
        }
        STDMETHOD(Terminate)() override
        {
            ++script.terminated;
            return S_OK;
        }
        STDMETHOD(Edit)() override { return E_NOTIMPL; }
    } utilities{*this};
    struct Manager11 final : com::DualPart<ICapeThermoPropertyPackageManager> {
        using DualPart::DualPart;
        STDMETHOD(GetPropertyPackageList)(VARIANT* names) override { return GiveNames(names); }
        STDMETHOD(GetPropertyPackage)(BSTR, IDispatch**) override { return E_NOTIMPL; }
    } manager11{*this};
    struct System final : com::DualPart<ICapeThermoSystem> {
        using DualPart::DualPart;
        STDMETHOD(GetPropertyPackages)(VARIANT* names) override { return GiveNames(names); }
        STDMETHOD(ResolvePropertyPackage)(BSTR, IDispatch**) override { return E_NOTIMPL; }
    } system{*this};
    struct Reactions final : com::DualPart<ICapeReactionsPackageManager> {
        using DualPart::DualPart;
        STDMETHOD(GetListOfReactionsPackages)(VARIANT* names) override { return GiveNames(names); }
        STDMETHOD(ResolveReactionsPackage)(BSTR, IDispatch**) override { return E_NOTIMPL; }
    } reactions{*this};
};

struct KindTexts {
    PackageKind kind;
    const wchar_t *create, *initialize, *list, *badList;
};
// clang-format off
constexpr KindTexts kKinds[] = {
    {PackageKind::PropertyPackage11FromManager,
     L"Failed to create property package manager: ", L"Failed to initialize property package manager: ",
     L"Failed to get a list of property packages from property package manager: ", L"Invalid list of property packages from property package manager: "},
    {PackageKind::PropertyPackage10FromThermoSystem,
     L"Failed to create thermo system: ", L"Failed to initialize thermo system: ",
     L"Failed to get a list of property packages from thermo system: ", L"Invalid list of property packages from thermo system: "},
    {PackageKind::ReactionPackage10FromManager,
     L"Failed to create reaction package mananger: ", L"Failed to initialize reaction package manager: ",
     L"Failed to get a list of reaction packages from reaction package manager: ", L"Invalid list of reaction packages from reaction package manager: "},
};
// clang-format on

std::wstring SystemWords(HRESULT code) { return zelt::Widen(zelt::ErrorDescription(code, nullptr)); }

class PackageListing : public testing::Test {
protected:
    void SetUp() override
    {
        script = Script();
        script.names = Names({L"One", L"Two"});
        EXPECT_EQ(S_OK, classes.Register(kEntries));
    }
    static _variant_t Names(std::initializer_list<const wchar_t*> names, LONG lower = 0)
    {
        SAFEARRAYBOUND bound = {static_cast<ULONG>(names.size()), lower};
        _variant_t result;
        result.vt = VT_ARRAY | VT_BSTR;
        result.parray = SafeArrayCreate(VT_BSTR, 1, &bound);
        LONG index = lower;
        for (const wchar_t* name : names) {
            SafeArrayPutElement(result.parray, &index, _bstr_t(name).GetBSTR());
            ++index;
        }
        return result;
    }
    std::optional<std::vector<std::wstring>> List(PackageKind kind = PackageKind::PropertyPackage11FromManager,
                                                  const CLSID& classId = kManagerClass)
    {
        failures.clear();
        auto names = zelt::ListPackages(kind, classId, [this](const std::wstring& text) { failures.push_back(text); });
        EXPECT_EQ(0, script.alive);
        return names;
    }

    using Texts = std::vector<std::wstring>;
    static constexpr com::ClassEntry kEntries[] = {{kManagerClass, com::CreateDefault<Manager>}};
    com::ClassObjects classes{CLSCTX_INPROC_SERVER};
    Texts failures;
};

TEST_F(PackageListing, AsksEachKindOfManager)
{
    for (const KindTexts& row : kKinds) {
        script.initialized = script.terminated = 0;
        EXPECT_EQ(Texts({L"One", L"Two"}), List(row.kind));
        EXPECT_EQ(1, script.initialized);
        EXPECT_EQ(1, script.terminated);
        EXPECT_TRUE(failures.empty());
    }
}

TEST_F(PackageListing, AManagerNeedsNoUtilities)
{
    script.hasUtilities = false;
    EXPECT_EQ(Texts({L"One", L"Two"}), List());
    EXPECT_EQ(0, script.initialized);
    EXPECT_TRUE(failures.empty());
}

TEST_F(PackageListing, AFailedInitializeIsReportedAndTheListIsStillReturned)
{
    script.initializeResult = E_ACCESSDENIED;
    for (const KindTexts& row : kKinds) {
        EXPECT_EQ(Texts({L"One", L"Two"}), List(row.kind));
        EXPECT_EQ(Texts({row.initialize + SystemWords(E_ACCESSDENIED)}), failures);
    }
    EXPECT_EQ(0, script.terminated);
}

TEST_F(PackageListing, TellsWhyThereIsNoList)
{
    for (const KindTexts& row : kKinds) {
        EXPECT_FALSE(List(row.kind, CLSID{0x7E57CCCC, 9, 9, {}}));
        EXPECT_EQ(Texts({row.create + SystemWords(REGDB_E_CLASSNOTREG)}), failures);
        script.listResult = E_OUTOFMEMORY;
        EXPECT_FALSE(List(row.kind));
        EXPECT_EQ(Texts({row.list + SystemWords(E_OUTOFMEMORY)}), failures);
        script.listResult = S_OK;
        for (const _variant_t& bad : {_variant_t(), _variant_t(L"One"), _variant_t(5L)}) {
            script.names = bad;
            EXPECT_FALSE(List(row.kind));
            EXPECT_EQ(Texts({row.badList + SystemWords(DISP_E_TYPEMISMATCH)}), failures);
        }
    }
    EXPECT_EQ(script.initialized, script.terminated);
}

TEST_F(PackageListing, AFaultInTheListIsAFailure)
{
    script.faultInList = true;
    EXPECT_FALSE(List());
    EXPECT_EQ(Texts({kKinds[0].list + SystemWords(E_UNEXPECTED)}), failures);
    EXPECT_EQ(1, script.terminated);
}

TEST_F(PackageListing, TakesAnyLowerBoundAndAnEmptyList)
{
    script.names = Names({L"One", L"", L"Three"}, 5);
    EXPECT_EQ(Texts({L"One", L"", L"Three"}), List());
    script.names = Names({});
    EXPECT_EQ(Texts(), List());
    EXPECT_TRUE(failures.empty());
}

TEST_F(PackageListing, StandAlonePackagesHaveNoList)
{
    EXPECT_FALSE(List(PackageKind::PropertyPackage10StandAlone));
    EXPECT_EQ(Texts({L"Internal error: unknown package manager type"}), failures);
}

}  // namespace
