#include "sample_fixture.h"

#include <bit>
#include <cstdint>

#include "samples/component/text.h"
#include "samples/package/property_package.h"
#include "samples/package/property_package10.h"
#include "samples/package/thermo_system.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

class SamplePackage10Test : public SampleTest {
protected:
    void SetUp() override
    {
        ComPtr<ICapeThermoSystem> system;
        ASSERT_EQ(S_OK, com::Create<ThermoSystem>(IID_PPV_ARGS(&system)));
        ASSERT_EQ(S_OK, system->ResolvePropertyPackage(B(L"AROMATICS"), &package));
        properties = Query<ICapeThermoPropertyPackage>(package.Get());
        // The package has these compounds in the opposite order.
        SetCompounds({L"Toluene", L"Benzene"});
        material = MakeMaterial<ICapeThermoMaterialObject>();
        dispatch = Query<IDispatch>(material.Get());
        Set(L"temperature", L"Overall", L"", {{363.15}});
        Set(L"pressure", L"Overall", L"", {{85000.0}});
        Set(L"fraction", L"Overall", L"mole", {{0.5, 0.5}});
    }
    void TearDown() override { flowsheet->link->package.Reset(); }

    void Set(const wchar_t* property, const wchar_t* phase, const wchar_t* basis, std::span<const double> values)
    {
        EXPECT_EQ(S_OK,
                  material->SetProp(B(property), B(phase), _variant_t(), B(L"Mixture"), B(basis), MakeDoubles(values)));
    }
    std::vector<double> Get(const wchar_t* property, const wchar_t* phase, const wchar_t* basis,
                            const wchar_t* calcType = L"Mixture")
    {
        _variant_t values;
        EXPECT_EQ(S_OK, material->GetProp(B(property), B(phase), _variant_t(), B(calcType), B(basis), &values))
            << Description(material.Get()).c_str();
        return ReadDoubles(values, L"results");
    }
    HRESULT Flash(const wchar_t* type) { return properties->CalcEquilibrium(dispatch.Get(), B(type), _variant_t()); }

    ComPtr<IDispatch> package, dispatch;
    ComPtr<ICapeThermoPropertyPackage> properties;
    ComPtr<ICapeThermoMaterialObject> material;
};

TEST(SampleThermoSystem, ListsItsPackagesAndNamesTheOneThatItLacks)
{
    ComPtr<ICapeThermoSystem> system;
    ASSERT_EQ(S_OK, com::Create<ThermoSystem>(IID_PPV_ARGS(&system)));
    _variant_t names;
    ASSERT_EQ(S_OK, system->GetPropertyPackages(&names));
    EXPECT_EQ((std::vector<std::wstring>{L"Aromatics", L"Alcohols"}), ReadStrings(names, L"names"));
    IDispatch* package = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), system->ResolvePropertyPackage(B(L"Steam"), &package));
    EXPECT_EQ(nullptr, package);
    EXPECT_EQ(L"There is no property package \"Steam\"", Description(system.Get()));
}

TEST_F(SamplePackage10Test, FlashesInTheOrderOfTheMaterial)
{
    ASSERT_EQ(S_OK, Flash(L"tp")) << Description(package.Get()).c_str();
    // The case calculated by hand in the tests of the flash, with toluene first.
    EXPECT_NEAR(1 - 0.37342, Get(L"fraction", L"Liquid", L"mole", L"")[0], 2e-5);
    EXPECT_NEAR(0.59965, Get(L"fraction", L"Vapor", L"mole", L"")[1], 2e-5);
    EXPECT_NEAR(0.5595, Get(L"phaseFraction", L"Vapor", L"mole")[0], 1e-4);
    _variant_t phases;
    ASSERT_EQ(S_OK, material->get_PhaseIds(&phases));
    EXPECT_EQ((std::vector<std::wstring>{L"Vapor", L"Liquid"}), ReadStrings(phases, L"phases"));
}

TEST_F(SamplePackage10Test, SetsTheOverallValueThatWasNotGiven)
{
    Set(L"pressure", L"Overall", L"", {{95403.0}});
    Set(L"phaseFraction", L"Vapor", L"mole", {{0.0}});
    ASSERT_EQ(S_OK, Flash(L"PVF")) << Description(package.Get()).c_str();
    EXPECT_NEAR(363.15, Get(L"temperature", L"Overall", L"")[0], 1e-2);
    EXPECT_EQ(1, Get(L"phaseFraction", L"Liquid", L"mole")[0]);
}

// Both versions are shells around one model, so their numbers agree bit for bit.
TEST_F(SamplePackage10Test, CalculatesWhatTheNewerVersionDoes)
{
    ASSERT_EQ(S_OK, Flash(L"TP"));
    ASSERT_EQ(S_OK, properties->CalcProp(dispatch.Get(), MakeStrings({L"enthalpy", L"fugacity.Dmoles"}),
                                         MakeStrings({L"Liquid"}), B(L"mixture")));
    ComPtr<IDispatch> newer;
    ASSERT_EQ(S_OK, com::Create<PropertyPackage>(IID_PPV_ARGS(&newer)));
    const auto state = Query<ICapeThermoMaterial>(material.Get());
    const std::vector<double> enthalpy = Get(L"enthalpy", L"Liquid", L"mole");
    const std::vector<double> derivatives = Get(L"fugacity.Dmoles", L"Liquid", L"");
    ASSERT_EQ(1u, enthalpy.size());
    ASSERT_EQ(4u, derivatives.size());
    // In the newer version, each phase has its own temperature and pressure.
    EXPECT_EQ(S_OK, state->SetSinglePhaseProp(B(L"temperature"), B(L"Liquid"), B(L""), MakeDoubles({{363.15}})));
    EXPECT_EQ(S_OK, state->SetSinglePhaseProp(B(L"pressure"), B(L"Liquid"), B(L""), MakeDoubles({{85000.0}})));
    EXPECT_EQ(S_OK, Query<ICapeThermoMaterialContext>(newer.Get())->SetMaterial(dispatch.Get()));
    EXPECT_EQ(S_OK, Query<ICapeThermoPropertyRoutine>(newer.Get())
                        ->CalcSinglePhaseProp(MakeStrings({L"enthalpy", L"fugacity.Dmoles"}), B(L"Liquid")));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(enthalpy[0]),
              std::bit_cast<std::uint64_t>(Get(L"enthalpy", L"Liquid", L"mole")[0]));
    EXPECT_EQ(derivatives, Get(L"fugacity.Dmoles", L"Liquid", L""));
}

TEST_F(SamplePackage10Test, CalculatesPureCompoundsApartFromTheMixture)
{
    ASSERT_EQ(S_OK, Flash(L"TP"));
    const _variant_t names = MakeStrings({L"volume"}), phases = MakeStrings({L"Liquid"});
    ASSERT_EQ(S_OK, properties->CalcProp(dispatch.Get(), names, phases, B(L"Mixture")));
    ASSERT_EQ(S_OK, properties->CalcProp(dispatch.Get(), names, phases, B(L"Pure")));
    const std::vector<double> pure = Get(L"volume", L"Liquid", L"mole", L"Pure");
    const std::vector<double> x = Get(L"fraction", L"Liquid", L"mole", L"");
    ASSERT_EQ(2u, pure.size());
    // Volumes of an ideal solution are additive.
    EXPECT_NEAR(x[0] * pure[0] + x[1] * pure[1], Get(L"volume", L"Liquid", L"mole")[0], 1e-12);
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              properties->CalcProp(dispatch.Get(), MakeStrings({L"fugacity.Dmoles"}), phases, B(L"Pure")));
}

TEST_F(SamplePackage10Test, GivesConstantsOfTheMaterialsCompounds)
{
    _variant_t values, all;
    ASSERT_EQ(S_OK, properties->GetComponentConstant(dispatch.Get(), MakeStrings({L"molecularWeight"}), &values));
    EXPECT_EQ((std::vector{92.141, 78.114}), ReadDoubles(values, L"values"));
    ASSERT_EQ(S_OK, properties->GetComponentConstant(nullptr, MakeStrings({L"molecularWeight"}), &all));
    EXPECT_EQ((std::vector{78.114, 92.141, 106.167}), ReadDoubles(all, L"values"));
    _variant_t ids, formulae, names, boilingPoints, weights, numbers;
    ASSERT_EQ(S_OK, properties->GetComponentList(&ids, &formulae, &names, &boilingPoints, &weights, &numbers));
    EXPECT_EQ((std::vector<std::wstring>{L"Benzene", L"Toluene", L"o-Xylene"}), ReadStrings(ids, L"ids"));
    EXPECT_EQ((std::vector<std::wstring>{L"71-43-2", L"108-88-3", L"95-47-6"}), ReadStrings(numbers, L"numbers"));
}

TEST_F(SamplePackage10Test, TellsWhatItSupports)
{
    _variant_t valid, names;
    ASSERT_EQ(S_OK, properties->PropCheck(dispatch.Get(), MakeStrings({L"Enthalpy", L"colour"}), &valid));
    EXPECT_EQ((std::vector{true, false}), ReadBooleans(valid, L"valid"));
    EXPECT_EQ(VT_ARRAY | VT_BOOL, V_VT(&valid));
    Set(L"temperature", L"Overall", L"", {{1200.0}});
    ASSERT_EQ(S_OK, properties->ValidityCheck(dispatch.Get(), MakeStrings({L"enthalpy"}), &names));
    EXPECT_EQ(std::vector{false}, ReadBooleans(names, L"valid"));
}

TEST_F(SamplePackage10Test, ExplainsBadCalls)
{
    EXPECT_EQ(static_cast<HRESULT>(ECapeLimitedImplHR), Flash(L"HS"));
    EXPECT_EQ(L"Flashes of type \"HS\" are not calculated", Description(package.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              properties->CalcEquilibrium(nullptr, B(L"TP"), _variant_t()));
    EXPECT_EQ(
        static_cast<HRESULT>(ECapeInvalidArgumentHR),
        properties->CalcProp(dispatch.Get(), MakeStrings({L"enthalpy"}), MakeStrings({L"Liquid"}), B(L"Partial")));
    EXPECT_EQ(L"There is no type of calculation \"Partial\"", Description(package.Get()));
    // There was no flash, so the package returns the failure of the material.
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
              properties->CalcProp(dispatch.Get(), MakeStrings({L"enthalpy"}), MakeStrings({L"Liquid"}), nullptr));
    EXPECT_EQ(L"Material object: The material object has no phase \"Liquid\"", Description(package.Get()));
}

// The parameters of a property package have the effects that their descriptions promise. The next two tests cover the valid
// message levels.
TEST_F(SamplePackage10Test, HeedsItsParameters)
{
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Phases", _variant_t(L"liquid only")));
    ASSERT_EQ(S_OK, Flash(L"TP"));
    _variant_t phases;
    ASSERT_EQ(S_OK, material->get_PhaseIds(&phases));
    EXPECT_EQ(std::vector<std::wstring>{L"Liquid"}, ReadStrings(phases, L"phases"));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), Flash(L"PVF"));
    EXPECT_EQ(L"A flash at given phase fraction needs both phases", Description(package.Get()));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Phases", _variant_t(L"vapor and liquid")));

    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Highest pressure", _variant_t(84999.0)));
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), Flash(L"TP"));
    EXPECT_EQ(L"The pressure 85000 is not between 0 and 84999", Description(package.Get()));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Highest pressure", _variant_t(1e6)));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Temperature limits", MakeDoubles({{200.0, 363.0}})));
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), Flash(L"TP"));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Temperature limits", MakeDoubles({{200.0, 364.0}})));
    EXPECT_EQ(S_OK, Flash(L"TP"));
    Set(L"fraction", L"Overall", L"mole", {{0.5, 0.6}});
    EXPECT_EQ(S_OK, Flash(L"TP"));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Check fractions", _variant_t(true)));
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), Flash(L"TP"));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Message level", _variant_t(7L)));
    EXPECT_EQ(S_OK, Query<ICapeUtilities>(package.Get())->put_simulationContext(MakeContext().Get()));
    Set(L"fraction", L"Overall", L"mole", {{0.5, 0.5}});
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidOperationHR), Flash(L"TP"));
    EXPECT_EQ(L"Parameter \"Message level\": 7 is not between 0 and 2", Description(package.Get()));
}

TEST_F(SamplePackage10Test, UsesTheContextAndGivesItBack)
{
    const auto utilities = Query<ICapeUtilities>(package.Get());
    ComPtr<IDispatch> context = MakeContext();
    EXPECT_EQ(S_OK, utilities->put_simulationContext(context.Get()));
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(S_OK, Flash(L"TP"));
    EXPECT_EQ(S_OK, Flash(L"TP"));
    EXPECT_EQ(S_OK, utilities->Terminate());
    EXPECT_EQ((std::vector<std::wstring>{
                  L"Aromatics: ready, hosted by SampleSimulator",
                  L"Aromatics: a material of template \"Feed\" at 298.15 K has 2 compounds; all are known",
                  L"Aromatics: at its end"}),
              messages);
    context->AddRef();
    EXPECT_EQ(1u, context->Release());
}

TEST_F(SamplePackage10Test, TellsOfUnknownCompoundsAndOfEachCalculationWhenAsked)
{
    SetCompounds({L"Toluene", L"Steam"});
    EXPECT_EQ(S_OK, SetParameter(package.Get(), L"Message level", _variant_t(2L)));
    EXPECT_EQ(S_OK, Query<ICapeUtilities>(package.Get())->put_simulationContext(MakeContext().Get()));
    EXPECT_EQ(S_OK, Flash(L"TP"));
    EXPECT_EQ((std::vector<std::wstring>{
                  L"Aromatics: a material of template \"Feed\" at 298.15 K has 2 compounds; unknown: Steam",
                  L"Aromatics: flash calculated"}),
              messages);
    EXPECT_EQ(S_OK, SetParameter(package.Get(), L"Message level", _variant_t(0L)));
    messages.clear();
    EXPECT_EQ(S_OK, Flash(L"TP"));
    EXPECT_EQ(std::vector<std::wstring>{}, messages);
}

TEST_F(SamplePackage10Test, CalculatesForAMaterialThatAsks)
{
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR), material->CalcEquilibrium(B(L"TP"), _variant_t()));
    flowsheet->link->package = properties;
    EXPECT_EQ(S_OK, material->CalcEquilibrium(B(L"TP"), MakeStrings({L"enthalpy"})));
    EXPECT_EQ(1u, Get(L"enthalpy", L"Vapor", L"mole").size());
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              material->CalcProp(MakeStrings({L"colour"}), MakeStrings({L"Liquid"}), B(L"Mixture")));
    EXPECT_EQ(L"Property package: The single-phase property \"colour\" is not calculated", Description(material.Get()));
}

TEST_F(SamplePackage10Test, KeepsResultsOfAMaterialUntilTheyAreRemoved)
{
    ASSERT_EQ(S_OK, Flash(L"TP"));
    ComPtr<IDispatch> clone, created;
    ASSERT_EQ(S_OK, material->Duplicate(&clone));
    ASSERT_EQ(S_OK, material->CreateMaterialObject(&created));
    EXPECT_EQ(S_OK, material->RemoveResults(_variant_t()));
    _variant_t phases, values;
    EXPECT_EQ(S_OK, material->get_PhaseIds(&phases));
    EXPECT_EQ(std::vector<std::wstring>{}, ReadStrings(phases, L"phases"));
    EXPECT_EQ(363.15, Get(L"temperature", L"Liquid", L"")[0]) << "the overall temperature is that of every phase";
    EXPECT_EQ(S_OK,
              Query<ICapeThermoMaterialObject>(clone.Get())
                  ->GetProp(B(L"fraction"), B(L"Vapor"), MakeStrings({L"Benzene"}), nullptr, B(L"mole"), &values));
    EXPECT_NEAR(0.59965, ReadDoubles(values, L"values").at(0), 2e-5);
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
              Query<ICapeThermoMaterialObject>(created.Get())
                  ->GetProp(B(L"temperature"), B(L"Overall"), _variant_t(), nullptr, nullptr, &values));
    EXPECT_EQ(static_cast<HRESULT>(ECapeLimitedImplHR),
              material->SetProp(B(L"fraction"), B(L"Overall"), MakeStrings({L"Benzene"}), nullptr, B(L"mole"),
                                MakeDoubles({{1.0}})));
}

TEST_F(SamplePackage10Test, ServesScriptsThroughIDispatch)
{
    LPOLESTR name = const_cast<LPOLESTR>(L"GetPhaseList");
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(S_OK, package->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id));
    DISPPARAMS none{};
    _variant_t phases;
    ASSERT_EQ(S_OK, package->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &none, &phases, nullptr, nullptr));
    EXPECT_EQ((std::vector<std::wstring>{L"Vapor", L"Liquid"}), ReadStrings(phases, L"phases"));
}

TEST(SamplePackage11, CarriesTheSameParametersAndContext)
{
    ComPtr<IDispatch> package, collection;
    ASSERT_EQ(S_OK, com::Create<PropertyPackage>(IID_PPV_ARGS(&package)));
    ASSERT_EQ(S_OK, Query<ICapeUtilities>(package.Get())->get_parameters(&collection));
    long count = 0;
    EXPECT_EQ(S_OK, Query<ICapeCollection>(collection.Get())->Count(&count));
    EXPECT_EQ(5, count);
}

}  // namespace
}  // namespace zelt::sample
