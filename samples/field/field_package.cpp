#include "samples/field/field_package.h"

#include "samples/field/late_material.h"

namespace zelt::sample {

using Microsoft::WRL::ComPtr;

FieldModel::FieldModel()
{
    com::Check(com::Create<PropertyPackage10>(IID_PPV_ARGS(&package)));
    com::Check(package.As(&utilities));
}

void FieldModel::Check(HRESULT result) const
{
    if (FAILED(result)) throw CapeFailure(result, DescribeFailure(package.Get(), result));
}

void FieldModel::CalcProp(IDispatch* material, const VARIANT& props, const VARIANT& phases, BSTR calcType) const
{
    Check(package->CalcProp(ReachByName(material).Get(), props, phases, calcType));
}

void FieldModel::CalcEquilibrium(IDispatch* material, BSTR flashType, const VARIANT& props) const
{
    Check(package->CalcEquilibrium(ReachByName(material).Get(), flashType, props));
}

void FieldModel::PropCheck(IDispatch* material, const VARIANT& props, VARIANT* valid) const
{
    Check(package->PropCheck(ReachByName(material).Get(), props, valid));
}

void FieldModel::ValidityCheck(IDispatch* material, const VARIANT& props, VARIANT* valid) const
{
    Check(package->ValidityCheck(ReachByName(material).Get(), props, valid));
}

STDMETHODIMP FieldPackagePart::GetPhaseList(VARIANT* phases)
{
    return Call(L"GetPhaseList", [&] { model.Check(model.Package().GetPhaseList(phases)); });
}

STDMETHODIMP FieldPackagePart::GetComponentList(VARIANT* compIds, VARIANT* formulae, VARIANT* name, VARIANT* boilTemps,
                                                VARIANT* molwt, VARIANT* casno)
{
    return Call(L"GetComponentList", [&] {
        model.Check(model.Package().GetComponentList(compIds, formulae, name, boilTemps, molwt, casno));
    });
}

STDMETHODIMP FieldPackagePart::GetUniversalConstant(IDispatch* materialObject, VARIANT props, VARIANT* propVals)
{
    return Call(L"GetUniversalConstant", [&] {
        model.Check(model.Package().GetUniversalConstant(ReachByName(materialObject).Get(), props, propVals));
    });
}

STDMETHODIMP FieldPackagePart::GetComponentConstant(IDispatch* materialObject, VARIANT props, VARIANT* propVals)
{
    return Call(L"GetComponentConstant", [&] {
        model.Check(model.Package().GetComponentConstant(ReachByName(materialObject).Get(), props, propVals));
    });
}

STDMETHODIMP FieldPackagePart::CalcProp(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType)
{
    return Call(L"CalcProp", [&] { model.CalcProp(materialObject, props, phases, calcType); });
}

STDMETHODIMP FieldPackagePart::CalcEquilibrium(IDispatch* materialObject, BSTR flashType, VARIANT props)
{
    return Call(L"CalcEquilibrium", [&] { model.CalcEquilibrium(materialObject, flashType, props); });
}

STDMETHODIMP FieldPackagePart::PropCheck(IDispatch* materialObject, VARIANT props, VARIANT* valid)
{
    return Call(L"PropCheck", [&] { model.PropCheck(materialObject, props, valid); });
}

STDMETHODIMP FieldPackagePart::ValidityCheck(IDispatch* materialObject, VARIANT props, VARIANT* valid)
{
    return Call(L"ValidityCheck", [&] { model.ValidityCheck(materialObject, props, valid); });
}

STDMETHODIMP FieldPackagePart::GetPropList(VARIANT* props)
{
    return Call(L"GetPropList", [&] { model.Check(model.Package().GetPropList(props)); });
}

STDMETHODIMP CalculationRoutinePart::CalcProp(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType)
{
    return Call(L"CalcProp", [&] { model.CalcProp(materialObject, props, phases, calcType); });
}

STDMETHODIMP CalculationRoutinePart::PropCheck(IDispatch* materialObject, VARIANT props, VARIANT* valid)
{
    return Call(L"PropCheck", [&] { model.PropCheck(materialObject, props, valid); });
}

STDMETHODIMP CalculationRoutinePart::PropList(VARIANT* props, VARIANT* phases, VARIANT* calcType)
{
    return Call(L"PropList", [&] {
        _variant_t names, labels;
        model.Check(model.Package().GetPropList(&names));
        model.Check(model.Package().GetPhaseList(&labels));
        Replace(props, names);
        Replace(phases, labels);
        Replace(calcType, MakeStrings({L"Mixture", L"Pure"}));
    });
}

STDMETHODIMP CalculationRoutinePart::ValidityCheck(IDispatch* materialObject, VARIANT props, VARIANT* relList)
{
    return Call(L"ValidityCheck", [&] { model.ValidityCheck(materialObject, props, relList); });
}

STDMETHODIMP EquilibriumServerPart::CalcEquilibrium(IDispatch* materialObject, BSTR flashType, VARIANT props)
{
    return Call(L"CalcEquilibrium", [&] { model.CalcEquilibrium(materialObject, flashType, props); });
}

STDMETHODIMP EquilibriumServerPart::PropCheck(IDispatch* materialObject, BSTR, VARIANT props, VARIANT* valid)
{
    return Call(L"PropCheck", [&] { model.PropCheck(materialObject, props, valid); });
}

STDMETHODIMP EquilibriumServerPart::ValidityCheck(IDispatch* materialObject, VARIANT props, VARIANT* relList)
{
    return Call(L"ValidityCheck", [&] { model.ValidityCheck(materialObject, props, relList); });
}

STDMETHODIMP EquilibriumServerPart::PropList(VARIANT* flashType, VARIANT* props, VARIANT* phases, VARIANT* calcType)
{
    return Call(L"PropList", [&] {
        _variant_t names, labels;
        model.Check(model.Package().GetPropList(&names));
        model.Check(model.Package().GetPhaseList(&labels));
        Replace(flashType, MakeStrings({L"TP", L"PVF", L"TVF", L"PH", L"PS"}));
        Replace(props, names);
        Replace(phases, labels);
        Replace(calcType, MakeStrings({L"Mixture"}));
    });
}

STDMETHODIMP FieldUtilitiesPart::get_parameters(IDispatch** parameters)
{
    return Call(L"get_parameters", [&] { model.Check(model.Utilities().get_parameters(parameters)); });
}

STDMETHODIMP FieldUtilitiesPart::put_simulationContext(IDispatch* context)
{
    return Call(L"put_simulationContext",
                [&] { model.Check(model.Utilities().put_simulationContext(RecognisedContext(context))); });
}

STDMETHODIMP FieldUtilitiesPart::Initialize()
{
    return Call(L"Initialize", [&] { model.Check(model.Utilities().Initialize()); });
}

STDMETHODIMP FieldUtilitiesPart::Terminate()
{
    return Call(L"Terminate", [&] { model.Check(model.Utilities().Terminate()); });
}

STDMETHODIMP FieldUtilitiesPart::Edit()
{
    return Call(L"Edit", [&] { model.Check(model.Utilities().Edit()); });
}

IDispatch* RecognisedContext(IDispatch* context)
{
    ComPtr<ICapeSimulationContext> recognised;
    return context && SUCCEEDED(context->QueryInterface(IID_PPV_ARGS(&recognised))) ? context : nullptr;
}

}  // namespace zelt::sample
