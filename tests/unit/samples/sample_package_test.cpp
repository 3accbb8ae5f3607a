#include <gtest/gtest.h>
#include <wrl/client.h>

#include <bit>
#include <cmath>
#include <cstdint>

#include "samples/component/registration.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/classes.h"
#include "samples/package/property_package.h"
#include "samples/package/property_package_manager.h"
#include "samples/material/material.h"

namespace {

using namespace zelt::sample;
using Microsoft::WRL::ComPtr;

// A text argument, which lives until the end of the call.
BSTR B(_bstr_t&& text) { return text.GetBSTR(); }

std::shared_ptr<const Slate> SlateOf(std::initializer_list<const wchar_t*> ids)
{
    auto slate = std::make_shared<Slate>();
    for (const wchar_t* id : ids) {
        const Compound* compound = FindCompound(id);
        slate->compounds.push_back({id, compound ? compound->formula : L"", id,
                                    compound ? compound->normalBoilingPoint : 0,
                                    compound ? compound->molecularWeight : 100, L""});
    }
    slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
    return slate;
}

ComPtr<ICapeThermoMaterial> MakeMaterial(std::initializer_list<const wchar_t*> ids)
{
    ComPtr<ICapeThermoMaterial> material;
    EXPECT_EQ(S_OK, com::Create<Material>(IID_PPV_ARGS(&material), SlateOf(ids)));
    return material;
}

template <class I>
ComPtr<I> Query(IUnknown* object)
{
    ComPtr<I> result;
    EXPECT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&result)));
    return result;
}

std::wstring Description(IUnknown* object) { return DescribeFailure(object, E_FAIL); }

std::wstring ErrorName(IUnknown* object)
{
    _bstr_t name;
    EXPECT_EQ(S_OK, Query<ECapeRoot>(object)->get_name(name.GetAddress()));
    return std::wstring(TextOf(name.GetBSTR()));
}

std::vector<double> Overall(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis)
{
    _variant_t values;
    EXPECT_EQ(S_OK, material->GetOverallProp(B(property), B(basis), &values));
    return ReadDoubles(values, L"results");
}

std::vector<double> OfPhase(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* label,
                            const wchar_t* basis)
{
    _variant_t values;
    EXPECT_EQ(S_OK, material->GetSinglePhaseProp(B(property), B(label), B(basis), &values))
        << Description(material).c_str();
    return ReadDoubles(values, L"results");
}

class SamplePackageTest : public testing::Test {
protected:
    void SetUp() override
    {
        ComPtr<ICapeThermoPropertyPackageManager> manager;
        ASSERT_EQ(S_OK, com::Create<PropertyPackageManager>(IID_PPV_ARGS(&manager)));
        ASSERT_EQ(S_OK, manager->GetPropertyPackage(B(L"aromatics"), &package));
        properties = Query<ICapeThermoPropertyRoutine>(package.Get());
        equilibrium = Query<ICapeThermoEquilibriumRoutine>(package.Get());
        context = Query<ICapeThermoMaterialContext>(package.Get());
        compounds = Query<ICapeThermoCompounds>(package.Get());
    }

    // Sets a material of toluene and benzene (not the package's order) in the package, with a state and both phases.
    ComPtr<ICapeThermoMaterial> SetMaterial(double temperature, double pressure)
    {
        ComPtr<ICapeThermoMaterial> material = MakeMaterial({L"Toluene", L"benzene"});
        EXPECT_EQ(S_OK, material->SetOverallProp(B(L"temperature"), B(L""), MakeDoubles({{temperature}})));
        EXPECT_EQ(S_OK, material->SetOverallProp(B(L"pressure"), B(L""), MakeDoubles({{pressure}})));
        EXPECT_EQ(S_OK, material->SetOverallProp(B(L"fraction"), B(L"mole"), MakeDoubles({{0.5, 0.5}})));
        EXPECT_EQ(S_OK, material->SetPresentPhases(MakeStrings({L"Vapor", L"Liquid"}), _variant_t()));
        EXPECT_EQ(S_OK, context->SetMaterial(Query<IDispatch>(material.Get()).Get()));
        return material;
    }

    HRESULT Flash(std::initializer_list<const wchar_t*> a, std::initializer_list<const wchar_t*> b)
    {
        return equilibrium->CalcEquilibrium(MakeStrings(a), MakeStrings(b), B(L"Unspecified"));
    }

    ComPtr<IDispatch> package;
    ComPtr<ICapeThermoPropertyRoutine> properties;
    ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
    ComPtr<ICapeThermoMaterialContext> context;
    ComPtr<ICapeThermoCompounds> compounds;
};

TEST(SampleManager, ListsItsPackagesAndNamesTheOneThatItLacks)
{
    ComPtr<ICapeThermoPropertyPackageManager> manager;
    ASSERT_EQ(S_OK, com::Create<PropertyPackageManager>(IID_PPV_ARGS(&manager)));
    _variant_t names;
    ASSERT_EQ(S_OK, manager->GetPropertyPackageList(&names));
    EXPECT_EQ((std::vector<std::wstring>{L"Aromatics", L"Alcohols"}), ReadStrings(names, L"names"));

    IDispatch* package = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), manager->GetPropertyPackage(B(L"Steam"), &package));
    EXPECT_EQ(nullptr, package);
    EXPECT_EQ(L"There is no property package \"Steam\"", Description(manager.Get()));
    EXPECT_EQ(L"ECapeInvalidArgument", ErrorName(manager.Get()));
    EXPECT_EQ(E_POINTER, manager->GetPropertyPackage(B(L"Aromatics"), nullptr));
}

TEST_F(SamplePackageTest, GivesConstantsInTheOrderOfTheStandard)
{
    _variant_t values;
    ASSERT_EQ(S_OK, compounds->GetCompoundConstant(MakeStrings({L"molecularWeight", L"casRegistryNumber"}),
                                                   MakeStrings({L"Toluene", L"Benzene"}), &values));
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, V_VT(&values));
    VARIANT* elements = nullptr;
    ASSERT_EQ(S_OK, SafeArrayAccessData(V_ARRAY(&values), reinterpret_cast<void**>(&elements)));
    EXPECT_EQ(92.141, V_R8(&elements[0]));
    EXPECT_EQ(78.114, V_R8(&elements[1]));
    EXPECT_STREQ(L"108-88-3", V_BSTR(&elements[2]));
    EXPECT_STREQ(L"71-43-2", V_BSTR(&elements[3]));
    SafeArrayUnaccessData(V_ARRAY(&values));

    // Without a list of compounds, the values are those of all compounds; every property in the package's list is known.
    _variant_t names, all;
    ASSERT_EQ(S_OK, compounds->GetConstPropList(&names));
    EXPECT_EQ(S_OK, compounds->GetCompoundConstant(names, _variant_t(), &all));
    EXPECT_EQ(3u * ReadStrings(names, L"names").size(),
              static_cast<std::size_t>(V_ARRAY(&all)->rgsabound[0].cElements));

    _variant_t unknown;
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              compounds->GetCompoundConstant(MakeStrings({L"molecularWeight"}), MakeStrings({L"Water"}), &unknown));
    EXPECT_EQ(L"Compound \"Water\" is not in property package \"Aromatics\"", Description(compounds.Get()));
}

TEST_F(SamplePackageTest, FlashesInTheOrderOfTheMaterial)
{
    const ComPtr<ICapeThermoMaterial> material = SetMaterial(363.15, 85000);
    ASSERT_EQ(S_OK, Flash({L"temperature", L"", L"Overall"}, {L"pressure", L"", L"Overall"}));
    // The case calculated by hand in the tests of the flash, with toluene first.
    EXPECT_NEAR(1 - 0.37342, OfPhase(material.Get(), L"fraction", L"Liquid", L"mole")[0], 2e-5);
    EXPECT_NEAR(0.59965, OfPhase(material.Get(), L"fraction", L"Vapor", L"mole")[1], 2e-5);
    EXPECT_NEAR(0.5595, OfPhase(material.Get(), L"phaseFraction", L"Vapor", L"mole")[0], 1e-4);
    EXPECT_EQ(363.15, OfPhase(material.Get(), L"temperature", L"Liquid", L"")[0]);

    ASSERT_EQ(S_OK, properties->CalcTwoPhaseProp(MakeStrings({L"kvalue"}), MakeStrings({L"Vapor", L"Liquid"})));
    _variant_t k;
    ASSERT_EQ(S_OK, material->GetTwoPhaseProp(B(L"kvalue"), MakeStrings({L"Vapor", L"Liquid"}), B(L""), &k));
    EXPECT_NEAR(0.63894, ReadDoubles(k, L"results")[0], 1e-4);
    EXPECT_NEAR(1.60585, ReadDoubles(k, L"results")[1], 1e-4);
}

TEST_F(SamplePackageTest, SetsTheOverallValueThatWasNotGiven)
{
    const ComPtr<ICapeThermoMaterial> material = SetMaterial(300, 95403);
    ASSERT_EQ(S_OK, material->SetSinglePhaseProp(B(L"phaseFraction"), B(L"Liquid"), B(L"mole"), MakeDoubles({{1.0}})));
    ASSERT_EQ(S_OK, Flash({L"phaseFraction", L"mole", L"Liquid"}, {L"pressure", L"", L"Overall"}));
    EXPECT_NEAR(363.15, Overall(material.Get(), L"temperature", L"")[0], 1e-2);
    EXPECT_EQ(0, OfPhase(material.Get(), L"phaseFraction", L"Vapor", L"mole")[0]);
}

TEST_F(SamplePackageTest, FormsOnlyThePhasesThatAreAllowed)
{
    const ComPtr<ICapeThermoMaterial> material = SetMaterial(363.15, 85000);
    ASSERT_EQ(S_OK, material->SetPresentPhases(MakeStrings({L"Liquid"}), _variant_t()));
    ASSERT_EQ(S_OK, Flash({L"temperature", L"", L"Overall"}, {L"pressure", L"", L"Overall"}));
    _variant_t labels, status;
    ASSERT_EQ(S_OK, material->GetPresentPhases(&labels, &status));
    EXPECT_EQ(std::vector<std::wstring>{L"Liquid"}, ReadStrings(labels, L"labels"));
    EXPECT_EQ(std::vector<long>{CAPE_ATEQUILIBRIUM}, ReadLongs(status, L"status"));
}

TEST_F(SamplePackageTest, WritesWhatTheModelGives)
{
    const ComPtr<ICapeThermoMaterial> material = SetMaterial(363.15, 85000);
    ASSERT_EQ(S_OK, Flash({L"temperature", L"", L"Overall"}, {L"pressure", L"", L"Overall"}));
    _variant_t names;
    ASSERT_EQ(S_OK, properties->GetSinglePhasePropList(&names));
    EXPECT_EQ(S_OK, properties->CalcSinglePhaseProp(names, B(L"Vapor"))) << Description(package.Get()).c_str();
    EXPECT_EQ(S_OK, properties->CalcSinglePhaseProp(names, B(L"Liquid"))) << Description(package.Get()).c_str();

    const IdealSolution model({FindCompound(L"Toluene"), FindCompound(L"Benzene")});
    const std::vector<double> x = OfPhase(material.Get(), L"fraction", L"Liquid", L"mole");
    const Property enthalpy = model.Enthalpy(Phase::kLiquid, 363.15, 85000, x);
    EXPECT_EQ(enthalpy.value, OfPhase(material.Get(), L"enthalpy", L"Liquid", L"mole")[0]);
    EXPECT_EQ(enthalpy.dT, OfPhase(material.Get(), L"enthalpy.Dtemperature", L"Liquid", L"mole")[0]);
    EXPECT_EQ(enthalpy.dT, OfPhase(material.Get(), L"heatCapacityCp", L"Liquid", L"mole")[0]);
    EXPECT_EQ(model.Fugacity(Phase::kLiquid, 363.15, 85000, x).dn,
              OfPhase(material.Get(), L"fugacity.Dmoles", L"Liquid", L""));
    // On a mass basis: both liquids have a density near 800 kg/m3 at 90 degrees.
    EXPECT_NEAR(800, OfPhase(material.Get(), L"density", L"Liquid", L"mass")[0], 10);
}

TEST_F(SamplePackageTest, CalculatesFugacityCoefficientsFromItsArguments)
{
    _variant_t logPhi, byT, byP, byN;
    // Without a material, the compounds are the package's own three. An output that is not requested stays unchanged.
    V_VT(&byT) = VT_I4;
    V_I4(&byT) = 42;
    ASSERT_EQ(S_OK, properties->CalcAndGetLnPhi(B(L"Liquid"), 363.15, 85000, MakeDoubles({{1.0, 1.0, 1.0}}),
                                                CAPE_LOG_FUGACITY_COEFFICIENTS | CAPE_P_DERIVATIVE, &logPhi, &byT, &byP,
                                                &byN));
    // ln(136497 / 85000) = 0.47365.
    EXPECT_NEAR(0.47365, ReadDoubles(logPhi, L"lnPhi")[0], 1e-4);
    EXPECT_EQ(-1 / 85000.0, ReadDoubles(byP, L"lnPhiDP")[2]);
    EXPECT_EQ(42, V_I4(&byT));
    EXPECT_EQ(VT_EMPTY, V_VT(&byN));

    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              properties->CalcAndGetLnPhi(B(L"Liquid"), 363.15, 85000, MakeDoubles({{1.0, 1.0}}), 1, &logPhi, &byT,
                                          &byP, &byN));
    EXPECT_EQ(L"There are 2 amounts for 3 compounds", Description(package.Get()));
}

// A bad call returns a code for its kind of error, and leaves a description of what was wrong.
TEST_F(SamplePackageTest, ExplainsBadCalls)
{
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR),
              properties->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), B(L"Liquid")));
    EXPECT_EQ(L"ECapeBadInvOrder", ErrorName(package.Get()));
    _bstr_t operation;
    EXPECT_EQ(S_OK, Query<ECapeBadInvOrder>(package.Get())->get_requestedOperation(operation.GetAddress()));
    EXPECT_STREQ(L"SetMaterial", operation);

    const ComPtr<ICapeThermoMaterial> material = SetMaterial(363.15, 85000);
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              properties->CalcSinglePhaseProp(MakeStrings({L"colour"}), B(L"Liquid")));
    EXPECT_EQ(L"The single-phase property \"colour\" is not calculated", Description(package.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              properties->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), B(L"Solid")));
    EXPECT_EQ(L"There is no phase \"Solid\"", Description(package.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              properties->CalcSinglePhaseProp(_variant_t(7L), B(L"Liquid")));
    EXPECT_EQ(L"Argument props must be a one-dimensional array of strings", Description(package.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeLimitedImplHR),
              Flash({L"temperature", L"", L"Overall"}, {L"enthalpy", L"mole", L"Overall"}));
    EXPECT_EQ(static_cast<HRESULT>(ECapeLimitedImplHR),
              equilibrium->CalcEquilibrium(MakeStrings({L"temperature", L"", L"Overall"}),
                                           MakeStrings({L"pressure", L"", L"Overall"}), B(L"Retrograde")));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), context->SetMaterial(nullptr));

    // The state of the phases has never been set, so the material's own failure is returned.
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
              properties->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), B(L"Liquid")));
    EXPECT_EQ(L"Material object: The material object has no \"fraction\" on basis \"mole\"",
              Description(package.Get()));
}

TEST_F(SamplePackageTest, GivesTheBoundsThatWereCrossed)
{
    _variant_t values;
    EXPECT_EQ(
        static_cast<HRESULT>(ECapeOutOfBoundsHR),
        compounds->GetTDependentProperty(MakeStrings({L"volumeOfLiquid"}), 600, MakeStrings({L"Benzene"}), &values));
    EXPECT_EQ(L"The temperature 600 is not between 200 and 562.05", Description(package.Get()));
    const auto bounds = Query<ECapeBoundaries>(package.Get());
    double lower = 0, upper = 0, value = 0;
    _bstr_t type;
    EXPECT_EQ(S_OK, bounds->get_LowerBound(&lower));
    EXPECT_EQ(S_OK, bounds->get_UpperBound(&upper));
    EXPECT_EQ(S_OK, bounds->get_value(&value));
    EXPECT_EQ(S_OK, bounds->get_Type(type.GetAddress()));
    EXPECT_EQ(200, lower);
    EXPECT_EQ(562.05, upper);
    EXPECT_EQ(600, value);
    EXPECT_STREQ(L"temperature", type);
}

TEST_F(SamplePackageTest, LeavesTheErrorAlsoInErrorInfo)
{
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(
        S_OK,
        Query<ISupportErrorInfo>(package.Get())->InterfaceSupportsErrorInfo(__uuidof(ICapeThermoPropertyRoutine)));
    EXPECT_EQ(S_FALSE, Query<ISupportErrorInfo>(package.Get())->InterfaceSupportsErrorInfo(IID_IStream));
    properties->CalcSinglePhaseProp(MakeStrings({L"colour"}), B(L"Liquid"));
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(S_OK, GetErrorInfo(0, &info));
    _bstr_t description, source;
    GUID iid{};
    EXPECT_EQ(S_OK, info->GetDescription(description.GetAddress()));
    EXPECT_EQ(S_OK, info->GetSource(source.GetAddress()));
    EXPECT_EQ(S_OK, info->GetGUID(&iid));
    EXPECT_EQ(L"No material object is set: call SetMaterial first", std::wstring(TextOf(description.GetBSTR())));
    EXPECT_STREQ(L"ZeltSample.PropertyPackage", source);
    EXPECT_TRUE(IsEqualIID(iid, __uuidof(ICapeThermoPropertyRoutine)));
}

TEST_F(SamplePackageTest, HoldsTheMaterialUntilItIsTakenBack)
{
    const ComPtr<ICapeThermoMaterial> material = MakeMaterial({L"Benzene"});
    const auto references = [&] {
        material->AddRef();
        return material->Release();
    };
    const ULONG before = references();
    ComPtr<IDispatch> dispatch = Query<IDispatch>(material.Get());
    ASSERT_EQ(S_OK, context->SetMaterial(dispatch.Get()));
    dispatch.Reset();
    EXPECT_GT(references(), before);
    ASSERT_EQ(S_OK, context->UnsetMaterial());
    EXPECT_EQ(before, references());

    // Terminate also releases the material, and so does the package's end.
    ASSERT_EQ(S_OK, context->SetMaterial(Query<IDispatch>(material.Get()).Get()));
    ASSERT_EQ(S_OK, Query<ICapeUtilities>(package.Get())->Terminate());
    EXPECT_EQ(before, references());
    ASSERT_EQ(S_OK, context->SetMaterial(Query<IDispatch>(material.Get()).Get()));
    compounds.Reset(), context.Reset(), equilibrium.Reset(), properties.Reset(), package.Reset();
    EXPECT_EQ(before, references());
}

TEST_F(SamplePackageTest, RefusesAMaterialWithAForeignCompoundAndKeepsTheFormer)
{
    const ComPtr<ICapeThermoMaterial> material = SetMaterial(363.15, 85000);
    const ComPtr<ICapeThermoMaterial> foreign = MakeMaterial({L"Benzene", L"Water"});
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              context->SetMaterial(Query<IDispatch>(foreign.Get()).Get()));
    EXPECT_EQ(S_OK, Flash({L"temperature", L"", L"Overall"}, {L"pressure", L"", L"Overall"}));
}

TEST_F(SamplePackageTest, TellsWhatItSupports)
{
    VARIANT_BOOL valid = VARIANT_FALSE;
    EXPECT_EQ(S_OK, properties->CheckSinglePhasePropSpec(B(L"Enthalpy.dTemperature"), B(L"vapor"), &valid));
    EXPECT_EQ(VARIANT_TRUE, valid);
    EXPECT_EQ(S_OK, properties->CheckSinglePhasePropSpec(B(L"enthalpy.Dmoles"), B(L"Vapor"), &valid));
    EXPECT_EQ(VARIANT_FALSE, valid);
    EXPECT_EQ(S_OK, properties->CheckTwoPhasePropSpec(B(L"logKvalue"), MakeStrings({L"Liquid", L"Vapor"}), &valid));
    EXPECT_EQ(VARIANT_TRUE, valid);
    EXPECT_EQ(S_OK, properties->CheckTwoPhasePropSpec(B(L"kvalue"), MakeStrings({L"Vapor", L"Vapor"}), &valid));
    EXPECT_EQ(VARIANT_FALSE, valid);
    EXPECT_EQ(S_OK, equilibrium->CheckEquilibriumSpec(MakeStrings({L"enthalpy", L"mole", L"Overall"}),
                                                      MakeStrings({L"pressure", L"", L"Overall"}), nullptr, &valid));
    EXPECT_EQ(VARIANT_TRUE, valid);
    EXPECT_EQ(S_OK, equilibrium->CheckEquilibriumSpec(MakeStrings({L"enthalpy", L"mole", L"Overall"}),
                                                      MakeStrings({L"entropy", L"mole", L"Overall"}), nullptr, &valid));
    EXPECT_EQ(VARIANT_FALSE, valid);
}

TEST(SampleMaterial, KeepsDoublesBitForBit)
{
    const ComPtr<ICapeThermoMaterial> material = MakeMaterial({L"Benzene", L"Toluene"});
    const std::vector<double> values{std::bit_cast<double>(0x7FF8DEADBEEF0001ull), -0.0};
    ASSERT_EQ(S_OK, material->SetOverallProp(B(L"fraction"), B(L"Mole"), MakeDoubles(values)));
    const std::vector<double> back = Overall(material.Get(), L"Fraction", L"mole");
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(values[i]), std::bit_cast<std::uint64_t>(back[i]));
    }
}

TEST(SampleMaterial, RefusesWhatDoesNotFit)
{
    const ComPtr<ICapeThermoMaterial> material = MakeMaterial({L"Benzene", L"Toluene"});
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              material->SetOverallProp(B(L"fraction"), B(L"mole"), MakeDoubles({{1.0}})));
    EXPECT_EQ(L"1 values are not what \"fraction\" has", Description(material.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              material->SetOverallProp(B(L"temperature"), B(L""), MakeDoubles({{1.0, 2.0}})));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              material->SetPresentPhases(MakeStrings({L"Plasma"}), _variant_t()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR),
              material->SetSinglePhaseProp(B(L"temperature"), B(L"Liquid"), B(L""), MakeDoubles({{300.0}})));
    _variant_t values;
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
              material->GetOverallProp(B(L"enthalpy"), B(L"mole"), &values));
    EXPECT_EQ(VT_EMPTY, V_VT(&values));
}

TEST(SampleMaterial, ConvertsFractionsToMass)
{
    const ComPtr<ICapeThermoMaterial> material = MakeMaterial({L"Benzene", L"Toluene"});
    ASSERT_EQ(S_OK, material->SetOverallProp(B(L"fraction"), B(L"mole"), MakeDoubles({{0.5, 0.5}})));
    // 78.114 / (78.114 + 92.141) = 0.458806.
    EXPECT_NEAR(0.458806, Overall(material.Get(), L"fraction", L"mass")[0], 1e-6);
}

TEST(SampleMaterial, CopiesTheStateOfAnother)
{
    const ComPtr<ICapeThermoMaterial> material = MakeMaterial({L"Benzene", L"Toluene"});
    ASSERT_EQ(S_OK, material->SetOverallProp(B(L"temperature"), B(L""), MakeDoubles({{321.5}})));
    ASSERT_EQ(S_OK, material->SetPresentPhases(MakeStrings({L"Liquid"}), _variant_t()));
    ASSERT_EQ(S_OK,
              material->SetSinglePhaseProp(B(L"fraction"), B(L"Liquid"), B(L"mole"), MakeDoubles({{0.25, 0.75}})));
    ComPtr<IDispatch> created, source;
    ASSERT_EQ(S_OK, material->CreateMaterial(&created));
    ASSERT_EQ(S_OK, material.As(&source));
    const auto copy = Query<ICapeThermoMaterial>(created.Get());
    IDispatch* pointer = source.Get();
    ASSERT_EQ(S_OK, copy->CopyFromMaterial(&pointer));
    EXPECT_EQ(321.5, Overall(copy.Get(), L"temperature", L"")[0]);
    EXPECT_EQ((std::vector{0.25, 0.75}), OfPhase(copy.Get(), L"fraction", L"Liquid", L"mole"));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), copy->CopyFromMaterial(nullptr));
}

TEST(SampleVariant, ReadsArraysAsScriptsSendThem)
{
    // An array of VARIANTs with the indices 3 and 4, passed by reference.
    SAFEARRAYBOUND bound{2, 3};
    _variant_t owner;
    V_ARRAY(&owner) = SafeArrayCreate(VT_VARIANT, 1, &bound);
    V_VT(&owner) = VT_ARRAY | VT_VARIANT;
    for (long i = 3; i < 5; ++i) {
        _variant_t element(i == 3 ? _variant_t(1.5) : _variant_t(2L));
        ASSERT_EQ(S_OK, SafeArrayPutElement(V_ARRAY(&owner), &i, &element));
    }
    VARIANT reference;
    V_VT(&reference) = VT_ARRAY | VT_VARIANT | VT_BYREF;
    V_ARRAYREF(&reference) = &V_ARRAY(&owner);
    EXPECT_EQ((std::vector{1.5, 2.0}), ReadDoubles(reference, L"values"));
    EXPECT_EQ(std::vector<std::wstring>{}, ReadStrings(_variant_t(), L"names"));
    EXPECT_THROW(ReadDoubles(MakeStrings({L"not a number"}), L"values"), CapeFailure);
}

// The keys of a registration, in a scratch key that replaces HKEY_CLASSES_ROOT.
TEST(SampleRegistration, RemovesExactlyWhatItWrites)
{
    constexpr const wchar_t* kScratch = L"Software\\ZeltSampleRegistrationTest";
    HKEY scratch = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, kScratch, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                             KEY_ALL_ACCESS, nullptr, &scratch, nullptr));
    HKEY clsid = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(scratch, L"CLSID", 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                                             nullptr, &clsid, nullptr));
    RegCloseKey(clsid);
    ASSERT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CLASSES_ROOT, scratch));

    const ComponentClass classes[] = {{kPropertyPackageClass,
                                       L"ZeltSampleTest.Package",
                                       L"A name",
                                       L"A description",
                                       L"1.1",
                                       {kPropertyPackage11, kCapeOpenObject}}};
    const HRESULT registered = RegisterComponents(classes);
    wchar_t text[64] = L"";
    DWORD size = sizeof(text);
    const LSTATUS read = RegGetValueW(scratch, L"CLSID\\{26100AA3-1793-4E26-BD43-EB046B57CFB0}\\CapeDescription",
                                      L"Name", RRF_RT_REG_SZ, nullptr, text, &size);
    HKEY category = nullptr;
    const LSTATUS categorised = RegOpenKeyExW(scratch,
                                              L"CLSID\\{26100AA3-1793-4E26-BD43-EB046B57CFB0}\\Implemented Categories\\"
                                              L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}",
                                              0, KEY_READ, &category);
    if (category) RegCloseKey(category);
    const HRESULT unregistered = UnregisterComponents(classes);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);

    DWORD keys = 99, inside = 99;
    RegQueryInfoKeyW(scratch, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr);
    RegOpenKeyExW(scratch, L"CLSID", 0, KEY_READ, &clsid);
    RegQueryInfoKeyW(clsid, nullptr, nullptr, nullptr, &inside, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr);
    RegCloseKey(clsid);
    RegCloseKey(scratch);
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);

    EXPECT_EQ(S_OK, registered);
    EXPECT_EQ(ERROR_SUCCESS, read);
    EXPECT_STREQ(L"A name", text);
    EXPECT_EQ(ERROR_SUCCESS, categorised);
    EXPECT_EQ(S_OK, unregistered);
    EXPECT_EQ(1u, keys) << "CLSID alone was there before";
    EXPECT_EQ(0u, inside);
}

}  // namespace
