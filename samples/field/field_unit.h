// A CAPE-OPEN 1.0 unit operation like those in the field: it names its type, its parameters are their own specifications,
// and it uses its streams through the material interfaces of both versions and as equilibrium servers. Lowers a stream's
// pressure at constant temperature.
#pragma once

#include "samples/field/classes.h"
#include "samples/units/unit_operation.h"

namespace zelt::sample {

class FieldUnitModel final : public UnitModel {
public:
    static constexpr const wchar_t* kDescription = L"Lowers the pressure of a stream at constant temperature";

    FieldUnitModel();
    // Hides the base class's function. Returns parameter objects that are their own specifications and share the same values.
    Microsoft::WRL::ComPtr<IDispatch> ParameterCollection() const;

protected:
    std::vector<std::wstring> Run() override;

private:
    enum Port : std::size_t { kInlet, kOutlet };
    void CopyInlet() const;
    void FillOutlet() const;

    std::vector<Microsoft::WRL::ComPtr<IDispatch>> objects;
};

class FieldUnit final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &unit; }

private:
    class UnitTypePart final : public CapePart<ICapeUnitTypeInfo> {
    public:
        UnitTypePart(com::Object& object, CapeErrors& errors) : CapePart(object, errors, L"ICapeUnitTypeInfo") {}
        STDMETHOD(get_GetUnitType)(eCapeUnitType* unitType) override;
    };
    class FieldUnitUtilities final : public UtilitiesPart {
    public:
        FieldUnitUtilities(com::Object& object, CapeErrors& errors, FieldUnitModel& model)
            : UtilitiesPart(object, errors, {}, [&model] { model.Terminate(); }), model(model)
        {}
        STDMETHOD(get_parameters)(IDispatch** parameters) override;
        STDMETHOD(put_simulationContext)(IDispatch* context) override;

    private:
        FieldUnitModel& model;
    };

    FieldUnitModel model;
    CapeErrors errors{*this, L"ZeltSample.FieldUnit"};
    UnitPart unit{*this, errors, model};
    UnitTypePart type{*this, errors};
    FieldUnitUtilities utilities{*this, errors, model};
    IdentificationPart identification{*this, errors, model.Name(), FieldUnitModel::kDescription};
};

}  // namespace zelt::sample
