// A CAPE-OPEN 1.0 property package that calculates like the sample package and has the extras of packages in the field: the
// interfaces of a calculation routine and of an equilibrium server, reliability, petroleum fractions. It calls its material
// late-bound, and keeps a simulation context only if the context offers ICapeSimulationContext.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/field/petro_fractions.h"
#include "samples/package/property_package10.h"

namespace zelt::sample {

// The sample package that does the work of the next four parts. It gets each material wrapped by ReachByName.
class FieldModel {
public:
    FieldModel();
    ICapeThermoPropertyPackage& Package() const { return *package.Get(); }
    ICapeUtilities& Utilities() const { return *utilities.Get(); }
    // Throws CapeFailure, with the package's description, if `result` is a failure.
    void Check(HRESULT result) const;

    // The calls that several parts offer. Each throws CapeFailure if the package fails.
    void CalcProp(IDispatch* material, const VARIANT& props, const VARIANT& phases, BSTR calcType) const;
    void CalcEquilibrium(IDispatch* material, BSTR flashType, const VARIANT& props) const;
    void PropCheck(IDispatch* material, const VARIANT& props, VARIANT* valid) const;
    void ValidityCheck(IDispatch* material, const VARIANT& props, VARIANT* valid) const;

private:
    Microsoft::WRL::ComPtr<ICapeThermoPropertyPackage> package;
    Microsoft::WRL::ComPtr<ICapeUtilities> utilities;
};

class FieldPackagePart final : public CapePart<ICapeThermoPropertyPackage> {
public:
    FieldPackagePart(com::Object& object, CapeErrors& errors, const FieldModel& model)
        : CapePart(object, errors, L"ICapeThermoPropertyPackage"), model(model)
    {}
    STDMETHOD(GetPhaseList)(VARIANT* phases) override;
    STDMETHOD(GetComponentList)(VARIANT* compIds, VARIANT* formulae, VARIANT* name, VARIANT* boilTemps, VARIANT* molwt,
                                VARIANT* casno) override;
    STDMETHOD(GetUniversalConstant)(IDispatch* materialObject, VARIANT props, VARIANT* propVals) override;
    STDMETHOD(GetComponentConstant)(IDispatch* materialObject, VARIANT props, VARIANT* propVals) override;
    STDMETHOD(CalcProp)(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType) override;
    STDMETHOD(CalcEquilibrium)(IDispatch* materialObject, BSTR flashType, VARIANT props) override;
    STDMETHOD(PropCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override;
    STDMETHOD(ValidityCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override;
    STDMETHOD(GetPropList)(VARIANT* props) override;

private:
    const FieldModel& model;
};

class CalculationRoutinePart final : public CapePart<ICapeThermoCalculationRoutine> {
public:
    CalculationRoutinePart(com::Object& object, CapeErrors& errors, const FieldModel& model)
        : CapePart(object, errors, L"ICapeThermoCalculationRoutine"), model(model)
    {}
    STDMETHOD(CalcProp)(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType) override;
    STDMETHOD(PropCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override;
    STDMETHOD(PropList)(VARIANT* props, VARIANT* phases, VARIANT* calcType) override;
    STDMETHOD(ValidityCheck)(IDispatch* materialObject, VARIANT props, VARIANT* relList) override;

private:
    const FieldModel& model;
};

class EquilibriumServerPart final : public CapePart<ICapeThermoEquilibriumServer> {
public:
    EquilibriumServerPart(com::Object& object, CapeErrors& errors, const FieldModel& model)
        : CapePart(object, errors, L"ICapeThermoEquilibriumServer"), model(model)
    {}
    STDMETHOD(CalcEquilibrium)(IDispatch* materialObject, BSTR flashType, VARIANT props) override;
    STDMETHOD(PropCheck)(IDispatch* materialObject, BSTR flashType, VARIANT props, VARIANT* valid) override;
    STDMETHOD(ValidityCheck)(IDispatch* materialObject, VARIANT props, VARIANT* relList) override;
    STDMETHOD(PropList)(VARIANT* flashType, VARIANT* props, VARIANT* phases, VARIANT* calcType) override;

private:
    const FieldModel& model;
};

class FieldUtilitiesPart final : public CapePart<ICapeUtilities> {
public:
    FieldUtilitiesPart(com::Object& object, CapeErrors& errors, const FieldModel& model)
        : CapePart(object, errors, L"ICapeUtilities"), model(model)
    {}
    STDMETHOD(get_parameters)(IDispatch** parameters) override;
    STDMETHOD(put_simulationContext)(IDispatch* context) override;
    STDMETHOD(Initialize)() override;
    STDMETHOD(Terminate)() override;
    STDMETHOD(Edit)() override;

private:
    const FieldModel& model;
};

class FieldPackage final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &package; }

private:
    // The interface has no members of its own.
    struct ReliabilityPart final : com::DualPart<ICapeThermoReliability> {
        using DualPart::DualPart;
    };

    FieldModel model;
    CapeErrors errors{*this, L"ZeltSample.FieldPackage"};
    FieldPackagePart package{*this, errors, model};
    CalculationRoutinePart routine{*this, errors, model};
    EquilibriumServerPart server{*this, errors, model};
    ReliabilityPart reliability{*this};
    PetroFractionsPart petroFractions{*this, errors};
    FieldUtilitiesPart utilities{*this, errors, model};
    IdentificationPart identification{*this, errors, L"Field package", AllPackages().front().description};
};

// The context if it offers ICapeSimulationContext; null otherwise.
IDispatch* RecognisedContext(IDispatch* context);

}  // namespace zelt::sample
