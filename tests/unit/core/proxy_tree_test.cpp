// Naming, the query filter, wrapping, and what happens when the root of a tree is released.
#include "core/interface_name.h"
#include "proxy_fixture.h"
#include "scratch_classes.h"

namespace zelt::test {
namespace {

constexpr char kMaterialAddress[] = "interface pointer ";

class ProxyTreeTest : public ProxyFixture {
protected:
    // Passes a material to a package that keeps it; returns the material's proxy.
    ComPtr<IDispatch> SetMaterial(const ComPtr<FakeMaterial>& material)
    {
        package->keepsMaterial = true;
        ComPtr<IDispatch> raw;
        material.As(&raw);
        EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(raw.Get()));
        return package->kept;
    }
    // Everything written since the previous call of News.
    std::string News()
    {
        const std::string all = Written();
        std::string news = all.substr(seen);
        seen = all.size();
        return news;
    }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
    ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();

private:
    std::size_t seen = 0;
};

TEST_F(ProxyTreeTest, QueriesAreFilteredByTheWrappedObject)
{
    ScratchClasses classes;
    ComPtr<IUnknown> answer;
    EXPECT_EQ(S_OK, proxy->QueryInterface(__uuidof(ICapeUtilities), &answer));
    EXPECT_EQ(S_OK, proxy->QueryInterface(IID_IUnknown, &answer));
    EXPECT_EQ(S_OK, proxy->QueryInterface(IID_IDispatch, &answer));
    EXPECT_EQ(S_OK, proxy->QueryInterface(__uuidof(IOriginalObject), &answer));
    EXPECT_EQ("", News());

    package->Refuse(__uuidof(ICapeUtilities));
    EXPECT_EQ(E_NOINTERFACE, proxy->QueryInterface(__uuidof(ICapeUtilities), &answer));
    EXPECT_EQ(nullptr, answer.Get());
    EXPECT_EQ("<warning value=\"Pack: QueryInterface not returning supported interface " +
                  InterfaceName(__uuidof(ICapeUtilities)) +
                  ": object does not expose it (returning E_NOINTERFACE)\"/>\n",
              News());
    // Neither the proxy's class nor the wrapped object has this interface.
    EXPECT_EQ(E_NOINTERFACE, proxy->QueryInterface(__uuidof(ICapeThermoMaterial), &answer));
    EXPECT_EQ("<warning value=\"Pack: QueryInterface for unsupported interface " +
                  InterfaceName(__uuidof(ICapeThermoMaterial)) + "\"/>\n",
              News());

    classes.RegisterName(L"{678C0A9B-0100-11D2-A67D-00105A42887F}", L"ICapeUtilities");
    EXPECT_EQ(E_NOINTERFACE, proxy->QueryInterface(__uuidof(ICapeUtilities), &answer));
    EXPECT_EQ(
        "<warning value=\"Pack: QueryInterface not returning supported interface ICapeUtilities: object does not "
        "expose it (returning E_NOINTERFACE)\"/>\n",
        News());
    classes.RegisterName(L"{678C0A9B-7D66-11D2-A67D-00105A42887F}", L"ICapeThermoMaterial");
    EXPECT_EQ(E_NOINTERFACE, proxy->QueryInterface(__uuidof(ICapeThermoMaterial), &answer));
    EXPECT_EQ("<warning value=\"Pack: QueryInterface for unsupported interface ICapeThermoMaterial\"/>\n", News());
}

TEST_F(ProxyTreeTest, QueriesWithoutAWrappedObject)
{
    ScratchClasses classes;
    const auto uncreated = MakeProxy(nullptr);
    ComPtr<IUnknown> answer;
    EXPECT_EQ(E_NOINTERFACE, uncreated->QueryInterface(__uuidof(ICapeUtilities), &answer));
    EXPECT_EQ("<warning value=\"Pack: QueryInterface not returning " + InterfaceName(__uuidof(ICapeUtilities)) +
                  ": object not created (returning E_NOINTERFACE)\"/>\n",
              News());
    classes.RegisterName(L"{678C0A9B-0100-11D2-A67D-00105A42887F}", L"ICapeUtilities");
    EXPECT_EQ(E_NOINTERFACE, uncreated->QueryInterface(__uuidof(ICapeUtilities), &answer));
    EXPECT_EQ(
        "<warning value=\"Pack: QueryInterface not returning ICapeUtilities: object not created (returning "
        "E_NOINTERFACE)\"/>\n",
        News());
    EXPECT_EQ(S_OK, uncreated->QueryInterface(IID_IDispatch, &answer));
    EXPECT_EQ(S_OK, uncreated->QueryInterface(__uuidof(IOriginalObject), &answer));
    EXPECT_EQ("", News());
}

TEST_F(ProxyTreeTest, QueriesAreFilteredWithoutALogToo)
{
    const auto silent = MakeProxy(package.Get(), false);
    package->Refuse(__uuidof(ICapeUtilities));
    ComPtr<IUnknown> answer;
    EXPECT_EQ(E_NOINTERFACE, silent->QueryInterface(__uuidof(ICapeUtilities), &answer));
    EXPECT_EQ("", News());
}

TEST_F(ProxyTreeTest, OriginalObjectIsTheWrappedOne)
{
    ComPtr<IUnknown> original, identity;
    EXPECT_EQ(S_OK, As<IOriginalObject>(proxy)->GetOriginalObject(&original));
    package.As(&identity);
    EXPECT_EQ(identity.Get(), original.Get());
}

TEST_F(ProxyTreeTest, MaterialIsWrappedOnItsWayInAndLoggedAsItCame)
{
    material->name = L"Feed";
    const auto wrapper = SetMaterial(material);
    ComPtr<IDispatch> raw;
    material.As(&raw);
    EXPECT_NE(raw.Get(), wrapper.Get());
    std::string address;
    AppendPointer(address, raw.Get());
    EXPECT_EQ(Func("ICapeThermoMaterialContext::SetMaterial",
                   " <arg name=\"material\" direc=\"in\" type=\"interface\">\n  <argval value=\"" +
                       std::string(kMaterialAddress) + address + "\"/>\n </arg>\n"),
              News());

    double temperature = 0, pressure = 0;
    VARIANT composition;
    VariantInit(&composition);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterial>(wrapper)->GetOverallTPFraction(&temperature, &pressure, &composition));
    EXPECT_EQ(300, temperature);
    EXPECT_EQ(Func("ICapeThermoMaterial::GetOverallTPFraction",
                   " <arg name=\"temperature\" direc=\"out\" type=\"double\">\n  <argval value=\"300\"/>\n </arg>\n"
                   " <arg name=\"pressure\" direc=\"out\" type=\"double\">\n  <argval value=\"100000\"/>\n </arg>\n"
                   " <arg name=\"composition\" direc=\"out\" type=\"VT_EMPTY\">\n"
                   "  <error value=\"Invalid type for argument composition: expected VT_ARRAY|VT_R8\"/>\n </arg>\n",
                   "out", "Feed"),
              News());
}

TEST_F(ProxyTreeTest, AKindWithoutAProxyCrossesAsItIs)
{
    WrapperFactory::SetTable({});
    ProxyPtr made = proxy;
    const HRESULT wrapped =
        WrapperFactory::Wrap({WrapKind::MaterialObject}, Crossing::Inbound, package.Get(), *proxy.Get(), made);
    InstallWrappers();
    EXPECT_EQ(S_FALSE, wrapped);
    EXPECT_FALSE(made) << "the pointer still holds the previous proxy";
}

TEST_F(ProxyTreeTest, WrapperDiesWhenThePackageLetsGo)
{
    const ULONG before = material->ReferenceCount();
    SetMaterial(material);
    EXPECT_LT(before, material->ReferenceCount());
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->UnsetMaterial());
    EXPECT_EQ(before, material->ReferenceCount());

    // If the package does not keep the material, the proxy is gone by the end of the call.
    package->keepsMaterial = false;
    ComPtr<IDispatch> raw;
    material.As(&raw);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(raw.Get()));
    raw.Reset();
    EXPECT_EQ(before, material->ReferenceCount());
}

TEST_F(ProxyTreeTest, WithoutALogThePackageGetsTheCallersOwnPointer)
{
    const auto silent = MakeProxy(package.Get(), false);
    ComPtr<IDispatch> raw;
    material.As(&raw);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(silent)->SetMaterial(raw.Get()));
    EXPECT_EQ(raw.Get(), package->material);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(silent)->SetMaterial(nullptr));
    EXPECT_EQ(nullptr, package->material);
    EXPECT_EQ("", News());
}

TEST_F(ProxyTreeTest, NullMaterialIsAnErrorInTheLogAndForwarded)
{
    package->material = reinterpret_cast<IDispatch*>(1);
    proxy->SetReadOnly(true);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(nullptr));
    EXPECT_EQ(nullptr, package->material);
    EXPECT_EQ(Func("ICapeThermoMaterialContext::SetMaterial",
                   " <arg name=\"material\" direc=\"in\" type=\"interface\">\n  <argval value=\"NULL\"/>\n </arg>\n"
                   " <error value=\"This object should be considered read-only\"/>\n"
                   " <error value=\"Cannot pass NULL pointer to SetMateriall; use UnsetMaterial instead\"/>\n"),
              News());
}

TEST_F(ProxyTreeTest, APointerThatCrossesTwiceIsWrappedTwice)
{
    const auto first = SetMaterial(material);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(first.Get()));
    const auto second = package->kept;
    EXPECT_NE(first.Get(), second.Get());
    ComPtr<IUnknown> original, firstIdentity;
    EXPECT_EQ(S_OK, As<IOriginalObject>(second)->GetOriginalObject(&original));
    first.As(&firstIdentity);
    ComPtr<IUnknown> originalIdentity;
    original.As(&originalIdentity);
    EXPECT_EQ(firstIdentity.Get(), originalIdentity.Get());
    News();
    long phases = 0;
    EXPECT_EQ(S_OK, As<ICapeThermoPhases>(second)->GetNumPhases(&phases));
    const std::string argument = "<arg name=\"num\" direc=\"out\" type=\"long\">\n";
    EXPECT_EQ(Func("ICapeThermoPhases::GetNumPhases",
                   " <func name=\"ICapeThermoPhases::GetNumPhases\" direc=\"out\" object=\"Fake\">\n"
                   "  " +
                       argument +
                       "   <argval value=\"2\"/>\n  </arg>\n </func>\n"
                       " " +
                       argument + "  <argval value=\"2\"/>\n </arg>\n",
                   "out", "Fake"),
              News());
}

struct NameRow {
    const char* what;
    void (*arrange)(FakeMaterial&);
    const char* logged;
    const char* name;
};

TEST_F(ProxyTreeTest, NamesOfWrappedObjects)
{
    const NameRow rows[] = {
        {"named", [](FakeMaterial& m) { m.name = L"Feed"; }, "", "Feed"},
        {"no identification", [](FakeMaterial& m) { m.Refuse(__uuidof(ICapeIdentification)); },
         " <warning value=\"Object does not implement ICapeIdentification\"/>\n", "<unknown>"},
        {"failing", [](FakeMaterial& m) { m.nameResult = static_cast<HRESULT>(ECapeUnknownHR); },
         " <error value=\"Failed to get name from object: Failed to get error name for ECapeUnknown\"/>\n",
         "<unknown>"},
        {"empty", [](FakeMaterial& m) { m.name = L""; }, " <warning value=\"Object&apos;s name is empty\"/>\n",
         "<unknown>"},
    };
    for (const NameRow& row : rows) {
        const auto named = MakeFake<FakeMaterial>();
        row.arrange(*named.Get());
        News();
        const auto wrapper = SetMaterial(named);
        const std::string written = News();
        const std::string argumentEnd = "</arg>\n";
        const auto body = written.substr(written.find(argumentEnd) + argumentEnd.size());
        EXPECT_EQ(std::string(row.logged) + "</func>\n", body) << row.what;
        ComPtr<IUnknown> identity;
        wrapper.As(&identity);
        EXPECT_EQ(row.name, static_cast<CapeOpenBase*>(static_cast<com::Object*>(identity.Get()))->Name()) << row.what;
    }
}

TEST_F(ProxyTreeTest, FinalReleaseReportsWhatIsStillAlive)
{
    const auto held = SetMaterial(material);  // one reference here, one in the package
    News();
    proxy.Reset();
    EXPECT_EQ(
        "<warning value=\"Object &quot;Fake&quot; (type: Material Object) is not released at final release of "
        "&quot;Pack&quot; (reference count 2)\"/>\n</zeltlogdocument>\n",
        News());
}

TEST_F(ProxyTreeTest, SurvivorsForwardAndWriteNothing)
{
    auto held = SetMaterial(material);
    package->kept.Reset();
    proxy.Reset();
    News();
    long phases = 0;
    EXPECT_EQ(S_OK, As<ICapeThermoPhases>(held)->GetNumPhases(&phases));
    EXPECT_EQ(2, phases);
    EXPECT_EQ("", News());
    const long before = FakeMaterial::alive;
    held.Reset();
    EXPECT_EQ(before, FakeMaterial::alive);
    EXPECT_EQ(1u, material->ReferenceCount());
}

TEST_F(ProxyTreeTest, ReleasedProxiesAreNotReported)
{
    SetMaterial(material);
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->UnsetMaterial());
    News();
    proxy.Reset();
    EXPECT_EQ("</zeltlogdocument>\n", News());
    EXPECT_EQ(1u, package->ReferenceCount());
    EXPECT_EQ(1u, material->ReferenceCount());
}

TEST_F(ProxyTreeTest, RootKeepsItsObjectUntilTheReportIsWritten)
{
    // The package releases its material when it is destroyed: the proxy must not release the package before the report.
    SetMaterial(material);
    News();
    package.Reset();
    EXPECT_EQ(1, FakePackage::alive);
    proxy.Reset();
    EXPECT_NE(std::string::npos, News().find("(reference count 1)\"/>\n</zeltlogdocument>\n"));
    EXPECT_EQ(0, FakePackage::alive);
    EXPECT_EQ(1u, material->ReferenceCount());
}

class MaterialObjectTest : public ProxyTreeTest {
protected:
    ComPtr<IDispatch> wrapper = SetMaterial(material);
    ComPtr<ICapeThermoMaterial> logged = As<ICapeThermoMaterial>(wrapper);
    MaterialObjectTest() { News(); }
};

TEST_F(MaterialObjectTest, EmptyPhaseLabelIsAnErrorBehindTheArgumentAndForwarded)
{
    BSTR empty = SysAllocString(L"");
    VARIANT results;
    VariantInit(&results);
    for (BSTR label : {static_cast<BSTR>(nullptr), empty}) {
        material->lastString = reinterpret_cast<BSTR>(1);
        material->result = E_FAIL;
        EXPECT_EQ(E_FAIL, logged->GetSinglePhaseProp(nullptr, label, nullptr, &results));
        EXPECT_EQ(label, material->lastString);
        const std::string value = label ? "&quot;&quot;" : "&lt;NULL&gt;";
        EXPECT_NE(std::string::npos,
                  News().find(" <arg name=\"phaseLabel\" direc=\"in\" type=\"string\">\n  <argval value=\"" + value +
                              "\"/>\n </arg>\n <error value=\"Phase label cannot be empty\"/>\n"
                              " <arg name=\"basis\""));
        EXPECT_EQ(E_FAIL, logged->GetTPFraction(label, nullptr, nullptr, nullptr));
        EXPECT_NE(std::string::npos, News().find("<error value=\"Phase label cannot be empty\"/>"));
        EXPECT_EQ(E_FAIL, logged->SetSinglePhaseProp(nullptr, label, nullptr, results));
        EXPECT_NE(std::string::npos, News().find("<error value=\"Phase label cannot be empty\"/>"));
        EXPECT_EQ(label, material->lastString);
    }
    SysFreeString(empty);
}

TEST_F(MaterialObjectTest, CreatedMaterialIsWrappedAndLoggedByItsName)
{
    const auto child = MakeFake<FakeMaterial>();
    child->name = L"Product";
    ComPtr<IDispatch> raw;
    child.As(&raw);
    material->created = raw.Get();
    ComPtr<IDispatch> created;
    const ULONG before = child->ReferenceCount();
    EXPECT_EQ(S_OK, logged->CreateMaterial(&created));
    ASSERT_NE(nullptr, created.Get());
    EXPECT_NE(raw.Get(), created.Get());
    EXPECT_EQ(before + 1, child->ReferenceCount());  // held by the proxy; the returned reference was released
    std::string address;
    AppendPointer(address, created.Get());
    EXPECT_EQ(Func("ICapeThermoMaterial::CreateMaterial",
                   " <arg name=\"materialObject\" direc=\"out\" type=\"interface\">\n"
                   "  <argval value=\"interface to object &quot;Product&quot; (address " +
                       address + ")\"/>\n </arg>\n",
                   "out", "Fake"),
              News());
    ComPtr<IUnknown> identity;
    created.As(&identity);
    EXPECT_EQ(ThermoVersion::CapeOpen11,
              static_cast<CMaterialObject*>(static_cast<com::Object*>(identity.Get()))->Version());
    created.Reset();
    identity.Reset();
    EXPECT_EQ(before, child->ReferenceCount());
}

TEST_F(MaterialObjectTest, NullResultStaysNull)
{
    IDispatch* created = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, logged->CreateMaterial(&created));
    EXPECT_EQ(nullptr, created);
    EXPECT_EQ(Func("ICapeThermoMaterial::CreateMaterial",
                   " <arg name=\"materialObject\" direc=\"out\" type=\"interface\">\n  <argval value=\"NULL\"/>\n"
                   " </arg>\n",
                   "out", "Fake"),
              News());
}

TEST_F(MaterialObjectTest, ResultIsNullEvenIfTheCallNeverArrives)
{
    IDispatch* created = reinterpret_cast<IDispatch*>(1);
    material->Refuse(__uuidof(ICapeThermoMaterial));
    ComPtr<CMaterialObject> refused(new CMaterialObject(ThermoVersion::CapeOpen11));
    refused->AttachThrough(static_cast<com::Object*>(material.Get()), Crossing::Inbound, *proxy.Get());
    EXPECT_EQ(E_NOINTERFACE, Part<ICapeThermoMaterial>(*refused.Get())->CreateMaterial(&created));
    EXPECT_EQ(nullptr, created);
}

TEST_F(MaterialObjectTest, FailedCreationLeavesNull)
{
    material->created = reinterpret_cast<IDispatch*>(1);  // must not be used
    material->result = E_FAIL;
    IDispatch* created = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(E_FAIL, logged->CreateMaterial(&created));
    EXPECT_EQ(nullptr, created);
    EXPECT_EQ(std::string::npos, News().find("<arg"));
}

TEST_F(MaterialObjectTest, CopySourceIsForwardedAsItCameAndItsOriginalHeldOverTheCall)
{
    const auto source = MakeFake<FakeMaterial>();
    ComPtr<IDispatch> raw;
    source.As(&raw);
    ComPtr<IDispatch> proxied;
    material->created = raw.Get();
    ASSERT_EQ(S_OK, logged->CreateMaterial(&proxied));
    News();
    const ULONG before = source->ReferenceCount();
    ULONG during = 0;
    material->duringCopy = [&] { during = source->ReferenceCount(); };
    IDispatch* slot = proxied.Get();
    EXPECT_EQ(S_OK, logged->CopyFromMaterial(&slot));
    EXPECT_EQ(proxied.Get(), material->sourceValue);
    EXPECT_NE(&slot, material->source);
    EXPECT_EQ(proxied.Get(), slot);  // the callee cleared its own copy
    EXPECT_EQ(before + 1, during);
    EXPECT_EQ(before, source->ReferenceCount());
    std::string address;
    AppendPointer(address, proxied.Get());
    EXPECT_EQ(Func("ICapeThermoMaterial::CopyFromMaterial",
                   " <arg name=\"source\" direc=\"in\" type=\"interface\">\n  <argval value=\"interface pointer " +
                       address + "\"/>\n </arg>\n",
                   "out", "Fake"),
              News());

    material->duringCopy = nullptr;
    IDispatch* null = nullptr;
    EXPECT_EQ(S_OK, logged->CopyFromMaterial(&null));
    EXPECT_NE(nullptr, material->source);
    EXPECT_EQ(nullptr, material->sourceValue);
    EXPECT_EQ(S_OK, logged->CopyFromMaterial(nullptr));
    EXPECT_EQ(nullptr, material->source);
    // A plain object is not a proxy: nothing is held, and the source passes unchanged.
    slot = raw.Get();
    EXPECT_EQ(S_OK, logged->CopyFromMaterial(&slot));
    EXPECT_EQ(raw.Get(), material->sourceValue);
}

TEST_F(MaterialObjectTest, ReadOnlyMaterialReportsEveryChange)
{
    ComPtr<IUnknown> identity;
    wrapper.As(&identity);
    static_cast<CapeOpenBase*>(static_cast<com::Object*>(identity.Get()))->SetReadOnly(true);
    VARIANT values;
    VariantInit(&values);
    IDispatch* slot = nullptr;
    const auto isReported = [&] {
        return News().find("<error value=\"This object should be considered read-only\"/>") != std::string::npos;
    };
    logged->ClearAllProps();
    EXPECT_TRUE(isReported());
    logged->CopyFromMaterial(&slot);
    EXPECT_TRUE(isReported());
    logged->SetOverallProp(nullptr, nullptr, values);
    EXPECT_TRUE(isReported());
    logged->SetPresentPhases(values, values);
    EXPECT_TRUE(isReported());
    logged->SetSinglePhaseProp(nullptr, nullptr, nullptr, values);
    EXPECT_TRUE(isReported());
    logged->SetTwoPhaseProp(nullptr, values, nullptr, values);
    EXPECT_TRUE(isReported());
    logged->GetOverallProp(nullptr, nullptr, &values);
    EXPECT_FALSE(isReported());
}

TEST(ThermoVersionTest, FirstFamilyUsedFixesAnUnsetVersionAndTheOtherIsAnError)
{
    ComPtr<CMaterialObject> unset(new CMaterialObject(ThermoVersion::Unset));
    EXPECT_EQ(ThermoVersion::Unset, unset->Version());
    unset->UseVersion(ThermoVersion::CapeOpen11);
    EXPECT_EQ(ThermoVersion::CapeOpen11, unset->Version());
    unset->UseVersion(ThermoVersion::CapeOpen10);
    EXPECT_EQ(ThermoVersion::CapeOpen11, unset->Version());
}

class VersionTest : public ProxyTreeTest {};

TEST_F(VersionTest, WrongVersionIsLoggedAndForwarded)
{
    ComPtr<CMaterialObject> old(new CMaterialObject(ThermoVersion::CapeOpen10));
    old->AttachThrough(static_cast<com::Object*>(material.Get()), Crossing::Inbound, *proxy.Get());
    long phases = 0;
    EXPECT_EQ(S_OK, As<ICapeThermoPhases>(old)->GetNumPhases(&phases));
    EXPECT_EQ(2, phases);
    EXPECT_EQ(
        Func("ICapeThermoPhases::GetNumPhases",
             " <error value=\"Invalid usage of version 1.1 material object interfaces (wrong thermo version)\"/>\n"
             " <arg name=\"num\" direc=\"out\" type=\"long\">\n  <argval value=\"2\"/>\n </arg>\n",
             "out", "Fake"),
        News());
    EXPECT_EQ(ThermoVersion::CapeOpen10, old->Version());
}

}  // namespace
}  // namespace zelt::test
