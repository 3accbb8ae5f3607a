// Trees of proxies of many kinds: what the root's final release reports, what a proxy inherits from the proxy through
// which it was obtained, and the versions of materials.
#include <bit>

#include "dynamic_fake.h"
#include "log_fixture.h"
#include "proxy_classes.h"
#include "proxy_fixture.h"
#include "thermo/wrapping_table.h"
#include "thermo/material_object.h"

namespace zelt::test {
namespace {

constexpr char kReadOnly[] = "<error value=\"This object should be considered read-only\"/>";
constexpr char kWrong10[] =
    "<error value=\"Invalid usage of version 1.0 material object interfaces (wrong thermo version)\"/>";
constexpr char kWrong11[] =
    "<error value=\"Invalid usage of version 1.1 material object interfaces (wrong thermo version)\"/>";

// A fake that returns the object of `given` for every requested pointer, and keeps the last object that is passed to it.
struct Giver {
    explicit Giver(const wchar_t* name) : fake(DynamicFake::Make(name))
    {
        fake->handler = [this](const IncomingCall& call) { return Answer(call); };
    }
    ~Giver()
    {
        kept.Reset();
        EXPECT_EQ(1u, fake->References()) << "references on what was wrapped";
        fake->handler = nullptr;
    }

    HRESULT Answer(const IncomingCall& call)
    {
        if (duringCall) duringCall();
        for (std::size_t i = 0; i < call.arguments.size(); ++i) {
            const ParameterShape& parameter = call.method.parameters[i];
            if (parameter.type == VT_DISPATCH && !parameter.isOut) {
                auto** slot = static_cast<IDispatch**>(call.arguments[i]);
                if (parameter.isReference) slot = *reinterpret_cast<IDispatch***>(slot);
                kept = *slot;
            } else if (parameter.type == VT_DISPATCH && given) {
                **static_cast<IDispatch***>(call.arguments[i]) =
                    given->fake->Face(__uuidof(ICapeIdentification)).Detach();
            } else if (call.method.name == "get_ComponentName") {
                **static_cast<BSTR**>(call.arguments[i]) = SysAllocString(fake->name.c_str());
            }
        }
        return result;
    }
    ComPtr<IDispatch> Pointer() { return fake->Face(__uuidof(ICapeIdentification)); }

    ComPtr<DynamicFake> fake;
    Giver* given = nullptr;
    ComPtr<IDispatch> kept;
    HRESULT result = S_OK;
    std::function<void()> duringCall;
};

class ProxyFamily : public LogFixture {
protected:
    ProxyFamily() { InstallWrappers(); }
    // Releases what the package keeps, before the other members check their reference counts.
    ~ProxyFamily() override { package.kept.Reset(); }

    ComPtr<CapeOpenBase> MakeRoot(const char* name, bool isLogged = true)
    {
        ComPtr<CapeOpenBase> root = FindProxyClass(name).make(ThermoVersion::Unset);
        root->AttachAsRoot(package.fake.Get(), isLogged ? document : nullptr, "Pack");
        return root;
    }
    // Calls a method of one of a proxy's interfaces; the result must be S_OK.
    template <class I, class... P, class... A>
    static void Call(IUnknown* object, HRESULT (STDMETHODCALLTYPE I::*method)(P...), A... arguments)
    {
        ComPtr<I> found;
        ASSERT_EQ(S_OK, object->QueryInterface(__uuidof(I), reinterpret_cast<void**>(found.GetAddressOf())));
        EXPECT_EQ(S_OK, (found.Get()->*method)(arguments...));
    }
    // What a method returns through its last parameter.
    template <class I, class... P, class... A>
    static ComPtr<IDispatch> Obtain(IUnknown* object, HRESULT (STDMETHODCALLTYPE I::*method)(P...), A... arguments)
    {
        ComPtr<IDispatch> obtained;
        Call(object, method, arguments..., obtained.GetAddressOf());
        return obtained;
    }
    static CapeOpenBase& ProxyOf(const ComPtr<IDispatch>& pointer)
    {
        ComPtr<IUnknown> identity;
        pointer.As(&identity);
        return *static_cast<CapeOpenBase*>(static_cast<com::Object*>(identity.Get()));
    }
    static ThermoVersion VersionOf(const ComPtr<IDispatch>& pointer)
    {
        return dynamic_cast<CMaterialObject&>(ProxyOf(pointer)).Version();
    }
    // Passes the context to the package; returns its proxy, which the package keeps.
    ComPtr<IDispatch> SetContext(IUnknown* root)
    {
        Call(root, &ICapeUtilities::put_simulationContext, context.Pointer().Get());
        return package.kept;
    }
    ComPtr<IDispatch> MakeTemplate(const ComPtr<IDispatch>& contextProxy)
    {
        context.given = &materialTemplate;
        return Obtain(contextProxy.Get(), &ICapeMaterialTemplateSystem::CreateMaterialTemplate, nullptr);
    }
    ComPtr<IDispatch> MakeMaterial(const ComPtr<IDispatch>& templateProxy)
    {
        materialTemplate.given = &material;
        return Obtain(templateProxy.Get(), &ICapeThermoMaterialTemplate::CreateMaterialObject);
    }
    std::string News()
    {
        const std::string all = Written();
        std::string news = all.substr(seen);
        seen = all.size();
        return news;
    }
    static std::string Unreleased(const char* name, const char* type, int count)
    {
        return std::string("<warning value=\"Object &quot;") + name + "&quot; (type: " + type +
               ") is not released at final release of &quot;Pack&quot; (reference count " + std::to_string(count) +
               ")\"/>\n";
    }

    Giver package{L"package"}, context{L"context"}, materialTemplate{L"template"}, material{L"material"},
        collection{L"collection"}, parameter{L"parameter"}, specification{L"specification"}, reactions{L"reactions"};

private:
    std::size_t seen = 0;
};

TEST_F(ProxyFamily, EachKindThatIsStillAliveIsReportedAndForwardsAfterwards)
{
    ComPtr<CapeOpenBase> root = MakeRoot("CReactionPackage10");
    package.given = &collection;
    collection.given = &parameter;
    parameter.given = &specification;
    auto contextProxy = SetContext(root.Get());
    auto templateProxy = MakeTemplate(contextProxy);
    auto materialProxy = MakeMaterial(templateProxy);
    auto collectionProxy = Obtain(root.Get(), &ICapeUtilities::get_parameters);
    auto parameterProxy = Obtain(collectionProxy.Get(), &ICapeCollection::Item, VARIANT{});
    auto specProxy = Obtain(parameterProxy.Get(), &ICapeParameter::get_Specification);
    ComPtr<IDispatch> object = reactions.Pointer();
    Call(root.Get(), &ICapeKineticReactionContext::SetReactionObject, object.GetAddressOf());
    auto reactionsProxy = package.kept;
    ComPtr<IDispatch> secondReference;
    materialProxy.As(&secondReference);
    News();

    root.Reset();
    // The package still keeps one of the two references to the proxy of the reaction object.
    EXPECT_EQ(Unreleased("context", "Simulation Context", 1) + Unreleased("template", "Material Template", 1) +
                  Unreleased("material", "Material Object", 2) + Unreleased("collection", "Parameter collection", 1) +
                  Unreleased("parameter", "Parameter", 1) + Unreleased("specification", "Parameter specification", 1) +
                  Unreleased("reactions", "Reaction Object", 2) + "</zeltlogdocument>\n",
              News());

    const auto countCalls = [](const Giver& giver) { return giver.fake->calls.size(); };
    const Giver* all[] = {&context, &materialTemplate, &material, &collection, &parameter, &specification, &reactions};
    std::vector<std::size_t> before;
    for (const Giver* giver : all) before.push_back(countCalls(*giver));
    long number = 0;
    eCapeParamType type = CAPE_REAL;
    Call(contextProxy.Get(), &ICapeDiagnostic::LogMessage, nullptr);
    Call(templateProxy.Get(), &ICapeThermoMaterialTemplate::SetProp, nullptr, VARIANT{});
    Call(materialProxy.Get(), &ICapeThermoPhases::GetNumPhases, &number);
    Call(collectionProxy.Get(), &ICapeCollection::Count, &number);
    Call(parameterProxy.Get(), &ICapeParameter::Reset);
    Call(specProxy.Get(), &ICapeParameterSpec::get_Type, &type);
    Call(reactionsProxy.Get(), &ICapeReactionChemistry::GetNumberOfReactions, &number);
    for (std::size_t i = 0; i < std::size(all); ++i) EXPECT_EQ(before[i] + 1, countCalls(*all[i])) << i;
    // A surviving proxy still wraps the objects that it returns, and their proxies can outlive it.
    auto late = Obtain(collectionProxy.Get(), &ICapeCollection::Item, VARIANT{});
    collectionProxy.Reset();
    Call(late.Get(), &ICapeParameter::Reset);
    EXPECT_EQ("", News());
}

TEST_F(ProxyFamily, TearOffHasTheIdentityOfItsObject)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CReactionPackage10");
    ComPtr<ICapeElectrolyteReactionContext> electrolyte;
    ComPtr<ICapeKineticReactionContext> kinetic;
    ASSERT_EQ(S_OK, root->QueryInterface(IID_PPV_ARGS(&electrolyte)));
    ASSERT_EQ(S_OK, root->QueryInterface(IID_PPV_ARGS(&kinetic)));
    ComPtr<IUnknown> identities[3];
    root.As(&identities[0]);
    electrolyte.As(&identities[1]);
    kinetic.As(&identities[2]);
    EXPECT_EQ(identities[0].Get(), identities[1].Get());
    EXPECT_EQ(identities[0].Get(), identities[2].Get());
    ComPtr<ICapeUtilities> utilities;
    EXPECT_EQ(S_OK, electrolyte.As(&utilities));
    ComPtr<ICapeElectrolyteReactionContext> again;
    EXPECT_EQ(S_OK, kinetic.As(&again));
    EXPECT_EQ(electrolyte.Get(), again.Get());
    EXPECT_NE(static_cast<void*>(electrolyte.Get()), static_cast<void*>(kinetic.Get()));
}

TEST_F(ProxyFamily, BothReactionContextsLogTheirOwnName)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CReactionPackage10");
    ComPtr<IDispatch> object = reactions.Pointer();
    Call(root.Get(), &ICapeElectrolyteReactionContext::SetReactionObject, object.GetAddressOf());
    EXPECT_NE(std::string::npos, News().find("name=\"ICapeElectrolyteReactionContext::SetReactionObject\""));
    Call(root.Get(), &ICapeKineticReactionContext::SetReactionObject, object.GetAddressOf());
    EXPECT_NE(std::string::npos, News().find("name=\"ICapeKineticReactionContext::SetReactionObject\""));
}

TEST_F(ProxyFamily, ACallInProgressIsNoReferenceInTheReport)
{
    ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    auto contextProxy = SetContext(root.Get());
    package.kept.Reset();
    context.duringCall = [&] {
        News();
        root.Reset();
        // The two references of this test are counted, but not that of the call in progress.
        const std::string news = News();
        EXPECT_NE(std::string::npos, news.find(Unreleased("context", "Simulation Context", 2))) << news;
    };
    Call(contextProxy.Get(), &ICapeDiagnostic::LogMessage, nullptr);
    context.duringCall = nullptr;
}

struct VersionRow {
    const char* root;
    ThermoVersion starting;
};

TEST_F(ProxyFamily, MaterialsOfTemplatesStartWithTheVersionOfTheirOwner)
{
    const VersionRow rows[] = {
        {"CPropertyPackage11", ThermoVersion::CapeOpen11},
        {"CPropertyPackage10", ThermoVersion::CapeOpen10},
        {"CUnitOperation", ThermoVersion::CapeOpen10},
        // A reaction package gets materials of either version.
        {"CReactionPackage10", ThermoVersion::Unset},
    };
    for (const VersionRow& row : rows) {
        SCOPED_TRACE(row.root);
        // A root closes its document, so each has its own.
        LogFile file;
        const std::wstring ownPath = TemporaryPath();
        ASSERT_EQ(0, file.Open(ownPath));
        auto* own = new LogDocument(std::move(file), "Root", "kind", ownPath, options);
        own->Hold();
        {
            ComPtr<CapeOpenBase> root = FindProxyClass(row.root).make(ThermoVersion::Unset);
            root->AttachAsRoot(package.fake.Get(), own, "Pack");
            const auto templateProxy = MakeTemplate(SetContext(root.Get()));
            const auto made = MakeMaterial(templateProxy);
            EXPECT_EQ(row.starting, VersionOf(made));
            // If no version is set, the first call sets it.
            long number = 0;
            Call(made.Get(), &ICapeThermoMaterialObject::GetNumComponents, &number);
            EXPECT_EQ(row.starting == ThermoVersion::Unset ? ThermoVersion::CapeOpen10 : row.starting, VersionOf(made));
            const auto second = MakeMaterial(templateProxy);
            Call(second.Get(), &ICapeThermoPhases::GetNumPhases, &number);
            EXPECT_EQ(row.starting == ThermoVersion::Unset ? ThermoVersion::CapeOpen11 : row.starting,
                      VersionOf(second));
            package.kept.Reset();
        }
        own->LetGo();
        DeleteFileW(ownPath.c_str());
    }
}

TEST_F(ProxyFamily, AnUnsetMaterialTakesTheVersionOfItsFirstCallForGood)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CReactionPackage10");
    const auto made = MakeMaterial(MakeTemplate(SetContext(root.Get())));
    long number = 0;
    News();
    Call(made.Get(), &ICapeThermoPhases::GetNumPhases, &number);
    EXPECT_EQ(std::string::npos, News().find("<error"));
    Call(made.Get(), &ICapeThermoMaterialObject::GetNumComponents, &number);
    EXPECT_NE(std::string::npos, News().find(kWrong10));
    Call(made.Get(), &ICapeThermoPhases::GetNumPhases, &number);
    EXPECT_EQ(std::string::npos, News().find("<error"));
}

TEST_F(ProxyFamily, MaterialsThatMaterialsMakeStartWithTheFamilyThatMadeThem)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CReactionPackage10");
    const auto made = MakeMaterial(MakeTemplate(SetContext(root.Get())));
    Giver product(L"product");
    material.given = &product;
    VARIANT results;
    VariantInit(&results);
    const auto clone = Obtain(made.Get(), &ICapeThermoMaterialObject::Duplicate);
    EXPECT_EQ(ThermoVersion::CapeOpen10, VersionOf(clone));
    News();
    const std::size_t before = product.fake->calls.size();
    Call(clone.Get(), &ICapeThermoMaterial::GetOverallProp, nullptr, nullptr, &results);
    EXPECT_EQ(before + 1, product.fake->calls.size());
    EXPECT_NE(std::string::npos, News().find(kWrong11));
    EXPECT_EQ(ThermoVersion::CapeOpen10, VersionOf(clone));

    const auto created = Obtain(made.Get(), &ICapeThermoMaterial::CreateMaterial);
    EXPECT_EQ(ThermoVersion::CapeOpen11, VersionOf(created));
    News();
    long number = 0;
    Call(created.Get(), &ICapeThermoMaterialObject::GetNumComponents, &number);
    EXPECT_EQ(before + 2 + 1, product.fake->calls.size());  // one of these calls asked for the name
    EXPECT_NE(std::string::npos, News().find(kWrong10));
    EXPECT_EQ(ThermoVersion::CapeOpen10,
              VersionOf(Obtain(made.Get(), &ICapeThermoMaterialObject::CreateMaterialObject)));
}

TEST_F(ProxyFamily, TemplatesAreReadOnlyWithTheirContext)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    const auto contextProxy = SetContext(root.Get());
    EXPECT_FALSE(ProxyOf(contextProxy).IsReadOnly());
    const auto open = MakeTemplate(contextProxy);
    ProxyOf(contextProxy).SetReadOnly(true);
    const auto closed = MakeTemplate(contextProxy);
    EXPECT_FALSE(ProxyOf(open).IsReadOnly());
    EXPECT_TRUE(ProxyOf(closed).IsReadOnly());
    News();
    for (int round = 0; round < 2; ++round) {
        const std::size_t before = materialTemplate.fake->calls.size();
        Call(closed.Get(), &ICapeThermoMaterialTemplate::SetProp, nullptr, VARIANT{});
        EXPECT_EQ(before + 1, materialTemplate.fake->calls.size());
        EXPECT_NE(std::string::npos, News().find(kReadOnly)) << round;
    }
    Call(open.Get(), &ICapeThermoMaterialTemplate::SetProp, nullptr, VARIANT{});
    EXPECT_EQ(std::string::npos, News().find(kReadOnly));
    // A material made from the closed template is not read-only: it belongs to its maker.
    EXPECT_FALSE(ProxyOf(MakeMaterial(closed)).IsReadOnly());
}

TEST_F(ProxyFamily, ParametersAndSpecificationsAreReadOnlyWithTheirCollection)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    package.given = &collection;
    collection.given = &parameter;
    parameter.given = &specification;
    root->SetReadOnly(true);
    const auto collectionProxy = Obtain(root.Get(), &ICapeUtilities::get_parameters);
    EXPECT_FALSE(ProxyOf(collectionProxy).IsReadOnly());
    for (const bool isReadOnly : {false, true}) {
        ProxyOf(collectionProxy).SetReadOnly(isReadOnly);
        const auto parameterProxy = Obtain(collectionProxy.Get(), &ICapeCollection::Item, VARIANT{});
        const auto specProxy = Obtain(parameterProxy.Get(), &ICapeParameter::get_Specification);
        News();
        Call(parameterProxy.Get(), &ICapeParameter::put_value, VARIANT{});
        EXPECT_EQ(isReadOnly, News().find(kReadOnly) != std::string::npos);
        Call(specProxy.Get(), &ICapeIdentification::put_ComponentDescription, nullptr);
        EXPECT_EQ(isReadOnly, News().find(kReadOnly) != std::string::npos);
    }
}

TEST_F(ProxyFamily, NullResultsHaveNoProxy)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    const auto contextProxy = SetContext(root.Get());
    const auto templateProxy = MakeTemplate(contextProxy);
    context.given = nullptr;
    News();
    EXPECT_EQ(nullptr, Obtain(contextProxy.Get(), &ICapeMaterialTemplateSystem::CreateMaterialTemplate, nullptr).Get());
    EXPECT_NE(std::string::npos, News().find("name=\"MaterialTemplate\" direc=\"out\" type=\"interface\">\n"
                                             "  <argval value=\"NULL\"/>"));
    EXPECT_EQ(nullptr, Obtain(templateProxy.Get(), &ICapeThermoMaterialTemplate::CreateMaterialObject).Get());
    EXPECT_NE(std::string::npos, News().find("<argval value=\"NULL\"/>"));
}

TEST_F(ProxyFamily, EachCallWrapsTheMaterialAnew)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage10");
    const ComPtr<IDispatch> pointer = material.Pointer();
    Call(root.Get(), &ICapeThermoPropertyPackage::CalcProp, pointer.Get(), VARIANT{}, VARIANT{}, nullptr);
    const ComPtr<IDispatch> first = package.kept;
    Call(root.Get(), &ICapeThermoPropertyPackage::CalcProp, pointer.Get(), VARIANT{}, VARIANT{}, nullptr);
    const ComPtr<IDispatch> second = package.kept;
    EXPECT_NE(first.Get(), second.Get());
    EXPECT_NE(pointer.Get(), first.Get());
    EXPECT_EQ(ThermoVersion::CapeOpen10, VersionOf(first));

    News();
    Call(root.Get(), &ICapeThermoPropertyPackage::CalcProp, nullptr, VARIANT{}, VARIANT{}, nullptr);
    EXPECT_EQ(nullptr, package.kept.Get());
    EXPECT_NE(std::string::npos, News().find("<arg name=\"materialObject\" direc=\"in\" type=\"interface\">\n"
                                             "  <argval value=\"NULL\"/>"));
}

TEST_F(ProxyFamily, WithoutALogThePackageGetsTheCallersMaterialAndNothingIsSaid)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage10", false);
    const ComPtr<IDispatch> pointer = material.Pointer();
    VARIANT valid;
    VariantInit(&valid);
    Call(root.Get(), &ICapeThermoPropertyPackage::ValidityCheck, pointer.Get(), VARIANT{}, &valid);
    EXPECT_EQ(pointer.Get(), package.kept.Get());
    EXPECT_EQ("", News());
}

TEST_F(ProxyFamily, WhatShouldNotBeUsedIsReportedOnEveryCallAndForwarded)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage10");
    const auto made = MakeMaterial(MakeTemplate(SetContext(root.Get())));
    VARIANT values;
    VariantInit(&values);
    for (int round = 0; round < 2; ++round) {
        News();
        const std::size_t before = material.fake->calls.size();
        Call(made.Get(), &ICapeThermoMaterialObject::SetIndependentVar, VARIANT{}, VARIANT{});
        EXPECT_NE(std::string::npos, News().find("<error value=\"SetIndependentVar should not be used\"/>"));
        Call(made.Get(), &ICapeThermoMaterialObject::GetIndependentVar, VARIANT{}, &values);
        EXPECT_NE(std::string::npos, News().find("<error value=\"GetIndependentVar should not be used\"/>"));
        Call(made.Get(), &ICapeThermoMaterialObject::ValidityCheck, VARIANT{}, &values);
        EXPECT_NE(std::string::npos, News().find("<error value=\"ValidityCheck should not be used\"/>"));
        EXPECT_EQ(before + 3, material.fake->calls.size());
    }
}

TEST_F(ProxyFamily, ValuesOfSetPropAreLoggedAsAnOutputBeforeTheCall)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage10");
    const auto made = MakeMaterial(MakeTemplate(SetContext(root.Get())));
    ComPtr<ICapeThermoMaterialObject> material10;
    ASSERT_EQ(S_OK, made.As(&material10));
    std::string during;
    // Only the first call counts: after a failure, the material is also asked for its description.
    material.duringCall = [&] {
        if (during.empty()) during = News();
    };
    VARIANT values;
    VariantInit(&values);
    for (const HRESULT result : {S_OK, E_FAIL}) {
        material.result = result;
        News();
        during.clear();
        EXPECT_EQ(result, material10->SetProp(nullptr, nullptr, VARIANT{}, nullptr, nullptr, values));
        const std::string argument = "<arg name=\"values\" direc=\"out\" type=\"VT_EMPTY\">";
        EXPECT_NE(std::string::npos, during.find(argument));
        EXPECT_EQ(std::string::npos, News().find(argument));
    }
    material.duringCall = nullptr;
    material.result = S_OK;
}

// Arrays of specifications.

struct ArrayRow {
    const char* name;
    VARTYPE element;
    std::vector<SAFEARRAYBOUND> bounds;  // first dimension first, as SafeArrayCreate takes them
    unsigned nulls;                      // a bit for each element without an object
};

class SpecificationArray : public ProxyFamily {
protected:
    // Makes an array in which each non-null element is the specification.
    VARIANT MakeArray(const ArrayRow& row)
    {
        auto bounds = row.bounds;
        VARIANT array;
        VariantInit(&array);
        array.vt = static_cast<VARTYPE>(VT_ARRAY | row.element);
        array.parray = SafeArrayCreate(row.element, static_cast<UINT>(bounds.size()), bounds.data());
        ForEach(array.parray, row.element, [&](unsigned index, void* place) {
            if (row.nulls >> index & 1) return;
            const auto pointer = specification.Pointer();
            if (row.element != VT_VARIANT) {
                *static_cast<IDispatch**>(place) = ComPtr<IDispatch>(pointer).Detach();
            } else {
                *static_cast<VARIANT*>(place) = _variant_t(pointer.Get()).Detach();
            }
        });
        return array;
    }
    template <class Visit>
    static void ForEach(SAFEARRAY* array, VARTYPE element, Visit&& visit)
    {
        std::byte* data = nullptr;
        ASSERT_EQ(S_OK, SafeArrayAccessData(array, reinterpret_cast<void**>(&data)));
        unsigned count = 1;
        for (USHORT i = 0; i < array->cDims; ++i) count *= array->rgsabound[i].cElements;
        const std::size_t size = element == VT_VARIANT ? sizeof(VARIANT) : sizeof(void*);
        for (unsigned index = 0; index < count; ++index) visit(index, data + index * size);
        SafeArrayUnaccessData(array);
    }
};

TEST_F(SpecificationArray, IsRebuiltWithTheSameBoundsAndOneProxyForEachElement)
{
    const ArrayRow rows[] = {
        {"one dimension", VT_DISPATCH, {{3, 5}}, 0},
        {"negative lower bound", VT_DISPATCH, {{2, -7}}, 0},
        {"null elements", VT_DISPATCH, {{4, 1}}, 0b0101},
        {"two dimensions", VT_DISPATCH, {{2, 3}, {3, -1}}, 0b010000},
        {"unknown", VT_UNKNOWN, {{2, 1}}, 0b10},
        {"variants", VT_VARIANT, {{3, 2}}, 0b001},
        {"variants in two dimensions", VT_VARIANT, {{2, 0}, {2, 8}}, 0},
        {"nine dimensions",
         VT_DISPATCH,
         {{1, 1}, {1, 2}, {1, 3}, {2, 4}, {1, 5}, {1, 6}, {1, 7}, {1, 8}, {1, 9}},
         0b01},
        {"as many dimensions as are read", VT_VARIANT, std::vector<SAFEARRAYBOUND>(32, {1, 3}), 0},
        {"empty", VT_DISPATCH, {{0, 4}}, 0},
    };
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    for (const ArrayRow& row : rows) {
        SCOPED_TRACE(row.name);
        Giver inner(L"array");
        inner.fake->handler = [&](const IncomingCall& call) {
            if (call.method.name == "get_ItemsSpecifications")
                **static_cast<VARIANT**>(call.arguments[0]) = MakeArray(row);
            return inner.Answer(call);
        };
        const ComPtr<CapeOpenBase> spec = FindProxyClass("CParameterSpec").make(ThermoVersion::Unset);
        spec->AttachThrough(inner.fake.Get(), Crossing::Outbound, *root.Get());
        spec->SetReadOnly(true);
        {
            _variant_t specs;
            Call(spec.Get(), &ICapeArrayParameterSpec::get_ItemsSpecifications, static_cast<VARIANT*>(&specs));
            ASSERT_EQ(VT_ARRAY | row.element, specs.vt);
            ASSERT_EQ(row.bounds.size(), SafeArrayGetDim(specs.parray));
            for (UINT i = 0; i < row.bounds.size(); ++i) {
                LONG lower = 0, upper = 0;
                SafeArrayGetLBound(specs.parray, i + 1, &lower);
                SafeArrayGetUBound(specs.parray, i + 1, &upper);
                EXPECT_EQ(row.bounds[i].lLbound, lower) << i;
                EXPECT_EQ(row.bounds[i].lLbound + static_cast<LONG>(row.bounds[i].cElements) - 1, upper) << i;
            }
            unsigned proxies = 0;
            ForEach(specs.parray, row.element, [&](unsigned index, void* place) {
                IUnknown* element = *static_cast<IUnknown**>(place);
                if (row.element == VT_VARIANT) {
                    const auto& variant = *static_cast<VARIANT*>(place);
                    EXPECT_EQ(row.nulls >> index & 1 ? VT_EMPTY : VT_DISPATCH, variant.vt);
                    element = variant.vt == VT_DISPATCH ? variant.punkVal : nullptr;
                }
                EXPECT_EQ(row.nulls >> index & 1, element == nullptr) << index;
                if (!element) return;
                ComPtr<IDispatch> pointer;
                ASSERT_EQ(S_OK, element->QueryInterface(IID_PPV_ARGS(&pointer)));
                ComPtr<IUnknown> wrapped;
                ProxyOf(pointer).Wrapped()->QueryInterface(IID_PPV_ARGS(&wrapped));
                EXPECT_EQ(static_cast<IUnknown*>(specification.fake.Get()), wrapped.Get());
                EXPECT_STREQ("Parameter specification", ProxyOf(pointer).TypeName());
                EXPECT_TRUE(ProxyOf(pointer).IsReadOnly());
                ++proxies;
            });
            unsigned elements = 1;
            for (const SAFEARRAYBOUND& bound : row.bounds) elements *= bound.cElements;
            EXPECT_EQ(elements - std::popcount(row.nulls), proxies);
            EXPECT_EQ(1 + proxies, specification.fake->References());
        }
        EXPECT_EQ(1u, specification.fake->References());
    }
}

TEST_F(SpecificationArray, WhatIsNoArrayOfObjectsCrossesAsItIs)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    for (const _variant_t& returned : {_variant_t(), _variant_t(L"no array"), _variant_t(7L)}) {
        Giver inner(L"array");
        inner.fake->handler = [&](const IncomingCall& call) {
            if (call.method.name == "get_ItemsSpecifications") {
                **static_cast<VARIANT**>(call.arguments[0]) = _variant_t(returned).Detach();
            }
            return inner.Answer(call);
        };
        const ComPtr<CapeOpenBase> spec = FindProxyClass("CParameterSpec").make(ThermoVersion::Unset);
        spec->AttachThrough(inner.fake.Get(), Crossing::Outbound, *root.Get());
        _variant_t specs;
        News();
        Call(spec.Get(), &ICapeArrayParameterSpec::get_ItemsSpecifications, static_cast<VARIANT*>(&specs));
        EXPECT_EQ(returned.vt, specs.vt);
        EXPECT_NE(std::string::npos,
                  News().find("<error value=\"Invalid type for argument specs: expected VT_ARRAY|VT_DISPATCH\"/>"));
    }
}

TEST_F(ProxyFamily, RefusedTypedSpecificationIsAWarningEachTime)
{
    const ComPtr<CapeOpenBase> root = MakeRoot("CPropertyPackage11");
    specification.fake->Refuse(__uuidof(ICapeRealParameterSpec));
    const ComPtr<CapeOpenBase> spec = FindProxyClass("CParameterSpec").make(ThermoVersion::Unset);
    spec->AttachThrough(specification.fake.Get(), Crossing::Outbound, *root.Get());
    auto* real = static_cast<ICapeRealParameterSpec*>(spec->FindInterface(__uuidof(ICapeRealParameterSpec))->Pointer());
    News();
    for (int round = 0; round < 2; ++round) {
        double bound = -1;
        EXPECT_EQ(E_NOINTERFACE, real->get_LowerBound(&bound));
        EXPECT_EQ(-1, bound);
        EXPECT_EQ(Func("ICapeRealParameterSpec::get_LowerBound",
                       " <warning value=\"Interface not exposed by object\"/>\n", "in", "specification"),
                  News());
    }
    long value = 0;
    Call(spec.Get(), &ICapeIntegerParameterSpec::get_DefaultValue, &value);
}

}  // namespace
}  // namespace zelt::test
