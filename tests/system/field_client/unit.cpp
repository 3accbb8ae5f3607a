// The unit operation: its type, its parameters, and its streams, which a package calculates.
#include <cape-open.h>

#include "samples/component/text.h"
#include "samples/field/classes.h"
#include "system/narrow.h"
#include "tests/system/field_client/scenes.h"
#include "tests/system/field_client/session.h"
#include "tests/system/field_client/stream.h"

namespace zelt::test {
namespace {

using sample::MakeBstr;
using sample::MakeDoubles;

std::wstring NameOf(IUnknown* object)
{
    _bstr_t name;
    const auto identification = Required<ICapeIdentification>(object, L"ICapeIdentification");
    Step(L"get_ComponentName", identification->get_ComponentName(name.GetAddress()));
    return std::wstring(sample::TextOf(name.GetBSTR()));
}

template <class I, class T>
void ShowBounds(IDispatch* parameter, const wchar_t* interfaceName, const std::string& name)
{
    const auto typed = Required<I>(parameter, interfaceName);
    T standard{}, lower{}, upper{};
    Step(L"get_DefaultValue", typed->get_DefaultValue(&standard), typed.Get());
    Step(L"get_LowerBound", typed->get_LowerBound(&lower), typed.Get());
    Step(L"get_UpperBound", typed->get_UpperBound(&upper), typed.Get());
    Print(name + " bounds",
          MakeDoubles({{static_cast<double>(standard), static_cast<double>(lower), static_cast<double>(upper)}}));
    _bstr_t message;
    VARIANT_BOOL valid = VARIANT_TRUE;
    Step(L"Validate", typed->Validate(upper * 2, message.GetAddress(), &valid), typed.Get());
    Print(name + (valid ? " accepts more" : " refuses more"), std::wstring(sample::TextOf(message.GetBSTR())));
}

void ShowTyped(IDispatch* parameter, eCapeParamType type, const std::string& name)
{
    switch (type) {
        case CAPE_REAL: return ShowBounds<ICapeRealParameterSpec, double>(parameter, L"ICapeRealParameterSpec", name);
        case CAPE_INT:
            return ShowBounds<ICapeIntegerParameterSpec, long>(parameter, L"ICapeIntegerParameterSpec", name);
        case CAPE_OPTION: {
            const auto typed = Required<ICapeOptionParameterSpec>(parameter, L"ICapeOptionParameterSpec");
            _variant_t options;
            Step(L"get_OptionList", typed->get_OptionList(&options), typed.Get());
            return Print(name + " options", options);
        }
        case CAPE_BOOLEAN: {
            const auto typed = Required<ICapeBooleanParameterSpec>(parameter, L"ICapeBooleanParameterSpec");
            VARIANT_BOOL standard = VARIANT_TRUE;
            Step(L"get_DefaultValue", typed->get_DefaultValue(&standard), typed.Get());
            return Print(name + " default", standard ? L"yes" : L"no");
        }
        default: {
            const auto typed = Required<ICapeArrayParameterSpec>(parameter, L"ICapeArrayParameterSpec");
            _variant_t items;
            Step(L"get_ItemsSpecifications", typed->get_ItemsSpecifications(&items), typed.Get());
            return Print(name + " elements", items);
        }
    }
}

// Reads a parameter like a simulator that treats each parameter as its own specification.
void ShowParameter(IDispatch* item)
{
    const std::string name = Narrow(NameOf(item));
    const auto specification = Required<ICapeParameterSpec>(item, L"ICapeParameterSpec");
    eCapeParamType type{};
    Step(L"get_Type", specification->get_Type(&type), specification.Get());
    if (type == CAPE_REAL) {
        _variant_t exponents;
        Step(L"get_Dimensionality", specification->get_Dimensionality(&exponents), specification.Get());
        Print(name + " dimensionality", exponents);
    }
    ShowTyped(item, type, name);
    const auto parameter = Required<ICapeParameter>(item, L"ICapeParameter");
    ComPtr<IDispatch> same;
    Step(L"get_Specification", parameter->get_Specification(&same), parameter.Get());
    eCapeParamType sameType{};
    const auto again = Required<ICapeParameterSpec>(same.Get(), L"ICapeParameterSpec");
    Step(L"get_Type", again->get_Type(&sameType), again.Get());
    Print(name + " through get_Specification", std::to_wstring(sameType));
    Print(name + " by that name", NameOf(same.Get()));
}

ComPtr<ICapeCollection> ParametersOf(IDispatch* unit)
{
    ComPtr<IDispatch> parameters;
    const auto utilities = Required<ICapeUtilities>(unit, L"ICapeUtilities");
    Step(L"get_parameters", utilities->get_parameters(&parameters), unit);
    return Required<ICapeCollection>(parameters.Get(), L"ICapeCollection");
}

ComPtr<ICapeParameter> ParameterOf(IDispatch* unit, const wchar_t* name)
{
    ComPtr<IDispatch> item;
    const auto parameters = ParametersOf(unit);
    Step(name, parameters->Item(_variant_t(name), &item), parameters.Get());
    return Required<ICapeParameter>(item.Get(), L"ICapeParameter");
}

ComPtr<ICapeUnitPort> PortOf(ICapeUnit* unit, const wchar_t* name)
{
    ComPtr<IDispatch> ports, item;
    Step(L"get_ports", unit->get_ports(&ports), unit);
    const auto collection = Required<ICapeCollection>(ports.Get(), L"ICapeCollection");
    Step(name, collection->Item(_variant_t(name), &item), collection.Get());
    return Required<ICapeUnitPort>(item.Get(), L"ICapeUnitPort");
}

ComPtr<ICapeThermoMaterialObject> MakeStream(const std::shared_ptr<sample::Flowsheet>& flowsheet, const wchar_t* name)
{
    ComPtr<ICapeThermoMaterialObject> stream;
    com::Check(com::Create<Stream>(IID_PPV_ARGS(&stream), flowsheet->slate, flowsheet->link, std::wstring(name)));
    return stream;
}

// A feed at the inlet and an empty stream at the outlet.
struct Streams {
    Streams(ICapeUnit* unit, const std::shared_ptr<sample::Flowsheet>& flowsheet)
        : feed(MakeStream(flowsheet, L"Feed")),
          product(MakeStream(flowsheet, L"Product")),
          inlet(PortOf(unit, L"Inlet")),
          outlet(PortOf(unit, L"Outlet"))
    {
        const struct {
            const wchar_t* name;
            const wchar_t* basis;
            _variant_t values;
        } content[] = {
            {L"temperature", L"", MakeDoubles({{370}})},
            {L"pressure", L"", MakeDoubles({{101325}})},
            {L"fraction", L"mole", MakeDoubles({{0.5, 0.375, 0.125}})},
        };
        for (const auto& row : content) {
            Step(row.name, feed->SetProp(MakeBstr(row.name).GetBSTR(), MakeBstr(L"Overall").GetBSTR(), _variant_t(),
                                         MakeBstr(L"").GetBSTR(), MakeBstr(row.basis).GetBSTR(), row.values));
        }
        Step(L"Connect", inlet->Connect(feed.Get()), inlet.Get());
        Step(L"Connect", outlet->Connect(product.Get()), outlet.Get());
    }
    ~Streams()
    {
        inlet->Disconnect();
        outlet->Disconnect();
    }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    void Show(const char* what, const wchar_t* property, const wchar_t* phase, const wchar_t* calcType) const
    {
        _variant_t values;
        Step(property,
             product->GetProp(MakeBstr(property).GetBSTR(), MakeBstr(phase).GetBSTR(), _variant_t(),
                              MakeBstr(calcType).GetBSTR(), MakeBstr(L"mole").GetBSTR(), &values),
             product.Get());
        Print(what, values);
    }

    ComPtr<ICapeThermoMaterialObject> feed, product;
    ComPtr<ICapeUnitPort> inlet, outlet;
};

HRESULT Calculate(ICapeUnit* unit)
{
    _bstr_t message;
    VARIANT_BOOL valid = VARIANT_FALSE;
    Step(L"Validate", unit->Validate(message.GetAddress(), &valid), unit);
    if (!valid) Print("invalid", std::wstring(sample::TextOf(message.GetBSTR())));
    return unit->Calculate();
}

ComPtr<IDispatch> CreateUnit(Where where)
{
    if (where == Where::InProcess) return CreateInProcess(sample::kFieldUnitClass);
    const auto unit = CreateServed(L"PRAVIK.UnitOperation");
    Step(L"InitNew", Required<IPersistStreamInit>(unit.Get(), L"IPersistStreamInit")->InitNew(), unit.Get());
    return Required<IDispatch>(unit.Get(), L"IDispatch");
}

}  // namespace

void SetParameter(IDispatch* unit, const wchar_t* name, const _variant_t& value)
{
    const auto parameter = ParameterOf(unit, name);
    Step(name, parameter->put_value(value), parameter.Get());
}

_variant_t ParameterValue(IDispatch* unit, const wchar_t* name)
{
    _variant_t value;
    const auto parameter = ParameterOf(unit, name);
    Step(name, parameter->get_value(&value), parameter.Get());
    return value;
}

void UseFieldUnit(IDispatch* object, const std::shared_ptr<sample::Flowsheet>& flowsheet)
{
    const auto utilities = Required<ICapeUtilities>(object, L"ICapeUtilities");
    Step(L"put_simulationContext", utilities->put_simulationContext(MakeContext(flowsheet).Get()), object);
    Step(L"Initialize", utilities->Initialize(), object);
    const auto information = Required<ICapeUnitTypeInfo>(object, L"ICapeUnitTypeInfo");
    eCapeUnitType type{};
    Step(L"get_GetUnitType", information->get_GetUnitType(&type), object);
    Print("unit type", std::to_wstring(type));

    {
        const auto parameters = ParametersOf(object);
        long count = 0;
        Step(L"Count", parameters->Count(&count), parameters.Get());
        for (long number = 1; number <= count; ++number) {
            ComPtr<IDispatch> item;
            Step(L"Item", parameters->Item(_variant_t(number), &item), parameters.Get());
            ShowParameter(item.Get());
        }
    }
    SetParameter(object, L"Pressure drop", _variant_t(5000.0));
    const auto unit = Required<ICapeUnit>(object, L"ICapeUnit");
    const Streams streams(unit.Get(), flowsheet);
    Step(L"Calculate", Calculate(unit.Get()), object);
    streams.Show("pressure", L"pressure", L"Overall", L"");
    streams.Show("vapour fraction", L"phaseFraction", L"Vapor", L"Mixture");
    streams.Show("liquid", L"fraction", L"Liquid", L"");
    streams.Show("vapour enthalpy", L"enthalpy", L"Vapor", L"Mixture");
    Step(L"Terminate", utilities->Terminate(), object);
}

void UseEverything(Where where)
{
    const auto flowsheet = MakeFlowsheet();
    const ComPtr<IDispatch> package = CreateFieldPackage(where);
    UseFieldPackage(package.Get(), flowsheet);
    UseFieldUnit(CreateUnit(where).Get(), flowsheet);
    flowsheet->link->package.Reset();
    const auto utilities = Required<ICapeUtilities>(package.Get(), L"ICapeUtilities");
    Step(L"Terminate", utilities->Terminate(), package.Get());
}

// The unit copies the whole stream at its inlet to the stream at its outlet.
void CopyStreams(Where where, const char* what, const std::shared_ptr<sample::Flowsheet>& flowsheet)
{
    const ComPtr<IDispatch> object = CreateUnit(where);
    const auto utilities = Required<ICapeUtilities>(object.Get(), L"ICapeUtilities");
    Step(L"Initialize", utilities->Initialize(), object.Get());
    SetParameter(object.Get(), L"Copy the inlet", _variant_t(true));
    const auto unit = Required<ICapeUnit>(object.Get(), L"ICapeUnit");
    {
        const Streams streams(unit.Get(), flowsheet);
        const HRESULT calculated = Calculate(unit.Get());
        Print(what, calculated, object.Get());
        if (SUCCEEDED(calculated)) streams.Show(what, L"fraction", L"Liquid", L"");
    }
    Step(L"Terminate", utilities->Terminate(), object.Get());
}

}  // namespace zelt::test
