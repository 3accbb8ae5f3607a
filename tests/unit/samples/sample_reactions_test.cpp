#include "sample_fixture.h"

#include <cape-open-thermo-context.h>

#include <cmath>

#include "samples/component/text.h"
#include "samples/reactions/reaction.h"
#include "samples/reactions/reaction_package.h"
#include "samples/reactions/reaction_package_manager.h"
#include "samples/material/reaction_object.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

class SampleReactionsTest : public SampleTest {
protected:
    void Open(const wchar_t* name)
    {
        ComPtr<ICapeReactionsPackageManager> manager;
        ASSERT_EQ(S_OK, com::Create<ReactionPackageManager>(IID_PPV_ARGS(&manager)));
        ASSERT_EQ(S_OK, manager->ResolveReactionsPackage(B(name), &package));
        chemistry = Query<ICapeReactionChemistry>(package.Get());
        routine = Query<ICapeReactionsRoutine>(package.Get());
    }

    // Passes to the package a material of these compounds in equal parts, in both phases, and a reaction object.
    void SetObjects(std::initializer_list<const wchar_t*> ids, double temperature, double pressure = 101325)
    {
        SetCompounds(ids);
        material = MakeMaterial<ICapeThermoMaterial>();
        EXPECT_EQ(S_OK, material->SetPresentPhases(MakeStrings({L"Vapor", L"Liquid"}), _variant_t()));
        const std::vector<double> parts(ids.size(), 1.0 / static_cast<double>(ids.size()));
        for (const wchar_t* label : {L"Vapor", L"Liquid"}) {
            EXPECT_EQ(S_OK,
                      material->SetSinglePhaseProp(B(L"temperature"), B(label), B(L""), MakeDoubles({{temperature}})));
            EXPECT_EQ(S_OK, material->SetSinglePhaseProp(B(L"pressure"), B(label), B(L""), MakeDoubles({{pressure}})));
            EXPECT_EQ(S_OK, material->SetSinglePhaseProp(B(L"fraction"), B(label), B(L"mole"), MakeDoubles(parts)));
        }
        EXPECT_EQ(
            S_OK,
            Query<ICapeThermoMaterialContext>(package.Get())->SetMaterial(Query<IDispatch>(material.Get()).Get()));
        ComPtr<IDispatch> object;
        EXPECT_EQ(S_OK, com::Create<ReactionObject>(IID_PPV_ARGS(&object)));
        results = Query<ICapeReactionProperties>(object.Get());
        IDispatch* pointer = object.Get();
        EXPECT_EQ(S_OK, Query<ICapeKineticReactionContext>(package.Get())->SetReactionObject(&pointer));
    }

    HRESULT Calculate(const wchar_t* property, const wchar_t* reaction, const wchar_t* phase = L"Vapor")
    {
        return routine->CalcReactionProp(MakeStrings({property}), B(phase), MakeStrings({reaction}), B(L"mole"));
    }

    double Value(const wchar_t* property, const wchar_t* reaction, const wchar_t* phase = L"Vapor")
    {
        _variant_t values;
        EXPECT_EQ(S_OK, Calculate(property, reaction, phase)) << Description(package.Get()).c_str();
        EXPECT_EQ(S_OK, results->GetReactionProp(B(property), B(phase), MakeStrings({reaction}), B(L"mole"), &values));
        const std::vector<double> numbers = ReadDoubles(values, L"propVals");
        return numbers.size() == 1 ? numbers[0] : std::nan("");
    }

    HRESULT SetOfReaction(const wchar_t* reaction, const wchar_t* name, const _variant_t& value)
    {
        ComPtr<IDispatch> collection;
        EXPECT_EQ(S_OK, chemistry->GetReactionParameters(B(reaction), &collection));
        return SetIn(collection.Get(), name, value);
    }

    ComPtr<IDispatch> package;
    ComPtr<ICapeReactionChemistry> chemistry;
    ComPtr<ICapeReactionsRoutine> routine;
    ComPtr<ICapeThermoMaterial> material;
    ComPtr<ICapeReactionProperties> results;
};

TEST(SampleReactionManager, ListsItsPackagesAndNamesTheOneThatItLacks)
{
    ComPtr<ICapeReactionsPackageManager> manager;
    ASSERT_EQ(S_OK, com::Create<ReactionPackageManager>(IID_PPV_ARGS(&manager)));
    _variant_t names;
    ASSERT_EQ(S_OK, manager->GetListOfReactionsPackages(&names));
    EXPECT_EQ((std::vector<std::wstring>{L"Hydrogen", L"Nitrogen oxides", L"Carbonate"}), ReadStrings(names, L"names"));
    IDispatch* package = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), manager->ResolveReactionsPackage(B(L"Fire"), &package));
    EXPECT_EQ(nullptr, package);
    EXPECT_EQ(L"There is no reaction package \"Fire\"", Description(manager.Get()));
}

// Mass is conserved: every element balances, and so does the charge. The elements of each compound are counted by hand.
TEST(SampleReactions, AreBalanced)
{
    const struct {
        const wchar_t* id;
        double c, h, n, o, charge;
    } compounds[] = {
        {L"Carbon monoxide", 1, 0, 0, 1, 0},
        {L"Water", 0, 2, 0, 1, 0},
        {L"Carbon dioxide", 1, 0, 0, 2, 0},
        {L"Hydrogen", 0, 2, 0, 0, 0},
        {L"Nitrogen", 0, 0, 2, 0, 0},
        {L"Ammonia", 0, 3, 1, 0, 0},
        {L"Toluene", 7, 8, 0, 0, 0},
        {L"Benzene", 6, 6, 0, 0, 0},
        {L"Methane", 1, 4, 0, 0, 0},
        {L"Dinitrogen pentoxide", 0, 0, 2, 5, 0},
        {L"Nitrogen dioxide", 0, 0, 1, 2, 0},
        {L"Oxygen", 0, 0, 0, 2, 0},
        {L"Dinitrogen tetroxide", 0, 0, 2, 4, 0},
        {L"Hydrogen ion", 0, 1, 0, 0, 1},
        {L"Hydroxide ion", 0, 1, 0, 1, -1},
        {L"Bicarbonate ion", 1, 1, 0, 3, -1},
        {L"Carbonate ion", 1, 0, 0, 3, -2},
    };
    int reactions = 0;
    for (const ReactionPackageDefinition& definition : AllReactionPackages()) {
        for (const Reaction& reaction : definition.reactions) {
            double c = 0, h = 0, n = 0, o = 0, charge = 0;
            bool base = false;
            for (const ReactionCompound& part : reaction.compounds) {
                bool known = false;
                for (const auto& row : compounds) {
                    if (std::wstring(row.id) != part.id) continue;
                    known = true;
                    c += part.coefficient * row.c;
                    h += part.coefficient * row.h;
                    n += part.coefficient * row.n;
                    o += part.coefficient * row.o;
                    charge += part.coefficient * row.charge;
                    EXPECT_EQ(row.charge, part.charge) << part.id;
                }
                EXPECT_TRUE(known) << part.id;
                base |= std::wstring(part.id) == reaction.baseReactant && part.coefficient < 0;
            }
            EXPECT_EQ((std::vector<double>{0, 0, 0, 0, 0}), (std::vector<double>{c, h, n, o, charge})) << reaction.id;
            EXPECT_TRUE(base) << reaction.id;
            ++reactions;
        }
    }
    EXPECT_EQ(8, reactions);
}

// The temperature derivatives of the rate constants, and of the logarithms of the equilibrium constants, agree with
// difference quotients.
TEST(SampleReactions, HaveTheSlopesOfTheirConstants)
{
    for (const ReactionPackageDefinition& definition : AllReactionPackages()) {
        for (const Reaction& reaction : definition.reactions) {
            constexpr double t = 400, step = 1e-2;
            if (reaction.kinetic) {
                const double slope =
                    (RateConstant(reaction.rate, t + step).value - RateConstant(reaction.rate, t - step).value) /
                    (2 * step);
                EXPECT_NEAR(1, RateConstant(reaction.rate, t).dT / slope, 1e-6) << reaction.id;
            } else {
                const auto& a = reaction.equilibrium.coefficients;
                const double slope =
                    (LogEquilibriumConstant(a, t + step).value - LogEquilibriumConstant(a, t - step).value) /
                    (2 * step);
                EXPECT_NEAR(slope, LogEquilibriumConstant(a, t).dT, 1e-7) << reaction.id;
            }
        }
    }
}

TEST_F(SampleReactionsTest, DescribesItsReactions)
{
    Open(L"hydrogen");
    long count = 0;
    _variant_t ids;
    EXPECT_EQ(S_OK, chemistry->GetNumberOfReactions(&count));
    EXPECT_EQ(3, count);
    EXPECT_EQ(S_OK, chemistry->GetReactionsIds(&ids));
    EXPECT_EQ((std::vector<std::wstring>{L"WaterGasShift", L"AmmoniaSynthesis", L"TolueneHydrodealkylation"}),
              ReadStrings(ids, L"ids"));

    _variant_t compounds, charges, numbers, coefficients, inPhase;
    EXPECT_EQ(S_OK, chemistry->GetReactionCompoundIds(B(L"ammoniasynthesis"), &compounds, &charges, &numbers));
    EXPECT_EQ((std::vector<std::wstring>{L"Nitrogen", L"Hydrogen", L"Ammonia"}), ReadStrings(compounds, L"ids"));
    EXPECT_EQ((std::vector<double>{0, 0, 0}), ReadDoubles(charges, L"charges"));
    EXPECT_EQ((std::vector<std::wstring>{L"7727-37-9", L"1333-74-0", L"7664-41-7"}), ReadStrings(numbers, L"numbers"));
    EXPECT_EQ(S_OK, chemistry->GetStoichiometricCoefficients(B(L"AmmoniaSynthesis"), &coefficients));
    EXPECT_EQ((std::vector<double>{-0.5, -1.5, 1}), ReadDoubles(coefficients, L"coefficients"));

    eCapeReactionType type = CAPE_EQUILIBRIUM;
    EXPECT_EQ(S_OK, chemistry->GetReactionType(B(L"TolueneHydrodealkylation"), &type));
    EXPECT_EQ(CAPE_KINETIC, type);
    eCapeReactionRateBasis basis = CAPE_HETEROGENEOUS;
    EXPECT_EQ(S_OK, chemistry->GetReactionRateBasis(B(L"TolueneHydrodealkylation"), &basis));
    EXPECT_EQ(CAPE_HOMOGENEOUS, basis);
    _bstr_t concentration, reactant, phase;
    EXPECT_EQ(S_OK, chemistry->GetReactionConcBasis(B(L"TolueneHydrodealkylation"), concentration.GetAddress()));
    EXPECT_STREQ(L"partial pressure", concentration);
    EXPECT_EQ(S_OK, chemistry->GetBaseReactant(B(L"TolueneHydrodealkylation"), reactant.GetAddress()));
    EXPECT_STREQ(L"Toluene", reactant);
    EXPECT_EQ(S_OK, chemistry->GetReactionPhase(B(L"TolueneHydrodealkylation"), phase.GetAddress()));
    EXPECT_STREQ(L"Vapor", phase);
    EXPECT_EQ(S_OK, chemistry->GetPhaseCompounds(B(L"WaterGasShift"), &count, &inPhase));
    EXPECT_EQ(9, count);
    EXPECT_EQ(9u, ReadStrings(inPhase, L"ids").size());
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), chemistry->GetReactionType(B(L"Fire"), &type));
    EXPECT_EQ(L"There is no reaction \"Fire\"", Description(package.Get()));
}

// K = exp(4577.8 / 700 - 4.33) = exp(2.209714) = 9.1131; its enthalpy is -R 4577.8 K = -38061.9 J/mol. In equal parts of
// all four compounds the quotient is 1.
TEST_F(SampleReactionsTest, ShiftsWaterGas)
{
    Open(L"Hydrogen");
    SetObjects({L"Water", L"Carbon dioxide", L"Hydrogen", L"Carbon monoxide"}, 700);
    EXPECT_NEAR(9.1131, Value(L"chemicalEquilibriumConstant", L"WaterGasShift"), 1e-4);
    EXPECT_NEAR(-38061.9, Value(L"enthalpyOfReaction", L"WaterGasShift"), 0.1);
    EXPECT_NEAR(1, Value(L"reactionQuotient", L"WaterGasShift"), 1e-12);
    // dK/dT = -K 4577.8 / T^2 = -9.1131 x 4577.8 / 490000 = -0.085138.
    EXPECT_NEAR(-0.085138, Value(L"chemicalEquilibriumConstant.Dtemperature", L"WaterGasShift"), 1e-6);
}

// log10 K = -2.691122 x 2.845098 - 0.038635 + 0.090594 + 2.859429 + 2.6899 = -2.055218, so K = 0.0088060 1/atm, which is
// 0.0088060 / 1.01325 = 0.0086909 1/bar. At 1 atm, with a quarter of each compound and a quarter of argon, the quotient is
// 0.25 / (0.25^0.5 x 0.25^1.5) = 4.
TEST_F(SampleReactionsTest, MakesAmmoniaForTheStandardPressureThatIsAskedFor)
{
    Open(L"Hydrogen");
    SetObjects({L"Nitrogen", L"Hydrogen", L"Ammonia", L"Argon"}, 700);
    EXPECT_NEAR(0.0088060, Value(L"chemicalEquilibriumConstant", L"AmmoniaSynthesis"), 2e-7);
    EXPECT_NEAR(4, Value(L"reactionQuotient", L"AmmoniaSynthesis"), 1e-12);
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Standard pressure", _variant_t(L"1 bar")));
    EXPECT_NEAR(0.0086909, Value(L"chemicalEquilibriumConstant", L"AmmoniaSynthesis"), 2e-7);
    EXPECT_NEAR(4 / 1.01325, Value(L"reactionQuotient", L"AmmoniaSynthesis"), 1e-12);
}

// 3.6858e6 exp(-25616 / 900) = 3.6858e6 x 4.35527e-13 = 1.60526e-6 lb-mol/(min ft3 psi^1.5). One lb-mol/(min ft3) is
// 453.59237 / (60 x 0.02831685) = 266.975 mol/(m3 s), one psi^1.5 is 6894.757^1.5 = 572504 Pa^1.5: k = 7.4858e-10. At
// 1 atm with a quarter each of toluene and hydrogen p = 25331.25 Pa and p^1.5 = 4031670: the rate is 0.0030180.
TEST_F(SampleReactionsTest, TakesMethylFromToluene)
{
    Open(L"Hydrogen");
    SetObjects({L"Toluene", L"Hydrogen", L"Benzene", L"Methane"}, 900);
    EXPECT_NEAR(7.4858e-10, Value(L"rateConstant", L"TolueneHydrodealkylation"), 1e-14);
    EXPECT_NEAR(0.0030180, Value(L"reactionRate", L"TolueneHydrodealkylation"), 1e-7);
    // Partial pressures do not change with temperature, so the slope is the rate times 25616 / 900^2.
    EXPECT_NEAR(0.0030180 * 25616 / 810000, Value(L"reactionRate.Dtemperature", L"TolueneHydrodealkylation"), 1e-8);
}

// ln k = ln 4.94e13 - 103400 / (8.314463 x 338) = 31.530971 - 36.793380 = -5.262409, so k = 0.0051828 1/s. A quarter of
// the gas is 25331.25 / (8.314463 x 338) = 9.01376 mol/m3: the rate is 0.046717.
TEST_F(SampleReactionsTest, DecomposesDinitrogenPentoxide)
{
    Open(L"Nitrogen oxides");
    SetObjects({L"Nitrogen dioxide", L"Oxygen", L"Dinitrogen pentoxide", L"Dinitrogen tetroxide"}, 338);
    EXPECT_NEAR(0.0051828, Value(L"rateConstant", L"PentoxideDecomposition"), 2e-7);
    EXPECT_NEAR(0.046717, Value(L"reactionRate", L"PentoxideDecomposition"), 2e-6);
    // The gas expands as it warms, so the slope is the rate times (12436.16 / T - 1) / T.
    EXPECT_NEAR(0.046717 * (12436.16 / 338 - 1) / 338, Value(L"reactionRate.Dtemperature", L"PentoxideDecomposition"),
                1e-6);
}

// The Gibbs energy is 2 x 51310 - 97890 = 4730 J/mol: K = exp(-4730 / (8.314463 x 298.15)) = exp(-1.908060) = 0.148368 at
// 1 bar. The enthalpy is 2 x 33180 - 9160 = 57200 J/mol.
TEST_F(SampleReactionsTest, SplitsDinitrogenTetroxide)
{
    Open(L"Nitrogen oxides");
    SetObjects({L"Nitrogen dioxide", L"Dinitrogen tetroxide"}, 298.15);
    EXPECT_NEAR(0.148368, Value(L"chemicalEquilibriumConstant", L"TetroxideDissociation"), 2e-6);
    EXPECT_NEAR(57200, Value(L"enthalpyOfReaction", L"TetroxideDissociation"), 1e-6);
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Standard pressure", _variant_t(L"1 atm")));
    EXPECT_NEAR(0.148368 / 1.01325, Value(L"chemicalEquilibriumConstant", L"TetroxideDissociation"), 2e-6);
}

// The pK values at 25 degrees: 4470.99 / 298.15 + 0.01706 x 298.15 - 6.0875 = 13.9947 for water, and
// the textbook values 6.35 and 10.33 for carbonic acid.
TEST_F(SampleReactionsTest, DissociatesInWater)
{
    Open(L"Carbonate");
    SetObjects({L"Water"}, 298.15);
    const wchar_t* k = L"chemicalEquilibriumConstant";
    EXPECT_NEAR(-13.9947, std::log10(Value(k, L"WaterIonisation", L"Liquid")), 1e-4);
    EXPECT_NEAR(-6.35, std::log10(Value(k, L"CarbonicAcid", L"Liquid")), 5e-3);
    EXPECT_NEAR(-10.33, std::log10(Value(k, L"Bicarbonate", L"Liquid")), 5e-3);
    EXPECT_EQ(static_cast<HRESULT>(ECapeLimitedImplHR), Calculate(L"reactionQuotient", L"Bicarbonate", L"Liquid"));
}

TEST_F(SampleReactionsTest, HeedsTheParametersOfAReaction)
{
    Open(L"Hydrogen");
    SetObjects({L"Toluene", L"Hydrogen"}, 900);
    const double rate = Value(L"reactionRate", L"TolueneHydrodealkylation");
    const double before = Value(L"chemicalEquilibriumConstant", L"WaterGasShift");
    ASSERT_EQ(S_OK, SetOfReaction(L"TolueneHydrodealkylation", L"Pre-exponential factor", _variant_t(0.0)));
    EXPECT_EQ(0, Value(L"reactionRate", L"TolueneHydrodealkylation"));
    ASSERT_EQ(S_OK, SetOfReaction(L"TolueneHydrodealkylation", L"Pre-exponential factor", _variant_t(2.0)));
    ASSERT_EQ(S_OK, SetOfReaction(L"TolueneHydrodealkylation", L"Activation temperature", _variant_t(0.0)));
    // Of order 1 in toluene alone, whose partial pressure is half of 101325 Pa.
    ASSERT_EQ(S_OK, SetOfReaction(L"TolueneHydrodealkylation", L"Orders", MakeDoubles({{1.0, 0.0, 0.0, 0.0}})));
    EXPECT_DOUBLE_EQ(101325, Value(L"reactionRate", L"TolueneHydrodealkylation"));
    EXPECT_NE(rate, 101325);

    ASSERT_EQ(S_OK, SetOfReaction(L"WaterGasShift", L"Temperature approach", _variant_t(-200.0)));
    EXPECT_NEAR(9.1131, Value(L"chemicalEquilibriumConstant", L"WaterGasShift"), 1e-4) << "as at 700 K";
    EXPECT_NE(9.1131, before);
    ASSERT_EQ(S_OK,
              SetOfReaction(L"WaterGasShift", L"Equilibrium coefficients", MakeDoubles({{0.0, 0.0, 0.0, 0.0, 0.0}})));
    EXPECT_EQ(1, Value(L"chemicalEquilibriumConstant", L"WaterGasShift"));
    ASSERT_EQ(S_OK, SetOfReaction(L"WaterGasShift", L"Enabled", _variant_t(false)));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidOperationHR),
              Calculate(L"chemicalEquilibriumConstant", L"WaterGasShift"));
    EXPECT_EQ(L"Reaction \"WaterGasShift\" is not enabled", Description(package.Get()));
    ASSERT_EQ(S_OK, SetParameter(package.Get(), L"Temperature limits", MakeDoubles({{300.0, 800.0}})));
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), Calculate(L"reactionRate", L"TolueneHydrodealkylation"));
}

TEST_F(SampleReactionsTest, ExplainsBadCalls)
{
    Open(L"Hydrogen");
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR), Calculate(L"reactionRate", L"TolueneHydrodealkylation"));
    EXPECT_EQ(L"No reaction object is set: call SetReactionObject first", Description(package.Get()));
    SetObjects({L"Hydrogen"}, 700);
    const struct {
        const wchar_t* property;
        const wchar_t* reaction;
        const wchar_t* phase;
        const wchar_t* description;
    } rows[] = {
        {L"colour", L"WaterGasShift", L"Vapor", L"The reaction property \"colour\" is not calculated"},
        {L"reactionRate", L"Fire", L"Vapor", L"There is no reaction \"Fire\""},
        {L"reactionRate", L"WaterGasShift", L"Vapor", L"Reaction \"WaterGasShift\" is an equilibrium: it has no rate"},
        {L"reactionQuotient", L"TolueneHydrodealkylation", L"Vapor",
         L"Reaction \"TolueneHydrodealkylation\" is kinetic: it has no equilibrium"},
        {L"reactionRate", L"TolueneHydrodealkylation", L"Liquid",
         L"Reaction \"TolueneHydrodealkylation\" is not in phase \"Liquid\""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), Calculate(row.property, row.reaction, row.phase));
        EXPECT_EQ(row.description, Description(package.Get()));
    }
    EXPECT_EQ(static_cast<HRESULT>(ECapeLimitedImplHR),
              routine->CalcReactionProp(MakeStrings({L"reactionRate"}), B(L"Vapor"),
                                        MakeStrings({L"TolueneHydrodealkylation"}), B(L"mass")));
    EXPECT_EQ(S_OK, Query<ICapeThermoMaterialContext>(package.Get())->UnsetMaterial());
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR), Calculate(L"reactionRate", L"TolueneHydrodealkylation"));
    EXPECT_EQ(L"No material object is set: call SetMaterial first", Description(package.Get()));
}

TEST_F(SampleReactionsTest, WritesNothingUnlessAllCouldBeCalculated)
{
    Open(L"Hydrogen");
    SetObjects({L"Hydrogen"}, 700);
    EXPECT_EQ(
        static_cast<HRESULT>(ECapeInvalidArgumentHR),
        routine->CalcReactionProp(MakeStrings({L"chemicalEquilibriumConstant"}), B(L"Vapor"), _variant_t(), B(L"mole")))
        << "one of the reactions is kinetic";
    _variant_t values;
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
              results->GetReactionProp(B(L"chemicalEquilibriumConstant"), B(L"Vapor"), MakeStrings({L"WaterGasShift"}),
                                       B(L"mole"), &values));
    EXPECT_EQ(L"The reaction object has no \"chemicalEquilibriumConstant\" of \"WaterGasShift\"",
              Description(results.Get()));
}

TEST_F(SampleReactionsTest, TakesTheReactionObjectThroughAPointerToAPointer)
{
    Open(L"Carbonate");
    const auto kinetic = Query<ICapeKineticReactionContext>(package.Get());
    const auto electrolytes = Query<ICapeElectrolyteReactionContext>(package.Get());
    ComPtr<IDispatch> object;
    ASSERT_EQ(S_OK, com::Create<ReactionObject>(IID_PPV_ARGS(&object)));
    IDispatch* pointer = object.Get();
    EXPECT_EQ(S_OK, electrolytes->SetReactionObject(&pointer));
    EXPECT_EQ(object.Get(), pointer) << "the caller's variable is only read";
    IDispatch* null = nullptr;
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), kinetic->SetReactionObject(&null));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), kinetic->SetReactionObject(nullptr));
    // The refused objects did not replace the previous one: Terminate releases it.
    object->AddRef();
    EXPECT_EQ(2u, object->Release());
    EXPECT_EQ(S_OK, Query<ICapeUtilities>(package.Get())->Terminate());
    object->AddRef();
    EXPECT_EQ(1u, object->Release());

    Open(L"Hydrogen");
    ComPtr<ICapeElectrolyteReactionContext> none;
    EXPECT_EQ(E_NOINTERFACE, package.As(&none)) << "no ions";
}

TEST_F(SampleReactionsTest, ReadsAMaterialOfEitherVersion)
{
    Open(L"Hydrogen");
    SetObjects({L"Toluene", L"Hydrogen"}, 900);
    const double newer = Value(L"reactionRate", L"TolueneHydrodealkylation");
    const auto older = Query<ICapeThermoMaterialObject>(material.Get());
    EXPECT_EQ(S_OK,
              older->SetProp(B(L"temperature"), B(L"Overall"), _variant_t(), nullptr, nullptr, MakeDoubles({{900.0}})));
    EXPECT_EQ(S_OK,
              older->SetProp(B(L"pressure"), B(L"Overall"), _variant_t(), nullptr, nullptr, MakeDoubles({{101325.0}})));
    EXPECT_EQ(S_OK, Query<ICapeThermoContext>(package.Get())->SetMaterial(Query<IDispatch>(material.Get()).Get()));
    EXPECT_EQ(newer, Value(L"reactionRate", L"TolueneHydrodealkylation"));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR),
              Query<ICapeThermoContext>(package.Get())->SetMaterial(nullptr));
    EXPECT_EQ(newer, Value(L"reactionRate", L"TolueneHydrodealkylation")) << "the former material stays";
}

}  // namespace
}  // namespace zelt::sample
