#include <cmath>
#include <cstring>

#include "sample_fixture.h"
#include "samples/component/text.h"
#include "samples/package/property_package.h"
#include "samples/material/memory_stream.h"
#include "samples/units/mixer_heater.h"
#include "samples/units/splitter.h"
#include "samples/units/valve.h"

namespace {

using namespace zelt::sample;
using Microsoft::WRL::ComPtr;

struct State {
    double flow, temperature, pressure;
    std::vector<double> fractions;
};

const State kHot{10, 410, 5e5, {0.5, 0.3, 0.2}}, kCool{6, 320, 2.5e5, {0.2, 0.3, 0.5}};

class SampleUnitTest : public SampleTest {
protected:
    SampleUnitTest()
    {
        SetCompounds({L"Benzene", L"Toluene", L"o-Xylene"});
        ComPtr<IDispatch> package;
        EXPECT_EQ(S_OK, com::Create<PropertyPackage>(IID_PPV_ARGS(&package)));
        *flowsheet->link = {nullptr, Query<ICapeThermoMaterialContext>(package.Get()),
                            Query<ICapeThermoPropertyRoutine>(package.Get()),
                            Query<ICapeThermoEquilibriumRoutine>(package.Get())};
    }
    ~SampleUnitTest() override { *flowsheet->link = {}; }

    template <class Unit>
    static ComPtr<ICapeUnit> Make()
    {
        ComPtr<ICapeUnit> unit;
        EXPECT_EQ(S_OK, com::Create<Unit>(IID_PPV_ARGS(&unit)));
        return unit;
    }

    static ComPtr<ICapeUnitPort> Port(IUnknown* unit, const wchar_t* name)
    {
        ComPtr<IDispatch> ports, item;
        EXPECT_EQ(S_OK, Query<ICapeUnit>(unit)->get_ports(&ports));
        EXPECT_EQ(S_OK, Query<ICapeCollection>(ports.Get())->Item(_variant_t(name), &item)) << name;
        return Query<ICapeUnitPort>(item.Get());
    }

    static HRESULT Connect(IUnknown* unit, const wchar_t* port, IUnknown* object)
    {
        return Port(unit, port)->Connect(Query<IDispatch>(object).Get());
    }

    ComPtr<ICapeThermoMaterial> MakeFeed(const State& state)
    {
        auto material = MakeMaterial<ICapeThermoMaterial>();
        Set(material.Get(), L"temperature", L"", {state.temperature});
        Set(material.Get(), L"pressure", L"", {state.pressure});
        Set(material.Get(), L"totalFlow", L"mole", {state.flow});
        Set(material.Get(), L"fraction", L"mole", state.fractions);
        EXPECT_EQ(S_OK, material->SetPresentPhases(MakeStrings({L"Vapor", L"Liquid"}), _variant_t()));
        EXPECT_EQ(S_OK, Query<ICapeThermoEquilibriumRoutine>(material.Get())
                            ->CalcEquilibrium(MakeStrings({L"temperature", L"", L"Overall"}),
                                              MakeStrings({L"pressure", L"", L"Overall"}), B(L"")));
        return material;
    }

    static void Set(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis,
                    const std::vector<double>& values)
    {
        EXPECT_EQ(S_OK, material->SetOverallProp(B(property), B(basis), MakeDoubles(values)));
    }

    static std::vector<double> Get(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis)
    {
        _variant_t values;
        EXPECT_EQ(S_OK, material->GetOverallProp(B(property), B(basis), &values)) << property;
        return ReadDoubles(values, property);
    }

    // In J/mol, summed over the phases.
    static double EnthalpyOf(ICapeThermoMaterial* material)
    {
        _variant_t labels, status;
        EXPECT_EQ(S_OK, material->GetPresentPhases(&labels, &status));
        double enthalpy = 0;
        for (const std::wstring& label : ReadStrings(labels, L"labels")) {
            _variant_t fraction, value;
            EXPECT_EQ(S_OK, Query<ICapeThermoPropertyRoutine>(material)->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}),
                                                                                             B(label.c_str())));
            EXPECT_EQ(S_OK, material->GetSinglePhaseProp(B(L"phaseFraction"), B(label.c_str()), B(L"mole"), &fraction));
            EXPECT_EQ(S_OK, material->GetSinglePhaseProp(B(L"enthalpy"), B(label.c_str()), B(L"mole"), &value));
            enthalpy += ReadDoubles(fraction, L"fraction").at(0) * ReadDoubles(value, L"enthalpy").at(0);
        }
        return enthalpy;
    }

    static double HeatFlow(ICapeThermoMaterial* material)
    {
        return Get(material, L"totalFlow", L"mole").at(0) * EnthalpyOf(material);
    }

    // Makes a mixer, and connects its feeds and its product.
    void ConnectMixer()
    {
        mixer = Make<MixerHeater>();
        hot = MakeFeed(kHot);
        cool = MakeFeed(kCool);
        product = MakeMaterial<ICapeThermoMaterial>();
        EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 1", hot.Get()));
        EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 2", cool.Get()));
        EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Outlet", product.Get()));
    }

    // Validates the unit and returns the message; empty when the unit is valid.
    static std::wstring Validate(ICapeUnit* unit)
    {
        _bstr_t message;
        VARIANT_BOOL valid = 42;
        EXPECT_EQ(S_OK, unit->Validate(message.GetAddress(), &valid));
        EXPECT_EQ(valid == VARIANT_TRUE ? CAPE_VALID : CAPE_INVALID, Status(unit));
        return std::wstring(TextOf(message.GetBSTR()));
    }

    static eCapeValidationStatus Status(ICapeUnit* unit)
    {
        eCapeValidationStatus status{};
        EXPECT_EQ(S_OK, unit->get_ValStatus(&status));
        return status;
    }

    static void Run(ICapeUnit* unit)
    {
        EXPECT_EQ(L"", Validate(unit));
        EXPECT_EQ(S_OK, unit->Calculate()) << Description(unit);
    }

    void ExpectMassBalance() const
    {
        const std::vector<double> fractions = Get(product.Get(), L"fraction", L"mole");
        EXPECT_DOUBLE_EQ(16, Get(product.Get(), L"totalFlow", L"mole").at(0));
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(10 * kHot.fractions[i] + 6 * kCool.fractions[i], 16 * fractions[i], 1e-12) << i;
        }
    }

    static _variant_t ParameterValue(IUnknown* unit, const wchar_t* name)
    {
        ComPtr<IDispatch> collection, item;
        EXPECT_EQ(S_OK, Query<ICapeUtilities>(unit)->get_parameters(&collection));
        EXPECT_EQ(S_OK, Query<ICapeCollection>(collection.Get())->Item(_variant_t(name), &item));
        _variant_t value;
        EXPECT_EQ(S_OK, Query<ICapeParameter>(item.Get())->get_value(&value));
        return value;
    }

    static ComPtr<IStream> MakeStream(std::vector<std::byte> bytes = {})
    {
        ComPtr<IStream> stream;
        EXPECT_EQ(S_OK, com::Create<MemoryStream>(IID_PPV_ARGS(&stream), std::move(bytes)));
        return stream;
    }

    template <class Persist>
    static std::vector<std::byte> Saved(IUnknown* unit)
    {
        const ComPtr<IStream> stream = MakeStream();
        EXPECT_EQ(S_OK, Query<Persist>(unit)->Save(stream.Get(), TRUE));
        return MemoryStream::BytesOf(stream.Get());
    }

    ComPtr<ICapeUnit> mixer;
    ComPtr<ICapeThermoMaterial> hot, cool, product;
};

TEST_F(SampleUnitTest, MixerClosesItsBalancesAtAGivenDuty)
{
    for (const bool search : {false, true}) {
        ConnectMixer();
        EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Heat duty", _variant_t(2e5)));
        EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Pressure drop", _variant_t(3e4)));
        EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Search temperature", _variant_t(search)));
        Run(mixer.Get());
        ExpectMassBalance();
        EXPECT_DOUBLE_EQ(2.2e5, Get(product.Get(), L"pressure", L"").at(0));
        const double in = HeatFlow(hot.Get()) + HeatFlow(cool.Get()) + 2e5;
        EXPECT_NEAR(in, HeatFlow(product.Get()), 1e-8 * std::fabs(in)) << search;
    }
}

TEST_F(SampleUnitTest, MixerAddsTheEnergyStreamAndTellsTheInformationStream)
{
    ConnectMixer();
    const ParameterSet energy({{L"work", L"W", RealSpecification{1.5e5, -1e9, 1e9, {}}}});
    const ParameterSet information({{L"temperature", L"K", RealSpecification{0, 0, 1e4, {}}},
                                    {L"other", L"left alone", RealSpecification{7, 0, 1e4, {}}},
                                    {L"duty", L"W", RealSpecification{0, -1e9, 1e9, {}}}});
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Energy", energy.Collection(L"E").Get()));
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Information", information.Collection(L"I").Get()));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Mode", _variant_t(L"temperature")));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Outlet temperature", _variant_t(430.0)));
    Run(mixer.Get());
    ExpectMassBalance();
    EXPECT_EQ(430, Get(product.Get(), L"temperature", L"").at(0));
    EXPECT_EQ(430, information.Real(L"temperature"));
    EXPECT_EQ(7, information.Real(L"other"));
    const double in = HeatFlow(hot.Get()) + HeatFlow(cool.Get()), out = HeatFlow(product.Get());
    EXPECT_NEAR(out - in - 1.5e5, information.Real(L"duty"), 1e-8 * std::fabs(out));
    EXPECT_GT(std::fabs(information.Real(L"duty")), 1e3);
}

TEST_F(SampleUnitTest, MixerAcceptsAnyOrderOfCompounds)
{
    ConnectMixer();
    Run(mixer.Get());
    const double temperature = Get(product.Get(), L"temperature", L"").at(0);

    const auto slate = flowsheet->slate;
    SetCompounds({L"o-Xylene", L"Benzene", L"Toluene"});
    cool = MakeFeed({6, 320, 2.5e5, {0.5, 0.2, 0.3}});
    flowsheet->slate = slate;
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 2", cool.Get()));
    Run(mixer.Get());
    ExpectMassBalance();
    EXPECT_NEAR(temperature, Get(product.Get(), L"temperature", L"").at(0), 1e-9);

    SetCompounds({L"o-Xylene", L"Benzene"});
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 2", MakeFeed({6, 320, 2.5e5, {0.5, 0.5}}).Get()));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), mixer->Calculate());
    EXPECT_EQ(L"Stream at \"Inlet 2\": it does not have the compounds of the other streams", Description(mixer.Get()));
}

TEST_F(SampleUnitTest, MixerSaysWhatIsNotValid)
{
    mixer = Make<MixerHeater>();
    EXPECT_EQ(CAPE_NOT_VALIDATED, Status(mixer.Get()));
    EXPECT_EQ(L"Port \"Inlet 1\" is not connected", Validate(mixer.Get()));
    ConnectMixer();
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR), mixer->Calculate());
    EXPECT_EQ(L"Mixer with heater has not been validated as it is now", Description(mixer.Get()));
    _bstr_t operation;
    EXPECT_EQ(S_OK, Query<ECapeBadInvOrder>(mixer.Get())->get_requestedOperation(operation.GetAddress()));
    EXPECT_STREQ(L"Validate", operation);

    const struct {
        const wchar_t* parameter;
        _variant_t value;
        const wchar_t* message;
    } rows[] = {
        {L"Pressure drop", _variant_t(-1.0), L"Parameter \"Pressure drop\": -1 is not between 0 and 1e+08"},
        {L"Pressure drop", _variant_t(2.5e5),
         L"The pressure drop 250000 Pa is not below the lowest inlet pressure, 250000 Pa"},
        {L"Pressure drop", _variant_t(2.4e5), L""},
        {L"Temperature limits", MakeDoubles({{400, 300}}), L"The lower temperature limit is not below the upper one"},
        {L"Temperature limits", MakeDoubles({{400}}), L"Parameter \"Temperature limits\": 2 values are needed, not 1"},
        {L"Temperature limits", MakeDoubles({{360, 500}}), L""},
        {L"Mode", _variant_t(L"Pressure"), L"Parameter \"Mode\": \"Pressure\" is not one of the options"},
        {L"Mode", _variant_t(L"Temperature"), L"The outlet temperature 350 K is outside the temperature limits"},
        {L"Outlet temperature", _variant_t(370.0), L""},
        {L"Maximum iterations", _variant_t(0L), L"Parameter \"Maximum iterations\": 0 is not between 1 and 1000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(S_OK, SetParameter(mixer.Get(), row.parameter, row.value));
        EXPECT_EQ(CAPE_NOT_VALIDATED, Status(mixer.Get())) << row.message;
        EXPECT_EQ(row.message, Validate(mixer.Get()));
    }
    EXPECT_EQ(static_cast<HRESULT>(ECapeBadInvOrderHR), mixer->Calculate());
}

TEST_F(SampleUnitTest, MixerFailsWithAReason)
{
    ConnectMixer();
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Pressure drop", _variant_t(1e5)));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    // The stream changes without the unit noticing.
    Set(cool.Get(), L"pressure", L"", {5e4});
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidOperationHR), mixer->Calculate());
    EXPECT_EQ(L"The pressure drop 100000 Pa is not below the lowest inlet pressure, 50000 Pa",
              Description(mixer.Get()));

    ConnectMixer();
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Temperature limits", MakeDoubles({{200, 330}})));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), mixer->Calculate());
    EXPECT_NE(std::wstring::npos, Description(mixer.Get()).find(L"The outlet temperature "));

    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Search temperature", _variant_t(true)));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeSolvingErrorHR), mixer->Calculate());

    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Temperature limits", MakeDoubles({{200, 1000}})));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Maximum iterations", _variant_t(2L)));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeSolvingErrorHR), mixer->Calculate());

    ConnectMixer();
    Set(hot.Get(), L"totalFlow", L"mole", {0});
    Set(cool.Get(), L"totalFlow", L"mole", {0});
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeSolvingErrorHR), mixer->Calculate());
    EXPECT_EQ(L"nothing flows into the unit", Description(mixer.Get()));

    Set(cool.Get(), L"totalFlow", L"mole", {-1});
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), mixer->Calculate());

    // A stream that has never been calculated.
    ConnectMixer();
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 1", MakeMaterial<ICapeThermoMaterial>().Get()));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR), mixer->Calculate());
    EXPECT_NE(std::wstring::npos, Description(mixer.Get()).find(L"Stream at \"Inlet 1\": "));

    // An energy stream that lacks its parameter.
    ConnectMixer();
    const ParameterSet energy({{L"heat", L"W", RealSpecification{1, 0, 2, {}}}});
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Energy", energy.Collection(L"E").Get()));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), mixer->Calculate());
    EXPECT_EQ(L"The energy stream has no parameter \"work\"", Description(mixer.Get()));
}

TEST_F(SampleUnitTest, SearchCannotFindATemperatureAtWhichAPureCompoundBoils)
{
    ConnectMixer();
    const State pure{10, 350, 2e5, {1, 0, 0}};
    hot = MakeFeed(pure);
    cool = MakeFeed(pure);
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 1", hot.Get()));
    EXPECT_EQ(S_OK, Connect(mixer.Get(), L"Inlet 2", cool.Get()));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Heat duty", _variant_t(5e5)));
    Run(mixer.Get());
    const double in = HeatFlow(hot.Get()) + HeatFlow(cool.Get()) + 5e5;
    EXPECT_NEAR(in, HeatFlow(product.Get()), 1e-8 * std::fabs(in));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Search temperature", _variant_t(true)));
    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeSolvingErrorHR), mixer->Calculate());
    EXPECT_NE(std::wstring::npos, Description(mixer.Get()).find(L"The enthalpy jumps at "));
}

TEST_F(SampleUnitTest, ReportsWhatWasCalculated)
{
    ConnectMixer();
    const auto reports = Query<ICapeUnitReport>(mixer.Get());
    _variant_t names;
    EXPECT_EQ(S_OK, reports->get_reports(&names));
    EXPECT_EQ((std::vector<std::wstring>{L"Results", L"Parameters"}), ReadStrings(names, L"reports"));
    const auto produce = [&] {
        _bstr_t text;
        EXPECT_EQ(S_OK, reports->ProduceReport(text.GetAddress()));
        return std::wstring(TextOf(text.GetBSTR()));
    };
    EXPECT_EQ(L"Mixer with heater\r\n  There are no results.\r\n", produce());
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Mode", _variant_t(L"Temperature")));
    Run(mixer.Get());
    EXPECT_EQ(0u, produce().find(L"Mixer with heater\r\n  Outlet temperature: 350 K\r\n  Outlet pressure: 250000 Pa\r\n"
                                 L"  Outlet flow: 16 mol/s\r\n  Enthalpy flow of the inlets: "));
    EXPECT_EQ(S_OK, reports->put_selectedReport(B(L"parameters")));
    _bstr_t selected;
    EXPECT_EQ(S_OK, reports->get_selectedReport(selected.GetAddress()));
    EXPECT_STREQ(L"Parameters", selected);
    EXPECT_EQ(
        L"Mixer with heater\r\n  Pressure drop: 0\r\n  Mode: Temperature\r\n  Heat duty: 0\r\n"
        L"  Outlet temperature: 350\r\n  Temperature limits: 200, 1000\r\n  Search temperature: false\r\n"
        L"  Maximum iterations: 100\r\n",
        produce());
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), reports->put_selectedReport(B(L"Summary")));
    EXPECT_EQ(L"There is no report \"Summary\"", Description(mixer.Get()));
}

TEST_F(SampleUnitTest, PortsTakeWhatTheyAreForAndGiveItBack)
{
    ConnectMixer();
    const auto inlet = Port(mixer.Get(), L"Inlet 1");
    ComPtr<IDispatch> connected;
    EXPECT_EQ(S_OK, inlet->get_connectedObject(&connected));
    EXPECT_EQ(Query<IUnknown>(hot.Get()).Get(), Query<IUnknown>(connected.Get()).Get());
    const ParameterSet energy({{L"work", L"W", RealSpecification{1, 0, 2, {}}}});
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), inlet->Connect(energy.Collection(L"E").Get()));
    EXPECT_EQ(L"Port \"Inlet 1\" takes a material object with ICapeThermoMaterial", Description(inlet.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), Connect(mixer.Get(), L"Energy", hot.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), inlet->Connect(nullptr));
    ComPtr<IDispatch> still;
    EXPECT_EQ(S_OK, inlet->get_connectedObject(&still));
    EXPECT_EQ(connected.Get(), still.Get());

    eCapePortType type{};
    eCapePortDirection direction{};
    EXPECT_EQ(S_OK, Port(mixer.Get(), L"Information")->get_portType(&type));
    EXPECT_EQ(S_OK, Port(mixer.Get(), L"Information")->get_direction(&direction));
    EXPECT_EQ(CAPE_INFORMATION, type);
    EXPECT_EQ(CAPE_OUTLET, direction);

    EXPECT_EQ(L"", Validate(mixer.Get()));
    EXPECT_EQ(S_OK, inlet->Disconnect());
    EXPECT_EQ(CAPE_NOT_VALIDATED, Status(mixer.Get()));
    still = connected;
    EXPECT_EQ(S_OK, inlet->get_connectedObject(still.ReleaseAndGetAddressOf()));
    EXPECT_EQ(nullptr, still.Get());
    EXPECT_EQ(L"Port \"Inlet 1\" is not connected", Validate(mixer.Get()));

    EXPECT_EQ(S_OK, Query<ICapeUtilities>(mixer.Get())->Terminate());
    EXPECT_EQ(S_OK, Port(mixer.Get(), L"Outlet")->get_connectedObject(&still));
    EXPECT_EQ(nullptr, still.Get());
}

TEST_F(SampleUnitTest, TellsTheSimulatorOfACalculation)
{
    ConnectMixer();
    const auto utilities = Query<ICapeUtilities>(mixer.Get());
    EXPECT_EQ(S_OK, utilities->put_simulationContext(MakeContext().Get()));
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Mode", _variant_t(L"Temperature")));
    Run(mixer.Get());
    EXPECT_EQ((std::vector<std::wstring>{L"Mixer with heater: calculated; Outlet temperature: 350 K"}), messages);
}

TEST_F(SampleUnitTest, ValveKeepsTheEnthalpyAndCools)
{
    const auto valve = Make<Valve>();
    hot = MakeFeed(kHot);
    product = MakeMaterial<ICapeThermoMaterial>();
    EXPECT_EQ(S_OK, Connect(valve.Get(), L"Inlet", hot.Get()));
    EXPECT_EQ(S_OK, Connect(valve.Get(), L"Outlet", product.Get()));
    Run(valve.Get());
    EXPECT_NEAR(HeatFlow(hot.Get()), HeatFlow(product.Get()), 1e-8 * std::fabs(HeatFlow(hot.Get())));
    EXPECT_EQ(101325, Get(product.Get(), L"pressure", L"").at(0));
    EXPECT_LT(Get(product.Get(), L"temperature", L"").at(0), 400);  // part of the stream boils
    EXPECT_EQ(S_OK, SetParameter(valve.Get(), L"Outlet pressure", _variant_t(6e5)));
    EXPECT_EQ(L"The outlet pressure 600000 Pa is above the inlet's, 500000 Pa", Validate(valve.Get()));
}

TEST_F(SampleUnitTest, SplitterSharesTheFlow)
{
    const auto splitter = Make<Splitter>();
    hot = MakeFeed(kHot);
    const auto first = MakeMaterial<ICapeThermoMaterial>(), second = MakeMaterial<ICapeThermoMaterial>();
    EXPECT_EQ(S_OK, Connect(splitter.Get(), L"Inlet", hot.Get()));
    EXPECT_EQ(S_OK, Connect(splitter.Get(), L"Outlet 1", first.Get()));
    EXPECT_EQ(S_OK, Connect(splitter.Get(), L"Outlet 2", second.Get()));
    for (const double fraction : {0.0, 0.25, 1.0}) {
        EXPECT_EQ(S_OK, SetParameter(splitter.Get(), L"Fraction to outlet 1", _variant_t(fraction)));
        Run(splitter.Get());
        EXPECT_DOUBLE_EQ(10 * fraction, Get(first.Get(), L"totalFlow", L"mole").at(0));
        EXPECT_DOUBLE_EQ(10 - 10 * fraction, Get(second.Get(), L"totalFlow", L"mole").at(0));
        for (const auto& outlet : {first, second}) {
            EXPECT_NEAR(410, Get(outlet.Get(), L"temperature", L"").at(0), 1e-8);
            EXPECT_EQ(kHot.fractions, Get(outlet.Get(), L"fraction", L"mole"));
        }
    }
}

TEST_F(SampleUnitTest, PersistenceDiffers)
{
    const auto offers = [](IUnknown* unit, REFIID iid) {
        ComPtr<IUnknown> granted;
        return SUCCEEDED(unit->QueryInterface(iid, reinterpret_cast<void**>(granted.GetAddressOf())));
    };
    const auto mixerUnit = Make<MixerHeater>(), valve = Make<Valve>(), splitter = Make<Splitter>();
    const struct {
        ICapeUnit* unit;
        bool persist, init, plain, reports;
    } rows[] = {{mixerUnit.Get(), true, true, false, true},
                {valve.Get(), true, false, true, true},
                {splitter.Get(), false, false, false, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.persist, offers(row.unit, IID_IPersist));
        EXPECT_EQ(row.init, offers(row.unit, IID_IPersistStreamInit));
        EXPECT_EQ(row.plain, offers(row.unit, IID_IPersistStream));
        EXPECT_EQ(row.reports, offers(row.unit, __uuidof(ICapeUnitReport)));
    }
    CLSID clsid{};
    EXPECT_EQ(S_OK, Query<IPersist>(mixerUnit.Get())->GetClassID(&clsid));
    EXPECT_EQ(kMixerHeaterClass, clsid);
    EXPECT_EQ(S_OK, Query<IPersist>(valve.Get())->GetClassID(&clsid));
    EXPECT_EQ(kValveClass, clsid);
}

TEST_F(SampleUnitTest, MixerLoadsWhatItSaved)
{
    mixer = Make<MixerHeater>();
    const auto persist = Query<IPersistStreamInit>(mixer.Get());
    EXPECT_EQ(S_OK, persist->InitNew());
    EXPECT_EQ(S_OK, persist->IsDirty());
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Pressure drop", _variant_t(0.1)));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Mode", _variant_t(L"Temperature")));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Temperature limits", MakeDoubles({{250, 1 / 3.0, 7}})));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Search temperature", _variant_t(true)));
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Maximum iterations", _variant_t(-5L)));
    ULARGE_INTEGER size{};
    EXPECT_EQ(S_OK, persist->GetSizeMax(&size));
    const std::vector<std::byte> bytes = Saved<IPersistStreamInit>(mixer.Get());
    EXPECT_EQ(size.QuadPart, bytes.size());
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Heat duty", _variant_t(1.0)));
    EXPECT_EQ(S_OK, persist->IsDirty());

    const auto other = Make<MixerHeater>();
    EXPECT_EQ(S_OK, Query<IPersistStreamInit>(other.Get())->Load(MakeStream(bytes).Get()));
    EXPECT_EQ(S_FALSE, Query<IPersistStreamInit>(other.Get())->IsDirty());
    EXPECT_EQ(bytes, Saved<IPersistStreamInit>(other.Get()));
    EXPECT_EQ(_variant_t(0.1), ParameterValue(other.Get(), L"Pressure drop"));
    EXPECT_EQ(_variant_t(L"Temperature"), ParameterValue(other.Get(), L"Mode"));
    EXPECT_EQ((std::vector<double>{250, 1 / 3.0, 7}),
              ReadDoubles(ParameterValue(other.Get(), L"Temperature limits"), L"value"));
    EXPECT_EQ(_variant_t(true), ParameterValue(other.Get(), L"Search temperature"));
    EXPECT_EQ(_variant_t(-5L), ParameterValue(other.Get(), L"Maximum iterations"));
    EXPECT_EQ(S_OK, Query<IPersistStreamInit>(other.Get())->InitNew());
    EXPECT_EQ(_variant_t(0.0), ParameterValue(other.Get(), L"Pressure drop"));
}

TEST_F(SampleUnitTest, ValveLoadsWhatItSaved)
{
    const auto valve = Make<Valve>(), other = Make<Valve>();
    EXPECT_EQ(S_OK, SetParameter(valve.Get(), L"Outlet pressure", _variant_t(123456.0)));
    const std::vector<std::byte> bytes = Saved<IPersistStream>(valve.Get());
    EXPECT_EQ(S_OK, Query<IPersistStream>(other.Get())->Load(MakeStream(bytes).Get()));
    EXPECT_EQ(_variant_t(123456.0), ParameterValue(other.Get(), L"Outlet pressure"));
    // Data of another unit.
    mixer = Make<MixerHeater>();
    EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR),
              Query<IPersistStreamInit>(mixer.Get())->Load(MakeStream(bytes).Get()));
    EXPECT_EQ(L"The saved data belong to another unit", Description(mixer.Get()));
}

TEST_F(SampleUnitTest, DamagedDataAreRefusedAndChangeNothing)
{
    mixer = Make<MixerHeater>();
    EXPECT_EQ(S_OK, SetParameter(mixer.Get(), L"Heat duty", _variant_t(5.0)));
    const std::vector<std::byte> good = Saved<IPersistStreamInit>(mixer.Get());
    const auto other = Make<MixerHeater>();
    const auto load = [&](const std::vector<std::byte>& bytes) {
        const HRESULT loaded = Query<IPersistStreamInit>(other.Get())->Load(MakeStream(bytes).Get());
        EXPECT_EQ(_variant_t(0.0), ParameterValue(other.Get(), L"Heat duty"));
        return loaded;
    };
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR), load({good.begin(), good.begin() + size})) << size;
        EXPECT_EQ(L"The saved data end too early", Description(other.Get()));
    }

    const auto with = [&](std::size_t offset, std::uint32_t number) {
        std::vector<std::byte> bytes = good;
        std::memcpy(bytes.data() + offset, &number, sizeof(number));
        return bytes;
    };
    const auto bodySize = static_cast<std::uint32_t>(good.size() - 12);
    const struct {
        std::vector<std::byte> bytes;
        eCapeErrorInterfaceHR_tag code;
        const wchar_t* description;
    } rows[] = {
        {with(0, 7), ECapePersistenceHR, L"These are not the data of a sample unit"},
        {with(4, 2), ECapePersistenceHR, L"Saved data of version 2 are not understood"},
        {with(8, 0xFFFFFFFF), ECapePersistenceOverflowHR, L"The saved data claim 4294967295 bytes"},
        {with(8, bodySize + 1), ECapePersistenceHR, L"The saved data end too early"},
        {with(8, bodySize - 1), ECapePersistenceHR, L"The saved data end too early"},
        {with(12, 6), ECapePersistenceHR, L"The saved data belong to another unit"},
        {with(16, 0xFFFFFFFF), ECapePersistenceHR, L"The saved data end too early"},  // a name's length
        {with(16, 0x7FFFFFFF), ECapePersistenceHR, L"The saved data end too early"},
        {with(20, 0x00620061), ECapePersistenceHR, L"The saved parameter \"abessure drop\" is not known"},
        {with(20 + 2 * 13, 3), ECapePersistenceHR,
         L"The saved parameter \"Pressure drop\" is of another type, or saved twice"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(static_cast<HRESULT>(row.code), load(row.bytes)) << row.description;
        EXPECT_EQ(row.description, Description(other.Get()));
    }
    std::vector<std::byte> longer = with(8, bodySize + 1);
    longer.push_back(std::byte{0});
    EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR), load(longer));
    EXPECT_EQ(L"The saved data are longer than they should be", Description(other.Get()));
    EXPECT_EQ(E_POINTER, Query<IPersistStreamInit>(other.Get())->Load(nullptr));
    EXPECT_EQ(E_POINTER, Query<IPersistStreamInit>(other.Get())->Save(nullptr, FALSE));
}

TEST_F(SampleUnitTest, MaterialCalculatesOnlyWithAPackage)
{
    ComPtr<IUnknown> granted;
    const auto material = MakeMaterial<ICapeThermoMaterial>();
    *flowsheet->link = {};
    const auto alone = MakeMaterial<ICapeThermoMaterial>();
    for (const IID& iid : {__uuidof(ICapeThermoPropertyRoutine), __uuidof(ICapeThermoEquilibriumRoutine)}) {
        EXPECT_EQ(S_OK, material->QueryInterface(iid, reinterpret_cast<void**>(granted.ReleaseAndGetAddressOf())));
        EXPECT_EQ(E_NOINTERFACE,
                  alone->QueryInterface(iid, reinterpret_cast<void**>(granted.ReleaseAndGetAddressOf())));
    }
    // The package is gone; the material stays.
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidOperationHR),
              Query<ICapeThermoPropertyRoutine>(material.Get())
                  ->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), B(L"Liquid")));
    EXPECT_EQ(L"No property package calculates for this material object", Description(material.Get()));
}

}  // namespace
