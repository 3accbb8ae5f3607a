#include <gtest/gtest.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>

#include "guard/foreign_call.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/faulty/faulty_manager.h"
#include "samples/faulty/faulty_package.h"
#include "samples/material/material.h"

namespace {

using namespace zelt::sample;
using Microsoft::WRL::ComPtr;

// A text argument, which lives until the end of the call.
BSTR B(_bstr_t&& text) { return text.GetBSTR(); }

class FaultySampleTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(S_OK, com::Create<FaultyManager>(IID_PPV_ARGS(&manager))); }

    ComPtr<IDispatch> Package(const wchar_t* name)
    {
        ComPtr<IDispatch> package;
        EXPECT_EQ(S_OK, manager->GetPropertyPackage(B(name), &package))
            << DescribeFailure(manager.Get(), E_FAIL).c_str();
        return package;
    }

    template <class I>
    static bool Offers(IUnknown* object)
    {
        ComPtr<I> result;
        return SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(&result)));
    }

    ComPtr<ICapeThermoPropertyPackageManager> manager;
};

TEST_F(FaultySampleTest, MakesEveryCharacterThatItLists)
{
    _variant_t names;
    ASSERT_EQ(S_OK, manager->GetPropertyPackageList(&names));
    EXPECT_EQ(AllCharacters().size() + 3, ReadStrings(names, L"names").size());
    for (const Character& character : AllCharacters()) {
        // The character that faults in its final release would end the test.
        if (*character.finalRelease) continue;
        EXPECT_NE(nullptr, Package(character.name)) << character.name;
    }
}

TEST_F(FaultySampleTest, FailsToGiveAPackageInTwoWays)
{
    ComPtr<IDispatch> package;
    EXPECT_EQ(S_OK, manager->GetPropertyPackage(B(L"Null"), &package));
    EXPECT_EQ(nullptr, package);
    EXPECT_EQ(static_cast<HRESULT>(ECapeLicenceErrorHR), manager->GetPropertyPackage(B(L"Fails"), &package));
    EXPECT_EQ(L"The faulty package has no licence today", DescribeFailure(manager.Get(), E_FAIL));
}

// Some systems swallow the fault, others pass it on to the caller. In both cases, the process lives, and the next call works.
TEST_F(FaultySampleTest, EditFaultsWhereTheSystemCallsBack)
{
    if (std::getenv("WINEPREFIX") && !std::getenv("DISPLAY")) GTEST_SKIP() << "no display";
    int edits = 0;
    for (const Character& character : AllCharacters()) {
        if (!*character.edit) continue;
        ++edits;
        ComPtr<ICapeUtilities> utilities;
        ASSERT_EQ(S_OK, Package(character.name).As(&utilities));
        // Twice, because the first fault must leave nothing behind.
        for (int i = 0; i < 2; ++i) {
            const HRESULT edited = zelt::CallForeign([&] { return utilities->Edit(); });
            EXPECT_TRUE(edited == S_OK || edited == E_UNEXPECTED) << character.name << ' ' << std::hex << edited;
            std::printf("%ls: %s\n", character.name, edited == S_OK ? "swallowed" : "caught");
        }
    }
    EXPECT_EQ(5, edits);
}

TEST_F(FaultySampleTest, HidesTheInterfacesThatACharacterLacks)
{
    const ComPtr<IDispatch> menu = Package(L"Menu"), unidentified = Package(L"No Identification");
    const ComPtr<IDispatch> compounds = Package(L"Compounds Only"), silent = Package(L"No Errors");
    EXPECT_TRUE(Offers<ICapeIdentification>(menu.Get()));
    EXPECT_TRUE(Offers<ECapeUser>(menu.Get()));
    EXPECT_FALSE(Offers<ICapeIdentification>(unidentified.Get()));
    EXPECT_TRUE(Offers<ICapeThermoPropertyRoutine>(unidentified.Get()));
    EXPECT_FALSE(Offers<ICapeThermoPropertyRoutine>(compounds.Get()));
    EXPECT_TRUE(Offers<ICapeThermoCompounds>(compounds.Get()));
    EXPECT_FALSE(Offers<ECapeUser>(silent.Get()));
    EXPECT_FALSE(Offers<ISupportErrorInfo>(silent.Get()));
    EXPECT_TRUE(Offers<ICapeThermoMaterialContext>(silent.Get()));
}

TEST_F(FaultySampleTest, FailsWithTheErrorThatIsAskedFor)
{
    const ComPtr<IDispatch> menu = Package(L"Menu");
    ComPtr<ICapeThermoCompounds> compounds;
    ComPtr<ICapeThermoPropertyRoutine> properties;
    ASSERT_EQ(S_OK, menu.As(&compounds));
    ASSERT_EQ(S_OK, menu.As(&properties));
    _variant_t values;
    EXPECT_EQ(
        static_cast<HRESULT>(0x8004050B),
        compounds->GetCompoundConstant(MakeStrings({L"molecularWeight"}), MakeStrings({L"error:8004050B"}), &values));
    EXPECT_EQ(L"The faulty package fails as asked: error:8004050B", DescribeFailure(menu.Get(), E_FAIL));
    EXPECT_EQ(static_cast<HRESULT>(0x8004051A),
              compounds->GetTDependentProperty(MakeStrings({L"silent:8004051A"}), 300, _variant_t(), &values));
    ComPtr<ECapeUser> user;
    ASSERT_EQ(S_OK, menu.As(&user));
    _bstr_t description;
    EXPECT_EQ(S_OK, user->get_description(description.GetAddress()));
    EXPECT_EQ(0u, description.length());
    EXPECT_EQ(E_FAIL, properties->CalcSinglePhaseProp(MakeStrings({L"error:80004005"}), B(L"Liquid")));
    EXPECT_EQ(S_OK, properties->CalcSinglePhaseProp(MakeStrings({L"handledFault"}), B(L"Liquid")));
    // Without a request for a fault, the package calculates.
    EXPECT_EQ(S_OK,
              compounds->GetCompoundConstant(MakeStrings({L"molecularWeight"}), MakeStrings({L"Toluene"}), &values));
}

TEST_F(FaultySampleTest, AnswersForItsNameAsTheCharacterSays)
{
    const struct {
        const wchar_t* package;
        HRESULT renamed;
        const wchar_t* name;  // after renaming to "New"; null for a null text
    } rows[] = {
        {L"Menu", S_OK, L"New"},
        {L"Empty Name", S_OK, nullptr},
        {L"Other Name", S_OK, L"Quite another name"},
        {L"Unrenamable", static_cast<HRESULT>(ECapeNoImplHR), L"Unrenamable"},
    };
    for (const auto& row : rows) {
        ComPtr<ICapeIdentification> identification;
        ASSERT_EQ(S_OK, Package(row.package).As(&identification));
        EXPECT_EQ(row.renamed, identification->put_ComponentName(B(L"New"))) << row.package;
        BSTR name = nullptr;
        EXPECT_EQ(S_OK, identification->get_ComponentName(&name)) << row.package;
        const _bstr_t owner(name, false);
        EXPECT_STREQ(row.name, name) << row.package;
    }
}

TEST_F(FaultySampleTest, KeepsOneReferenceOnAMaterial)
{
    auto slate = std::make_shared<Slate>();
    slate->compounds = {{L"Benzene", L"C6H6", L"benzene", 353.2, 78.114, L"71-43-2"}};
    slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
    for (const auto& [name, kept] : {std::pair(L"Menu", 0u), std::pair(L"Keeps Material", 1u)}) {
        ComPtr<IDispatch> material;
        ASSERT_EQ(S_OK, com::Create<Material>(IID_PPV_ARGS(&material), slate));
        ComPtr<ICapeThermoMaterialContext> context;
        ASSERT_EQ(S_OK, Package(name).As(&context));
        EXPECT_EQ(S_OK, context->SetMaterial(material.Get()));
        EXPECT_EQ(S_OK, context->UnsetMaterial());
        context.Reset();
        material->AddRef();
        EXPECT_EQ(1u + kept, material->Release()) << name;
        // The test releases what the package never releases.
        for (unsigned i = 0; i < kept; ++i) material->Release();
    }
}

}  // namespace
