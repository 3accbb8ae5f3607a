#include "samples/field/field_unit.h"

#include "samples/component/parameter_objects.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/field/field_package.h"
#include "samples/field/own_specification.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kWhole = L"Overall";
constexpr const wchar_t* kPressureDrop = L"Pressure drop";
constexpr const wchar_t* kCopy = L"Copy the inlet";

std::vector<PortDefinition> Ports()
{
    return {{L"Inlet", L"The stream", CAPE_MATERIAL, CAPE_INLET, true},
            {L"Outlet", L"The same at a lower pressure", CAPE_MATERIAL, CAPE_OUTLET, true}};
}

std::vector<ParameterDefinition> ParameterDefinitions()
{
    const RealSpecification limit{400, 200, 1000, {0, 0, 0, 0, 1, 0, 0, 0}};
    return {
        {kPressureDrop, L"Pa", RealSpecification{1000, 0, 1e8, {-1, 1, -2, 0, 0, 0, 0, 0}}},
        {L"Stages", L"In which the pressure falls", IntegerSpecification{1, 1, 10}},
        {L"Flow", L"Of the stream", OptionSpecification{L"upwards", {L"upwards", L"downwards"}, true}},
        {kCopy, L"Copies the inlet into the outlet as a whole", BooleanSpecification{false}},
        {L"Limits", L"K", ArraySpecification{{limit, limit}}},
    };
}

template <class I>
ComPtr<I> Required(IDispatch* stream, const wchar_t* interfaceName)
{
    ComPtr<I> result;
    if (FAILED(stream->QueryInterface(IID_PPV_ARGS(&result)))) {
        throw CapeFailure(ECapeInvalidArgumentHR, std::wstring(L"A stream has no ") + interfaceName);
    }
    return result;
}

void Set(ICapeThermoMaterialObject* stream, const wchar_t* property, const wchar_t* basis, const VARIANT& values)
{
    CheckCall(stream->SetProp(MakeBstr(property).GetBSTR(), MakeBstr(kWhole).GetBSTR(), _variant_t(),
                              MakeBstr(L"").GetBSTR(), MakeBstr(basis).GetBSTR(), values),
              stream, property);
}

}  // namespace

FieldUnitModel::FieldUnitModel() : UnitModel(L"Field unit", Ports(), ParameterDefinitions())
{
    for (const auto& state : Values().States()) objects.push_back(CreateSelfSpecifiedParameter(state));
}

ComPtr<IDispatch> FieldUnitModel::ParameterCollection() const
{
    return CreateCollection(Name() + L" parameters", objects);
}

void FieldUnitModel::CopyInlet() const
{
    const auto outlet = Required<ICapeThermoMaterial>(Connected(kOutlet), L"ICapeThermoMaterial");
    IDispatch* source = Connected(kInlet);
    CheckCall(outlet->CopyFromMaterial(&source), outlet.Get(), L"CopyFromMaterial");
}

// Reads the inlet through CAPE-OPEN 1.1 and writes the outlet through 1.0.
void FieldUnitModel::FillOutlet() const
{
    const auto inlet = Required<ICapeThermoMaterial>(Connected(kInlet), L"ICapeThermoMaterial");
    const auto outlet = Required<ICapeThermoMaterialObject>(Connected(kOutlet), L"ICapeThermoMaterialObject");
    double temperature = 0, pressure = 0;
    _variant_t fractions;
    CheckCall(inlet->GetOverallTPFraction(&temperature, &pressure, &fractions), inlet.Get(), L"GetOverallTPFraction");
    Set(outlet.Get(), L"temperature", L"", MakeDoubles({{temperature}}));
    Set(outlet.Get(), L"fraction", L"mole", fractions);
    Set(outlet.Get(), L"pressure", L"", MakeDoubles({{pressure - Values().Real(kPressureDrop)}}));
}

std::vector<std::wstring> FieldUnitModel::Run()
{
    Values().Boolean(kCopy) ? CopyInlet() : FillOutlet();
    IDispatch* stream = Connected(kOutlet);
    const auto server = Required<ICapeThermoEquilibriumServer>(stream, L"ICapeThermoEquilibriumServer");
    CheckCall(server->CalcEquilibrium(stream, MakeBstr(L"TP").GetBSTR(), MakeStrings({L"enthalpy"})), server.Get(),
              L"CalcEquilibrium");
    const auto outlet = Required<ICapeThermoMaterialObject>(stream, L"ICapeThermoMaterialObject");
    _variant_t fraction;
    CheckCall(outlet->GetProp(MakeBstr(L"phaseFraction").GetBSTR(), MakeBstr(L"Vapor").GetBSTR(), _variant_t(),
                              MakeBstr(L"Mixture").GetBSTR(), MakeBstr(L"mole").GetBSTR(), &fraction),
              outlet.Get(), L"phaseFraction");
    return {L"Vapour fraction of the outlet: " + Quantity(ReadDoubles(fraction, L"results").at(0), L"mol/mol")};
}

STDMETHODIMP FieldUnit::UnitTypePart::get_GetUnitType(eCapeUnitType* unitType)
{
    if (!unitType) return E_POINTER;
    *unitType = CAPE_CONVENTIONALOP;
    return S_OK;
}

STDMETHODIMP FieldUnit::FieldUnitUtilities::get_parameters(IDispatch** parameters)
{
    if (!parameters) return E_POINTER;
    *parameters = nullptr;
    return Call(L"get_parameters", [&] { *parameters = model.ParameterCollection().Detach(); });
}

STDMETHODIMP FieldUnit::FieldUnitUtilities::put_simulationContext(IDispatch* context)
{
    return Call(L"put_simulationContext", [&] { model.SetContext(RecognisedContext(context)); });
}

}  // namespace zelt::sample
